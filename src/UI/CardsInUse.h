// Holds cards, items and plug-ins in place while code that works with them is on the stack.
#pragma once

#include <windows.h>

// A plug-in may run a message loop of its own (a message box, a call of COM, the shell), and anything may arrive in it:
// the next key, or the order to build all cards anew. Whoever walks cards or calls a plug-in holds one of these; what
// would take cards or items away meanwhile waits until the last is gone. User-interface thread only.
class CardsInUse {
 public:
    CardsInUse() noexcept { ++s_depth; }
    ~CardsInUse() {
        --s_depth;
        _postIfOver();
    }
    CardsInUse(const CardsInUse&) = delete;
    CardsInUse& operator=(const CardsInUse&) = delete;

    [[nodiscard]] static bool any() noexcept { return s_depth > 0; }

    // The window gets the message, without parameters, from the message loop of the program once the last one is gone;
    // at once when there is none. Without a window nothing is posted.
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
