// Helpers shared by the windows and functions.
#pragma once

#include <limits>
#include <memory>

#include "common/GdiPlus.h"

class CWnd;

// Toward zero, like all scaled sizes. A value out of range becomes the nearest int; not-a-number becomes 0.
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

// The resolution, in dots per inch, of all sizes given in pixels.
inline constexpr int kNormalDpi = 96;

// value * numerator / denominator, rounded half away from zero, like MulDiv; -1 on overflow or division by zero.
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

// The GDI+ font that matches the window's own font, scaled by the image ratio. E_POINTER: no window or no font object;
// `outFont` is unchanged then. The font's GetLastStatus() tells whether it is usable.
[[nodiscard]] HRESULT getNormalDPIWndFont(const CWnd* pWindow, Gdiplus::Graphics& graphics,
                                          std::unique_ptr<Gdiplus::Font>& outFont);

// The desktop without the task bar, in screen pixels. E_FAIL, unlogged: unchanged.
[[nodiscard]] HRESULT getWorkArea(RECT& outRect) noexcept;

// Whether a window belongs to this process. False for null and for a destroyed window.
[[nodiscard]] bool isOwnWindow(HWND hWnd) noexcept;

template <typename Container>
[[nodiscard]] constexpr bool indexInContainer(long index, const Container& container) noexcept {
    return index >= 0 && static_cast<unsigned long>(index) < container.size();
}
