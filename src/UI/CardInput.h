// The one rule for what a person does to cards, items and the slider while a plug-in is at work.
#pragma once

#include "UI/CardsInUse.h"

// Whether a message is left undone while cards are in use. The mouse and the keys of the slider are ignored: nobody
// waits for the late effect of a click. Timers come again. What ends something (a button that is let go, a mouse that
// leaves, the end of a drag) goes through, and so does everything that is not a person's: no plug-in is entered for it.
// Keys of the functions wait instead; the strip keeps them.
[[nodiscard]] constexpr bool undoneWhileInUse(UINT nMessage, WPARAM wParam) noexcept {
    switch (nMessage) {
        case WM_MOUSEMOVE:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
        case WM_KEYDOWN:
        case WM_TIMER:
            return true;
        case WM_HSCROLL:
            return LOWORD(wParam) != SB_ENDSCROLL;
        default:
            return false;
    }
}

// A window that a person works with. The rule stands before its handlers, so that none of them has to know it.
template <typename Window>
class CCardInput : public Window {
 public:
    using Window::Window;

 protected:
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        return CardsInUse::any() && undoneWhileInUse(nMessage, wParam) ? 0
                                                                       : Window::WindowProc(nMessage, wParam, lParam);
    }
};
