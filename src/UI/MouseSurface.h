// Card windows are dialogs made practically invisible: layered, with an alpha of 1, they only take the mouse. What the
// user sees is drawn by companion layered windows above them.
#pragma once

#include <windows.h>

class CWnd;

inline constexpr COLORREF kColourKey = RGB(0xFF, 0x00, 0xFF);  // pixels of this colour let the mouse through
inline constexpr DWORD kCardOpacity = 220;                     // of every picture that is not dimmed

enum class SurfaceKey { None, Magenta };

// Makes a window such a surface; exStyle is added to its extended style beside WS_EX_LAYERED.
void makeMouseSurface(const CWnd& window, DWORD exStyle, SurfaceKey key);

// Asks for one WM_MOUSELEAVE; the flag remembers that one is due. Callers clear it when the message arrives.
void trackMouseLeave(HWND hWnd, bool& rbTracking);

// Whether the mouse is on the window itself: on the part of it that takes the mouse, with nothing above.
[[nodiscard]] bool mouseIsOn(HWND hWnd);
