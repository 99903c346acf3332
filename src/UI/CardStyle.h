// Look and layout constants shared by all card windows.
#pragma once

#include "common/Contrast.h"
#include "common/GdiPlus.h"

inline constexpr COLORREF kColourKey = RGB(0xFF, 0x00, 0xFF);  // pixels of this colour let the mouse through
inline constexpr DWORD kCardOpacity = 220;                     // of every picture that is not dimmed

inline constexpr Gdiplus::ARGB kWhite = 0xFFFFFFFF;
inline constexpr Gdiplus::ARGB kBlack = 0xFF000000;
inline constexpr double kCaptionMargin = 4.0;  // pixels at ratio 1.0, between a caption and its card's edge
inline constexpr double kOutlineWidth = 3.0;   // pixels, of white text with a black outline

[[nodiscard]] inline Gdiplus::RectF toRectF(const RECT& rect) {
    return {static_cast<float>(rect.left), static_cast<float>(rect.top), static_cast<float>(rect.right - rect.left),
            static_cast<float>(rect.bottom - rect.top)};
}

// In high contrast, an opaque ground with a border for a text that has none in the program's own look.
inline void drawPlate(Gdiplus::Graphics& graphics, const Gdiplus::RectF& place) {
    const Gdiplus::SolidBrush ground(Gdiplus::Color{kBlack});
    const Gdiplus::Pen border(Gdiplus::Color{kWhite}, 1.0F);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeNone);
    graphics.FillRectangle(&ground, place);
    graphics.DrawRectangle(&border, place.X, place.Y, place.Width - 1.0F, place.Height - 1.0F);
}

// A format for texts centred horizontally.
class CCentredFormat : public Gdiplus::StringFormat {
 public:
    explicit CCentredFormat(Gdiplus::StringAlignment line = Gdiplus::StringAlignmentNear) {
        SetAlignment(Gdiplus::StringAlignmentCenter);
        SetLineAlignment(line);
    }
};

// Centred, and cut with an ellipsis if the text does not fit.
class CDescFormat : public CCentredFormat {
 public:
    explicit CDescFormat(Gdiplus::StringAlignment line = Gdiplus::StringAlignmentNear) : CCentredFormat(line) {
        SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    }
};

// The same in one line.
class CCaptionFormat : public CDescFormat {
 public:
    explicit CCaptionFormat(Gdiplus::StringAlignment line = Gdiplus::StringAlignmentNear) : CDescFormat(line) {
        SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
};
