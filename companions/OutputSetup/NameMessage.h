// Names that users enter.
#pragma once

#include <windows.h>

#include <string>

#include "Favourites.h"

namespace setup {

// The message for an invalid name; 0 for a valid one.
[[nodiscard]] UINT nameMessage(NameVerdict verdict);

// The complete text of a control.
[[nodiscard]] std::wstring controlText(HWND control);

}  // namespace setup
