// The position and size of the cards. The card strip computes the only record, when it is shown and when the screen
// changes; cards, items and functions get its address, so that none of them asks the system itself and gets another
// answer.
#pragma once

#include <windows.h>

struct Placement {
    RECT workArea{};      // of the monitor with the cards, in screen pixels; empty while it is not known
    double ratio = 1.0;   // the image scale of the whole user interface
    double dpi = 1.0;     // the screen's scale: 1.0 at 96 dots per inch
    bool bottom = false;  // the cards are at the bottom of the work area instead of its top

    [[nodiscard]] bool known() const noexcept { return ::IsRectEmpty(&workArea) == FALSE; }
    [[nodiscard]] int workWidth() const noexcept { return workArea.right - workArea.left; }
};

// The initial placement of a window or function: full size, on no screen.
inline const Placement kUnplaced{};

struct CardsScreen {
    RECT workArea{};     // in screen pixels
    double scale = 1.0;  // 1.0 at 96 dots per inch
};

// The screen for the cards: the primary one, or with "MonitorOfActiveWindow" that with the window that the user works
// in. E_FAIL, unlogged: unchanged.
[[nodiscard]] HRESULT getCardsScreen(CardsScreen& outScreen);
