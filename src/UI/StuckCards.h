// Takes the cards off the screen while the thread that owns them does not answer. The usual ways to hide a window wait
// for its thread; pictures can be replaced, and opacities changed, without it.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

class CStuckCards {
 public:
    // Of the windows of that thread: the pictures become one transparent pixel outside of the screen; the others become
    // transparent and let the mouse through. All windows of the cards are layered; others stay. Called on another
    // thread than that one.
    explicit CStuckCards(DWORD dwThread) noexcept;
    // The others get back what they had. The pictures come back with the next paint, when their cards are shown
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

    static BOOL CALLBACK _hideSurface(HWND hWnd, LPARAM lParam) noexcept;
    static BOOL CALLBACK _hidePicture(HWND hWnd, LPARAM /*unused*/) noexcept;

    // Without memory of the heap, whose lock the thread may hold. More windows than a screen has room for.
    std::array<Surface, 256> m_surfaces;
    std::size_t m_uSurfaces = 0;
};
