// Where the cards stand and how large everything is. The card strip computes the one record there is, when it is shown
// and when the screen changes; cards, items and functions are handed it and keep the address, so that none of them asks
// the system by itself and comes to another answer.
#pragma once

#include <windows.h>

struct Placement {
    RECT workArea{};      // of the monitor with the cards, in screen pixels; empty while it is not known
    double ratio = 1.0;   // the image scale of the whole user interface
    double dpi = 1.0;     // the screen's scale: 1.0 at 96 dots per inch
    bool bottom = false;  // the cards stand at the bottom of the work area instead of its top

    [[nodiscard]] bool known() const noexcept { return ::IsRectEmpty(&workArea) == FALSE; }
    [[nodiscard]] int workWidth() const noexcept { return workArea.right - workArea.left; }
};

// What a window or function has before it is handed one: full size, on no screen.
inline const Placement kUnplaced{};

// The screen's scale, read once: it does not change while a session lasts.
[[nodiscard]] double screenScale();

// The work area that the cards belong on, in screen pixels: that of the primary screen, or with "MonitorOfActiveWindow"
// that of the monitor with the window that the user works in. E_FAIL, unlogged: untouched.
[[nodiscard]] HRESULT getCardsWorkArea(RECT& outRect);
