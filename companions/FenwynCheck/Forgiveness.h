// Plug-ins that ended the program: what is remembered of them, and --forgive.
#pragma once

#include <string>

#include "Outside.h"

namespace machine {

// A line for each of them, with the time and the reason; empty if there are none.
[[nodiscard]] std::wstring rememberedFaults();

// Forgets all of them, and tells which they were.
[[nodiscard]] ExitCode forgivePlugins(const Outside& outside);

}  // namespace machine
