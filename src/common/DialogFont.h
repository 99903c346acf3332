// The font of dialogs: that of the system's own message boxes, at every dpi.
#pragma once

#include <windows.h>

namespace common {

// What the person has set for message boxes, in pixels of the screen. A face that every system has when it cannot tell.
[[nodiscard]] LOGFONTW messageFont();

// The same for a screen of that dpi, which may differ from that of the primary one.
[[nodiscard]] LOGFONTW messageFont(UINT dpi);

// The dpi of the screen that the window is on; that of the primary one where the system knows no other.
[[nodiscard]] UINT dpiOf(HWND window);

// The pixels of four horizontal and eight vertical dialog units of a font, as the system counts them.
[[nodiscard]] SIZE dialogUnitsOf(HFONT font);

// Gives a dialog and its controls a font and the sizes that the template means in units of that font. A window stays in
// the middle of the work area, a child at its place. The dialog does not own the font.
void setDialogFont(HWND dialog, HFONT font);

// The same for a dialog that has a font already, when another one takes its place; both still exist.
void changeDialogFont(HWND dialog, HFONT from, HFONT to);

// The system leaves a dialog and its controls as they are when the scale of the screen changes; whoever receives
// WM_DPICHANGED calls changeDialogFont.
void leaveScalingToDialog(HWND dialog);

}  // namespace common
