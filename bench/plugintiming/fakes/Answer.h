// Functions whose machine the emulated system lacks, with the fake of the unit tests in its place.
#pragma once

#include <windows.h>

namespace win {

// Longer than any plug-in waits for its machine, so that each wait lasts as long as it ever does.
inline constexpr DWORD kAnswerMs = 100;

}  // namespace win
