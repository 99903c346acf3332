#include "UI/MouseSurface.h"

#include "framework/Wnd.h"

void makeMouseSurface(const CWnd& window, DWORD exStyle, SurfaceKey key) {
    window.addExStyle(WS_EX_LAYERED | exStyle);
    const DWORD flags = key == SurfaceKey::Magenta ? LWA_COLORKEY | LWA_ALPHA : LWA_ALPHA;
    ::SetLayeredWindowAttributes(window.m_hWnd, kColourKey, 1, flags);
}

void trackMouseLeave(HWND hWnd, bool& rbTracking) {
    if (rbTracking) {
        return;
    }
    TRACKMOUSEEVENT event{sizeof(event), TME_LEAVE, hWnd, 0};
    rbTracking = ::TrackMouseEvent(&event) != FALSE;
}

bool mouseIsOn(HWND hWnd) {
    POINT cursor{};
    return ::GetCursorPos(&cursor) && ::WindowFromPoint(cursor) == hWnd;
}
