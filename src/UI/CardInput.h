// The rule for user input to cards, items and the slider during a plug-in call.
#pragma once

#include "Messages.h"
#include "UI/CardsInUse.h"

// Whether a message is ignored while cards are in use. The mouse and the keys of the slider are ignored, because nobody
// expects a late effect of a click. Timers fire again. Messages that end something (a released button, a leaving mouse,
// the end of a drag) pass, and so do all messages that are not user input: they enter no plug-in. The functions' keys
// wait instead; the strip keeps them.
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
        case kMsgAccessible:
            return true;
        case WM_HSCROLL:
            return LOWORD(wParam) != SB_ENDSCROLL;
        default:
            return false;
    }
}

// A window that receives user input. The rule is applied before its handlers, so that none of them has to know it.
template <typename Window>
class CCardInput : public Window {
 public:
    using Window::Window;

 protected:
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        return CCardsInUse::any() && undoneWhileInUse(nMessage, wParam) ? 0
                                                                        : Window::WindowProc(nMessage, wParam, lParam);
    }
};
