// For how many dots per inch the system makes fonts. Private to the framework.
#pragma once

#include <windows.h>

namespace framework {

// Of the screen with which the session began.
[[nodiscard]] int systemDpi();
// For a dialog that is being created: those of its screen, where the system scales dialogs for each screen; otherwise
// the system's.
[[nodiscard]] int newFontDpi(HWND dialog);

}  // namespace framework
