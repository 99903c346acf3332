// Text with an outline: the letters' paths, stroked and filled.
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/GdiPlusFunc.h"

namespace {

// Not every implementation smooths filled paths: letters are drawn this many times larger and averaged down.
constexpr int kSamples = 4;

// In pixels, each way. Longer texts and wider outlines are mistakes, not worth the memory they would take.
constexpr float kLargestPicture = 4096.0F;

std::wstring familyName(const Gdiplus::Font& font) {
    Gdiplus::FontFamily family;
    std::array<wchar_t, LF_FACESIZE> name{};
    font.GetFamily(&family);
    family.GetFamilyName(name.data());
    return name.data();
}

// As many words per line as fit, at least one. Not every implementation wraps text in a path, so it is done here.
std::vector<std::wstring> wrapLines(const Gdiplus::Graphics& graphics, std::wstring_view text,
                                    const Gdiplus::Font& font, float width) {
    std::vector<std::wstring> lines(1);
    bool startLine = true;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of(L" \r\n");
        const std::wstring word(text.substr(0, end));
        const std::wstring candidate = startLine ? word : lines.back() + L" " + word;
        Gdiplus::RectF measured;
        graphics.MeasureString(candidate.c_str(), -1, &font, Gdiplus::PointF(0.0F, 0.0F), &measured);
        if (startLine || measured.Width <= width) {
            lines.back() = candidate;
        } else {
            lines.push_back(word);
        }
        if (end == std::wstring_view::npos) {
            break;
        }
        startLine = text[end] == L'\n';
        if (startLine) {
            lines.emplace_back();
        }
        text.remove_prefix(end + 1);
    }
    return lines;
}

// Adds the lines as one block, placed in the layout rectangle as the format says.
void addLines(Gdiplus::GraphicsPath& path, const std::vector<std::wstring>& lines, const Gdiplus::Font& font,
              const Gdiplus::RectF& layout, const Gdiplus::StringFormat& format) {
    Gdiplus::FontFamily family;
    font.GetFamily(&family);
    const int style = font.GetStyle();
    const float em = font.GetSize();
    const float lineHeight = em * family.GetLineSpacing(style) / family.GetEmHeight(style);
    const float slack = layout.Height - lineHeight * static_cast<float>(lines.size());

    const Gdiplus::StringAlignment block = format.GetLineAlignment();
    Gdiplus::RectF place(layout.X, layout.Y, layout.Width, lineHeight);
    place.Y += block == Gdiplus::StringAlignmentFar ? slack : block == Gdiplus::StringAlignmentCenter ? slack / 2 : 0;

    Gdiplus::StringFormat lineFormat(&format);
    lineFormat.SetLineAlignment(Gdiplus::StringAlignmentNear);
    // A line that was measured a little too narrow keeps its last letter.
    lineFormat.SetTrimming(Gdiplus::StringTrimmingNone);
    lineFormat.SetFormatFlags(format.GetFormatFlags() | Gdiplus::StringFormatFlagsNoWrap |
                              Gdiplus::StringFormatFlagsNoClip);
    for (const std::wstring& line : lines) {
        path.AddString(line.c_str(), -1, &family, style, em, place, &lineFormat);
        place.Y += lineHeight;
    }
}

// The average of one block of premultiplied pixels.
Gdiplus::ARGB averageBlock(const BYTE* block, int stride) {
    unsigned sums[4] = {};
    for (int row = 0; row < kSamples; ++row, block += stride) {
        for (int byte = 0; byte < kSamples * 4; ++byte) {
            sums[byte % 4] += block[byte];
        }
    }
    constexpr unsigned kCount = kSamples * kSamples;
    return (sums[3] / kCount) << 24U | (sums[2] / kCount) << 16U | (sums[1] / kCount) << 8U | sums[0] / kCount;
}

// Fills `small` with `large` at a kSamples-th of its size. Both are premultiplied. False: there is no memory for it.
bool averageDown(Gdiplus::Bitmap& large, Gdiplus::Bitmap& small) {
    Gdiplus::Rect largeArea(0, 0, static_cast<INT>(large.GetWidth()), static_cast<INT>(large.GetHeight()));
    Gdiplus::Rect smallArea(0, 0, static_cast<INT>(small.GetWidth()), static_cast<INT>(small.GetHeight()));
    Gdiplus::BitmapData from;
    Gdiplus::BitmapData to;
    if (large.LockBits(&largeArea, Gdiplus::ImageLockModeRead, PixelFormat32bppPARGB, &from) != Gdiplus::Ok) {
        return false;
    }
    const bool filled =
        small.LockBits(&smallArea, Gdiplus::ImageLockModeWrite, PixelFormat32bppPARGB, &to) == Gdiplus::Ok;
    if (filled) {
        for (INT y = 0; y < smallArea.Height; ++y) {
            const BYTE* source = static_cast<const BYTE*>(from.Scan0) + std::ptrdiff_t{y} * kSamples * from.Stride;
            auto* target =
                reinterpret_cast<Gdiplus::ARGB*>(static_cast<BYTE*>(to.Scan0) + std::ptrdiff_t{y} * to.Stride);
            for (std::ptrdiff_t x = 0; x < smallArea.Width; ++x) {
                target[x] = averageBlock(source + x * kSamples * 4, from.Stride);
            }
        }
        small.UnlockBits(&to);
    }
    large.UnlockBits(&from);
    return filled;
}

