// The font of the windows: that of the system's own message boxes, at every dpi.
#pragma once

#include <windows.h>

namespace setup {

// What the person has set for message boxes, in pixels of the screen. A face that every system has when it cannot tell.
[[nodiscard]] LOGFONTW messageFont();

// Gives a dialog and its controls a font and the sizes that the template means in units of that font. The window stays
// in the middle of the work area. The dialog does not own the font.
void setDialogFont(HWND dialog, HFONT font);

}  // namespace setup
