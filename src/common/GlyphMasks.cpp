#include "common/GlyphMasks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <list>

#include "common/GdiPlus.h"

namespace {

// One for each text size of a card, and as many again while the screen changes.
constexpr std::size_t kFonts = 6;

// The last letter of the scripts whose letters simply follow each other: Latin, Greek, Cyrillic, Armenian.
constexpr wchar_t kLastSimple = 0x058F;
constexpr wchar_t kFirstCombining = 0x0300;
constexpr wchar_t kLastCombining = 0x036F;
// Their punctuation: dashes, quotation marks, the ellipsis.
constexpr wchar_t kFirstPunctuation = 0x2010;
constexpr wchar_t kLastPunctuation = 0x2044;

bool simple(wchar_t letter) {
    const bool combining = letter >= kFirstCombining && letter <= kLastCombining;
    return (letter <= kLastSimple && !combining) || (letter >= kFirstPunctuation && letter <= kLastPunctuation) ||
           letter == 0x20AC;
}

common::UniqueFont makeFont(const GlyphFace& face) {
    LOGFONTW font{};
    font.lfHeight = -std::max(1L, std::lround(std::clamp(face.size, 0.0F, 4096.0F) * kSubPixels));
    font.lfWeight = (face.style & Gdiplus::FontStyleBold) != 0 ? FW_BOLD : FW_NORMAL;
    font.lfItalic = (face.style & Gdiplus::FontStyleItalic) != 0 ? TRUE : FALSE;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfOutPrecision = OUT_TT_PRECIS;
    ::lstrcpynW(font.lfFaceName, face.family.c_str(), LF_FACESIZE);
    return common::UniqueFont(::CreateFontIndirectW(&font));
}

// The width of an upright stroke: the most frequent one in the middle rows of an upright letter.
int strokeWidth(const GlyphMask& upright) {
    if (upright.height == 0) {
        return 0;
    }
    const auto row = upright.points.begin() + std::ptrdiff_t{upright.height / 2} * upright.width;
    return static_cast<int>(std::count(row, row + upright.width, std::uint8_t{1}));
}

// Strokes grow to the right.
void widen(GlyphMask& mask, int by) {
    if (by <= 0 || mask.points.empty()) {
        return;
    }
    const int width = mask.width + by;
    std::vector<std::uint8_t> wider(static_cast<std::size_t>(width) * static_cast<std::size_t>(mask.height));
    for (int y = 0; y < mask.height; ++y) {
        for (int x = 0; x < mask.width; ++x) {
            if (mask.points[static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width) +
                            static_cast<std::size_t>(x)] != 0) {
                std::fill_n(wider.begin() + std::ptrdiff_t{y} * width + x, by + 1, std::uint8_t{1});
            }
        }
    }
    mask.width = width;
    mask.points = std::move(wider);
}

// A column of pixels is sharp if full or empty, but not if half full: the squares show this.
std::array<float, kSubPixels> sharpnessOf(const GlyphMask& mask) {
    std::vector<float> columns(static_cast<std::size_t>(mask.width));
    for (int y = 0; y < mask.height; ++y) {
        for (int x = 0; x < mask.width; ++x) {
            columns[static_cast<std::size_t>(x)] +=
                mask.points[static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width) +
                            static_cast<std::size_t>(x)];
        }
    }
    std::array<float, kSubPixels> sharpness{};
    for (int phase = 0; phase < kSubPixels; ++phase) {
        std::vector<float> pixels(static_cast<std::size_t>((mask.width + phase) / kSubPixels + 1));
        for (int x = 0; x < mask.width; ++x) {
            pixels[static_cast<std::size_t>((x + phase) / kSubPixels)] += columns[static_cast<std::size_t>(x)];
        }
        for (const float pixel : pixels) {
            sharpness[static_cast<std::size_t>(phase)] += pixel * pixel;
        }
    }
    const float most = *std::max_element(sharpness.begin(), sharpness.end());
    for (float& value : sharpness) {
        value = most > 0 ? value / most : 1.0F;
    }
    return sharpness;
}

}  // namespace

GlyphFont::GlyphFont(const GlyphFace& face)
    : m_hDc(::CreateCompatibleDC(nullptr)), m_hFont(makeFont(face)), m_selected(m_hDc.get(), m_hFont.get()) {
    const GlyphMask upright = _load(L'l', 0);
    const int stroke = strokeWidth(upright);
    // To a whole pixel, but at most half the advance of the narrowest letter.
    m_nWiden = stroke > 0 ? std::max(0, std::min(kSubPixels, upright.advance / 2) - stroke) : 0;
}

bool GlyphFont::canWrite(const std::wstring& text) const {
    if (!std::all_of(text.begin(), text.end(), simple)) {
        return false;
    }
    std::vector<WORD> indices(text.size());
    const DWORD count = ::GetGlyphIndicesW(m_hDc.get(), text.c_str(), static_cast<int>(text.size()), indices.data(),
                                           GGI_MARK_NONEXISTING_GLYPHS);
    constexpr WORD kMissing = 0xFFFF;
    return count != GDI_ERROR && std::find(indices.begin(), indices.end(), kMissing) == indices.end();
}

const GlyphMask& GlyphFont::glyph(wchar_t letter) {
    const auto known = m_glyphs.find(letter);
    return known != m_glyphs.end() ? known->second : m_glyphs.emplace(letter, _load(letter, m_nWiden)).first->second;
}

GlyphMask GlyphFont::_load(wchar_t letter, int widening) const {
    constexpr MAT2 kAsItIs{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
    GLYPHMETRICS metrics{};
    const DWORD size = ::GetGlyphOutlineW(m_hDc.get(), letter, GGO_BITMAP, &metrics, 0, nullptr, &kAsItIs);
    if (size == GDI_ERROR) {
        return {};
    }
    GlyphMask mask;
    mask.advance = metrics.gmCellIncX;
    std::vector<std::uint8_t> bits(size);
    // A space has no picture.
    if (size != 0 &&
        ::GetGlyphOutlineW(m_hDc.get(), letter, GGO_BITMAP, &metrics, size, bits.data(), &kAsItIs) == size) {
        mask.left = metrics.gmptGlyphOrigin.x;
        mask.top = metrics.gmptGlyphOrigin.y;
        mask.width = static_cast<int>(metrics.gmBlackBoxX);
        mask.height = static_cast<int>(metrics.gmBlackBoxY);
        const int stride = (mask.width + 31) / 32 * 4;
        for (int y = 0; y < mask.height; ++y) {
            for (int x = 0; x < mask.width; ++x) {
                const unsigned eight = bits[static_cast<std::size_t>(y) * static_cast<std::size_t>(stride) +
                                            static_cast<std::size_t>(x) / 8];
                mask.points.push_back(static_cast<std::uint8_t>(eight >> (7U - static_cast<unsigned>(x) % 8U) & 1U));
            }
        }
        widen(mask, widening);
    }
    mask.sharpness = sharpnessOf(mask);
    return mask;
}

GlyphFont& GlyphFont::of(const GlyphFace& face) {
    using Entry = std::pair<GlyphFace, std::unique_ptr<GlyphFont>>;
    static std::list<Entry> fonts;  // the most recently used comes first
    const auto known =
        std::find_if(fonts.begin(), fonts.end(), [&](const Entry& entry) { return entry.first == face; });
    if (known != fonts.end()) {
        fonts.splice(fonts.begin(), fonts, known);
        return *fonts.front().second;
    }
    if (fonts.size() == kFonts) {
        fonts.pop_back();
    }
    fonts.emplace_front(face, std::make_unique<GlyphFont>(face));
    return *fonts.front().second;
}
