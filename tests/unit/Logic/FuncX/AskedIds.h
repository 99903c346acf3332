// What the functions can ask the image library and the string table for.
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
