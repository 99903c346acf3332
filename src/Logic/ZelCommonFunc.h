// Small things that the windows and functions share.
#pragma once

#include <limits>
#include <memory>

#include "common/GdiPlus.h"

class CWnd;

// Toward zero, as all scaled sizes are. What no int can hold becomes the nearest one; not-a-number becomes 0.
[[nodiscard]] constexpr int truncToInt(double value) noexcept {
    if (value != value) {
        return 0;
    }
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    if (value <= static_cast<double>(std::numeric_limits<int>::min())) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(value);
}

// Dots per inch that all sizes in pixels are given for.
inline constexpr int kNormalDpi = 96;

// value * numerator / denominator, rounded half away from zero, as MulDiv does; -1 on overflow or division by zero.
[[nodiscard]] constexpr int mulDiv(int value, int numerator, int denominator) noexcept {
    if (denominator == 0) {
        return -1;
    }
    const long long product = static_cast<long long>(value) * numerator;
    const long long divisor = denominator < 0 ? -static_cast<long long>(denominator) : denominator;
    const long long dividend = denominator < 0 ? -product : product;
    const long long rounded = (dividend + (dividend < 0 ? -(divisor / 2) : divisor / 2)) / divisor;
    const bool fits = rounded >= std::numeric_limits<int>::min() && rounded <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(rounded) : -1;
}

// The height (LOGFONT units) that a font reported at `verticalDpi` has at 96 DPI, scaled by the image ratio.
[[nodiscard]] constexpr int normalDpiFontHeight(int height, int verticalDpi, double ratio) noexcept {
    return truncToInt(mulDiv(height, kNormalDpi, verticalDpi) * ratio);
}

// The GDI+ font that belongs to the window's own font, as large as the card images make it. E_POINTER: no window or
// no font object; `outFont` stays untouched then. Whether the font is usable says its GetLastStatus().
[[nodiscard]] HRESULT getNormalDPIWndFont(const CWnd* pWindow, Gdiplus::Graphics& graphics,
                                          std::unique_ptr<Gdiplus::Font>& outFont);

// The desktop without the task bar, in screen pixels. E_FAIL, unlogged: untouched.
[[nodiscard]] HRESULT getWorkArea(RECT& outRect) noexcept;

// Whether a window is one of this process. False for null and for one that is gone.
[[nodiscard]] bool isOwnWindow(HWND hWnd) noexcept;

// Whether a WM_SYSCOMMAND asks for a service of the system (screen saver, power of the display) and not for something
// that would be done to the window.
[[nodiscard]] constexpr bool isForTheSystem(WPARAM wCommand) noexcept {
    const WPARAM command = wCommand & 0xFFF0U;  // the system uses the lowest four bits itself
    return command == SC_SCREENSAVE || command == SC_MONITORPOWER;
}

template <typename Container>
[[nodiscard]] constexpr bool indexInContainer(long index, const Container& container) noexcept {
    return index >= 0 && static_cast<unsigned long>(index) < container.size();
}
