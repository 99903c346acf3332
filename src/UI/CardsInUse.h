// Keeps cards, items and plug-ins alive while code that works with them is on the stack.
#pragma once

#include <windows.h>

// A plug-in may run a message loop of its own (a message box, a COM call, the shell), and anything may arrive in it:
// the next key, or the order to rebuild all cards. Code that walks the cards or calls a plug-in holds one of these
// objects; anything that would destroy cards or items waits until the last one is gone. User-interface thread only.
class CCardsInUse {
 public:
    CCardsInUse() noexcept { ++s_depth; }
    ~CCardsInUse() {
        --s_depth;
        _postIfOver();
    }
    CCardsInUse(const CCardsInUse&) = delete;
    CCardsInUse& operator=(const CCardsInUse&) = delete;

    [[nodiscard]] static bool any() noexcept { return s_depth > 0; }

    // Once the last object is gone, the program's message loop posts the message, without parameters, to the window; at
    // once if there is none. Without a window nothing is posted.
    static void postWhenOver(HWND hWnd, UINT nMessage) noexcept {
        s_hWaiting = hWnd;
        s_nMessage = nMessage;
        _postIfOver();
    }

 private:
    static void _postIfOver() noexcept {
        if (s_depth == 0 && s_hWaiting != nullptr) {
            ::PostMessageW(s_hWaiting, s_nMessage, 0, 0);
            s_hWaiting = nullptr;
        }
    }

    static inline int s_depth = 0;
    static inline HWND s_hWaiting = nullptr;
    static inline UINT s_nMessage = 0;
};
