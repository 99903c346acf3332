// Letters as fine masks: kSubPixels times kSubPixels points for each pixel. Plain memory. User-interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/Handle.h"

inline constexpr int kSubPixels = 4;

// All numbers are sub-pixels. The origin is on the baseline, at the pen's position.
struct GlyphMask {
    int left = 0;
    int top = 0;  // above the baseline
    int width = 0;
    int height = 0;
    int advance = 0;
    std::vector<std::uint8_t> points;  // 1 or 0, the upper row first

    // The sharpness of its upright strokes if it begins at a sub-pixel of a pixel: at most 1.
    std::array<float, kSubPixels> sharpness{};
};

struct GlyphFace {
    std::wstring family;
    int style;   // Gdiplus::FontStyle
    float size;  // pixels
    bool operator==(const GlyphFace&) const = default;
};

// The letters of one face that were needed so far.
class GlyphFont {
 public:
    explicit GlyphFont(const GlyphFace& face);

    // Whether the face has each of these letters, and each can simply follow the one before it.
    [[nodiscard]] bool canWrite(const std::wstring& text) const;
    [[nodiscard]] const GlyphMask& glyph(wchar_t letter);

    // The masks of the face; cached, with a few others. Valid until the next call.
    [[nodiscard]] static GlyphFont& of(const GlyphFace& face);

 private:
    [[nodiscard]] GlyphMask _load(wchar_t letter, int widen) const;

    common::UniqueMemoryDc m_hDc;
    common::UniqueFont m_hFont;
    common::SelectScope m_selected;
    int m_nWiden = 0;  // how much strokes thinner than a pixel are widened
    std::map<wchar_t, GlyphMask> m_glyphs;
};
