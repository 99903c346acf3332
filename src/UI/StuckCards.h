// Takes the cards off the screen while the thread that owns them does not answer. The usual ways to hide a window wait
// for its thread; pictures can be replaced, and opacities changed, without it.
#pragma once

#include <windows.h>

#include <vector>

class CStuckCards {
 public:
    // Of the windows of that thread: the pictures become one transparent pixel outside of the screen, the surfaces let
    // the mouse through. Windows that are not layered stay visible. Called on another thread than
    // that one.
    explicit CStuckCards(DWORD dwThread) noexcept;
    // The surfaces get back what they had. The pictures come back with the next paint, when their cards are shown
    // again.
    ~CStuckCards();
    CStuckCards(const CStuckCards&) = delete;
    CStuckCards& operator=(const CStuckCards&) = delete;

 private:
    struct Surface {
        HWND hWnd;
        COLORREF key;
        BYTE alpha;
        DWORD flags;
    };

    static BOOL CALLBACK _hide(HWND hWnd, LPARAM lParam) noexcept;

    std::vector<Surface> m_vecSurfaces;
};
