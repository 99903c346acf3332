// The checks of the display output with favourites.
#pragma once

#include <optional>

#include "PluginLibrary.h"

namespace check {

// The library has all exports of the function.
void checkOutput(CPluginLibrary& library, CReport& report, std::optional<long> item);

}  // namespace check
