// Names as people type them.
#pragma once

#include <windows.h>

#include <string>

#include "Favourites.h"

namespace setup {

// What to tell about a name that cannot be given; 0 for a good one.
[[nodiscard]] UINT nameMessage(NameVerdict verdict);

// The whole text of a control.
[[nodiscard]] std::wstring controlText(HWND control);

}  // namespace setup