// False for what is too large or too far away, and for what is no number.
bool drawable(const Gdiplus::RectF& bounds, float penWidth) {
    constexpr float kFarthest = 1.0e6F;
    return penWidth >= 0.0F && bounds.Width + 2 * penWidth <= kLargestPicture &&
           bounds.Height + 2 * penWidth <= kLargestPicture && std::fabs(bounds.X) <= kFarthest &&
           std::fabs(bounds.Y) <= kFarthest;
}

// The path on a picture of its own, as large as it needs, and where that belongs.
std::unique_ptr<Gdiplus::Bitmap> drawSmoothed(const Gdiplus::GraphicsPath& path, const Gdiplus::Pen& pen,
                                              const Gdiplus::Brush& brush, POINT& place) {
    Gdiplus::RectF bounds;
    if (path.GetBounds(&bounds) != Gdiplus::Ok || bounds.Width <= 0.0F || !drawable(bounds, pen.GetWidth())) {
        return nullptr;
    }
    const int margin = static_cast<int>(std::ceil(pen.GetWidth()));
    place = {static_cast<LONG>(std::floor(bounds.X)) - margin, static_cast<LONG>(std::floor(bounds.Y)) - margin};
    const int width = static_cast<int>(std::ceil(bounds.GetRight())) + margin - static_cast<int>(place.x);
    const int height = static_cast<int>(std::ceil(bounds.GetBottom())) + margin - static_cast<int>(place.y);

    Gdiplus::Bitmap large(width * kSamples, height * kSamples, PixelFormat32bppPARGB);
    {
        Gdiplus::Graphics canvas(&large);
        canvas.ScaleTransform(kSamples, kSamples);
        canvas.TranslateTransform(static_cast<float>(-place.x), static_cast<float>(-place.y));
        canvas.DrawPath(&pen, &path);
        canvas.FillPath(&brush, &path);  // over the inner half of the outline
    }
    auto small = std::make_unique<Gdiplus::Bitmap>(width, height, PixelFormat32bppPARGB);
    return averageDown(large, *small) ? std::move(small) : nullptr;
}

}  // namespace

void OutlineText::draw(Gdiplus::Graphics& graphics, const Gdiplus::RectF& layoutRect, const wchar_t* pszText,
                       const Gdiplus::Font& font, const Gdiplus::StringFormat* pFormat, double outlineWidth,
                       Gdiplus::ARGB fillColour, Gdiplus::ARGB outlineColour) {
    if (pszText == nullptr) {
        return;
    }
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const Gdiplus::StringFormat defaultFormat;
    const Gdiplus::StringFormat& format = pFormat != nullptr ? *pFormat : defaultFormat;
    const Key key{pszText,
                  {layoutRect.X, layoutRect.Y, layoutRect.Width, layoutRect.Height},
                  familyName(font),
                  font.GetSize(),
                  font.GetStyle(),
                  format.GetAlignment(),
                  format.GetLineAlignment(),
                  outlineWidth,
                  fillColour,
                  outlineColour};
    if (!m_key || *m_key != key) {
        Gdiplus::GraphicsPath path(Gdiplus::FillModeAlternate);
        addLines(path, wrapLines(graphics, pszText, font, layoutRect.Width), font, layoutRect, format);
        const Gdiplus::SolidBrush outlineBrush{Gdiplus::Color(outlineColour)};
        Gdiplus::Pen pen(&outlineBrush, static_cast<float>(outlineWidth));
        pen.SetLineJoin(Gdiplus::LineJoinRound);
        const Gdiplus::SolidBrush fillBrush{Gdiplus::Color(fillColour)};
        m_pPicture = drawSmoothed(path, pen, fillBrush, m_place);
        // What came out empty may only have lacked memory: it is tried again at the next frame.
        m_key = m_pPicture != nullptr ? std::optional<Key>(key) : std::nullopt;
    }
    if (m_pPicture != nullptr) {
        graphics.DrawImage(m_pPicture.get(), static_cast<INT>(m_place.x), static_cast<INT>(m_place.y),
                           static_cast<INT>(m_pPicture->GetWidth()), static_cast<INT>(m_pPicture->GetHeight()));
    }
}

void drawOutlineText(Gdiplus::Graphics& graphics, const Gdiplus::RectF& layoutRect, const wchar_t* pszText,
                     const Gdiplus::Font& font, const Gdiplus::StringFormat* pFormat, double outlineWidth,
                     Gdiplus::ARGB fillColour, Gdiplus::ARGB outlineColour) {
    OutlineText().draw(graphics, layoutRect, pszText, font, pFormat, outlineWidth, fillColour, outlineColour);
}
