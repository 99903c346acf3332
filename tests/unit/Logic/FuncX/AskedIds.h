// All ids that the functions request from the image library and the string table.
#pragma once

#include <windows.h>

#include <set>

namespace functest {

struct AskedIds {
    std::set<UINT> images;
    std::set<UINT> strings;
};

[[nodiscard]] AskedIds askedIds();

}  // namespace functest
