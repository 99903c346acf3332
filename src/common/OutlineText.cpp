// Text with or without an outline: letters as fine masks, averaged in linear light.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/GdiPlusFunc.h"
#include "common/GlyphMasks.h"
#include "common/Picture.h"
#include "common/ShownText.h"

namespace {

constexpr wchar_t kEllipsis[] = L"\u2026";

// In pixels. Longer texts and wider outlines are mistakes and not worth their memory.
constexpr double kLargestArea = 1 << 20;
constexpr float kLargestFont = 512.0F;
constexpr double kWidestOutline = 256.0;
constexpr float kFarthest = 1.0e6F;

std::wstring familyName(const Gdiplus::Font& font) {
    Gdiplus::FontFamily family;
    std::array<wchar_t, LF_FACESIZE> name{};
    font.GetFamily(&family);
    family.GetFamilyName(name.data());
    return name.data();
}

// The line metrics of a face, in pixels.
struct LineMetrics {
    float height;
    float ascent;
};

LineMetrics lineMetrics(const Gdiplus::Font& font) {
    Gdiplus::FontFamily family;
    font.GetFamily(&family);
    const int style = font.GetStyle();
    const float em = font.GetSize() / static_cast<float>(std::max<int>(family.GetEmHeight(style), 1));
    return {em * family.GetLineSpacing(style), em * family.GetCellAscent(style)};
}

// Letters on one canvas of sub-pixels. Rows and columns begin at whole pixels.
class MaskCanvas {
 public:
    // pixels
    MaskCanvas(int width, int height)
        : m_width(width * kSubPixels),
          m_height(height * kSubPixels),
          m_points(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height)) {}

    void add(const GlyphMask& glyph, int x, int baseline) {
        for (int row = 0; row < glyph.height; ++row) {
            const int y = baseline - glyph.top + row;
            for (int column = 0; column < glyph.width && y >= 0 && y < m_height; ++column) {
                const int place = x + glyph.left + column;
                if (place >= 0 && place < m_width &&
                    glyph.points[static_cast<std::size_t>(row) * static_cast<std::size_t>(glyph.width) +
                                 static_cast<std::size_t>(column)] != 0) {
                    _at(place, y) = 1;
                }
            }
        }
    }

    // The letters grown by a disc on all sides.
    [[nodiscard]] MaskCanvas grown(double radius) const {
        MaskCanvas result(m_width / kSubPixels, m_height / kSubPixels);
        const int reach = static_cast<int>(radius);
        for (int y = 0; y < m_height; ++y) {
            for (int x = 0; x < m_width; ++x) {
                if (at(x, y) == 0 || _inside(x, y)) {
                    continue;
                }
                for (int dy = -reach; dy <= reach; ++dy) {
                    const int half = static_cast<int>(std::sqrt(radius * radius - dy * dy));
                    result._fill(x - half, x + half + 1, y + dy);
                }
            }
        }
        return result;
    }

    [[nodiscard]] std::uint8_t at(int x, int y) const {
        return m_points[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)];
    }
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

 private:
    std::uint8_t& _at(int x, int y) {
        return m_points[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)];
    }
    // Whether all its neighbours are set as well: then growing it adds nothing to growing them.
    [[nodiscard]] bool _inside(int x, int y) const {
        return x > 0 && y > 0 && x + 1 < m_width && y + 1 < m_height && at(x - 1, y) != 0 && at(x + 1, y) != 0 &&
               at(x, y - 1) != 0 && at(x, y + 1) != 0;
    }
    void _fill(int from, int to, int y) {
        if (y >= 0 && y < m_height) {
            for (int x = std::max(from, 0); x < std::min(to, m_width); ++x) {
                _at(x, y) = 1;
            }
        }
    }

    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_points;
};

// A letter and its pen position, in sub-pixels from the beginning of its line.
struct PlacedGlyph {
    const GlyphMask* glyph;
    int x;
};
struct PlacedLine {
    std::vector<PlacedGlyph> glyphs;
    float score = 0.0F;  // how sharp it is, to be compared with that of the same line in another place
};

// How a line's advances are changed. All numbers are sub-pixels.
struct Spacing {
    int width = 0;  // of the line
    int total = 0;  // of its advances with the wider spaces; condensed if that is more than the width
    int wider = 0;  // each space
};

int advanceOf(GlyphFont& font, const std::wstring& text) {
    int width = 0;
    for (const wchar_t letter : text) {
        width += font.glyph(letter).advance;
    }
    return width;
}

constexpr int kAir = kSubPixels * 4;  // stays free at the ends of a line if its spaces are widened or it is moved

// The spaces of small letters are too narrow to keep words apart, above all within an outline: they get as much of
// `room` as they need. Letters of a line that must be whole give way to them by a twenty-fifth, and by more only if the
// line is too long for its room.
Spacing spacingOf(GlyphFont& font, const std::wstring& text, int em, int room, bool bWhole) {
    constexpr int kWidestSpace = kSubPixels * 7 / 2;
    const int natural = advanceOf(font, text);
    const auto spaces = std::max(1, static_cast<int>(std::count(text.begin(), text.end(), L' ')));
    const int most = bWhole ? room + room / 25 : room - kAir;
    const int wanted = std::max(0, std::min(kWidestSpace, em * 2 / 5) - font.glyph(L' ').advance);
    const int wider = text.find(L' ') == std::wstring::npos ? 0 : std::clamp((most - natural) / spaces, 0, wanted);
    const int total = natural + wider * spaces;
    return {std::min(total, room), total, wider};
}

// Aligns upright strokes to whole pixels if that moves a letter by less than half a pixel and does not make it touch
// the one before it. `start`: the beginning of the line within a pixel.
PlacedLine placeLine(GlyphFont& font, const std::wstring& text, int start, const Spacing& spacing) {
    constexpr int kFarthestMove = kSubPixels / 2;
    constexpr int kGap = kSubPixels * 3 / 4;  // between two letters
    constexpr float kMoveCosts = 0.12F;       // of its sharpness, for each sub-pixel
    PlacedLine line;
    int advance = 0;
    int inkEnd = -(1 << 20);
    for (const wchar_t letter : text) {
        const GlyphMask& glyph = font.glyph(letter);
        const int pen = spacing.width < spacing.total ? advance * spacing.width / spacing.total : advance;
        int best = 0;
        float bestScore = -10.0F;
        for (int move = -kFarthestMove; move <= kFarthestMove; ++move) {
            const int ink = pen + move + glyph.left;
            const int phase = ((start + ink) % kSubPixels + kSubPixels) % kSubPixels;
            const float tight = ink < inkEnd + kGap ? static_cast<float>(inkEnd + kGap - ink) : 0.0F;
            const float score = glyph.sharpness[static_cast<std::size_t>(phase)] -
                                kMoveCosts * static_cast<float>(std::abs(move)) - tight;
            if (score > bestScore) {
                bestScore = score;
                best = move;
            }
        }
        line.glyphs.push_back({&glyph, pen + best});
        line.score += bestScore;
        if (glyph.width > 0) {
            inkEnd = pen + best + glyph.left + glyph.width;
        }
        advance += glyph.advance + (letter == L' ' ? spacing.wider : 0);
    }
    return line;
}

using Measure = std::function<float(const std::wstring&)>;

// The longest beginning of the line that fits with an ellipsis.
std::wstring shortened(std::wstring line, float width, const Measure& measure) {
    while (!line.empty() && measure(line + kEllipsis) > width) {
        line.pop_back();
    }
    while (!line.empty() && line.back() == L' ') {
        line.pop_back();
    }
    return line + kEllipsis;
}

bool isBlank(wchar_t letter) {
    return letter == L' ' || letter == L'\r' || letter == L'\n';
}

// Chinese characters, kana and the punctuation that goes with them.
bool isEastAsian(wchar_t letter) {
    return (letter >= 0x2E80 && letter <= 0x9FFF) || (letter >= 0xF900 && letter <= 0xFAFF) ||
           (letter >= 0xFF00 && letter <= 0xFFEF);
}

// Chinese and Japanese write without spaces: a line may end after any character, but none begins with a closing mark or
// a small letter, and none ends with an opening mark.
bool mayBreak(wchar_t before, wchar_t after) {
    constexpr std::wstring_view kNeverFirst =
        L"\u3001\u3002\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF01\u300D\u300F\uFF09\u3011\u30FB\u30FC\u3005\u201D\u2026.,:;?!)"
        L"%"
        L"\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u308E\u30A1\u30A3\u30A5\u30A7\u30A9\u30C3\u30E3\u30E5"
        L"\u30E7\u30EE";
    constexpr std::wstring_view kNeverLast = L"\u300C\u300E\uFF08\u3010\u201C(";
    return (isEastAsian(before) || isEastAsian(after)) && kNeverFirst.find(after) == std::wstring_view::npos &&
           kNeverLast.find(before) == std::wstring_view::npos;
}

// The length of the first part of a text that stays together.
std::size_t wordLength(std::wstring_view text) {
    std::size_t end = 0;
    while (end < text.size() && !isBlank(text[end]) && (end == 0 || !mayBreak(text[end - 1], text[end]))) {
        ++end;
    }
    return end;
}

// As many words per line as fit, at least one.
std::vector<std::wstring> wrapLines(std::wstring_view text, float width, const Measure& measure) {
    std::vector<std::wstring> lines(1);
    bool startLine = true;
    bool apart = true;  // from the word before
    while (!text.empty()) {
        const std::size_t end = wordLength(text);
        const std::wstring word(text.substr(0, end));
        const std::wstring candidate = startLine ? word : lines.back() + (apart ? L" " : L"") + word;
        if (startLine || measure(candidate) <= width) {
            lines.back() = candidate;
        } else {
            lines.push_back(word);
        }
        if (end == text.size()) {
            break;
        }
        apart = isBlank(text[end]);
        startLine = text[end] == L'\n';
        if (startLine) {
            lines.emplace_back();
        }
        text.remove_prefix(apart ? end + 1 : end);
    }
    return lines;
}

float widestOf(const std::vector<std::wstring>& lines, const Measure& measure) {
    float widest = 0.0F;
    for (const std::wstring& line : lines) {
        widest = std::max(widest, measure(line));
    }
    return widest;
}

// The same number of lines, as equal as possible: no single short word in the last one.
std::vector<std::wstring> balancedLines(std::wstring_view text, std::vector<std::wstring> lines,
                                        const Measure& measure) {
    for (float width = widestOf(lines, measure) - 1.0F; lines.size() > 1 && width > 1.0F; width -= 1.0F) {
        std::vector<std::wstring> narrower = wrapLines(text, width, measure);
        if (narrower.size() != lines.size() || widestOf(narrower, measure) > width) {
            break;
        }
        lines = std::move(narrower);
    }
    return lines;
}

// The displayed text: wrapped, and cut with an ellipsis if the format requests that. Only text that is not cut may have
// lines that are longer than the rectangle by `slack`; they are condensed.
std::vector<std::wstring> linesOf(const wchar_t* pszText, const Gdiplus::RectF& layout,
                                  const Gdiplus::StringFormat& format, float lineHeight, float slack,
                                  const Measure& measure, const Measure& wordsApart) {
    const bool oneLine = (format.GetFormatFlags() & Gdiplus::StringFormatFlagsNoWrap) != 0;
    const bool cut = format.GetTrimming() == Gdiplus::StringTrimmingEllipsisCharacter;
    std::vector<std::wstring> lines =
        oneLine ? std::vector<std::wstring>{pszText} : wrapLines(pszText, layout.Width + (cut ? 0.0F : slack), measure);
    if (!cut) {
        return lines;
    }
    // A line may exceed the box by the blank part of its descenders.
    constexpr float kTolerance = 0.3F;
    const float fitting = lineHeight > 0.0F ? layout.Height / lineHeight + kTolerance : 1.0F;
    const auto most = static_cast<std::size_t>(std::clamp(fitting, 1.0F, 100.0F));
    if (!oneLine && lines.size() == 1 && most > 1) {
        lines = wrapLines(pszText, layout.Width - static_cast<float>(kAir) / kSubPixels, wordsApart);
    }
    if (!oneLine && lines.size() <= most) {
        lines = balancedLines(pszText, std::move(lines), measure);
    }
    if (lines.size() > most) {
        lines.resize(most);
        lines.back() = shortened(lines.back(), layout.Width, measure);
    }
    for (std::wstring& line : lines) {
        if (measure(line) > layout.Width) {
            line = shortened(line, layout.Width, measure);
        }
    }
    return lines;
}

// The start of a block of this size in its rectangle.
float aligned(float start, float size, float block, Gdiplus::StringAlignment alignment) {
    return alignment == Gdiplus::StringAlignmentFar      ? start + size - block
           : alignment == Gdiplus::StringAlignmentCenter ? start + (size - block) / 2
                                                         : start;
}

// A line in sub-pixels, its upper left corner at `place`.
std::unique_ptr<Gdiplus::GraphicsPath> pathOf(const std::wstring& line, const Gdiplus::Font& font,
                                              const Gdiplus::PointF& place) {
    Gdiplus::FontFamily family;
    font.GetFamily(&family);
    auto path = std::make_unique<Gdiplus::GraphicsPath>(Gdiplus::FillModeWinding);
    path->AddString(line.c_str(), -1, &family, font.GetStyle(), font.GetSize() * kSubPixels, place,
                    Gdiplus::StringFormat::GenericTypographic());
    return path;
}

// GDI+ draws the paths of scripts whose letters join or come from other fonts. `condensed`: the part of their width
// that they are given.
void addPath(MaskCanvas& canvas, const std::wstring& line, const Gdiplus::Font& font, int baseline, float left,
             float ascent, float condensed) {
    const auto path = pathOf(line, font, Gdiplus::PointF(left, static_cast<float>(baseline) - ascent * kSubPixels));
    const Gdiplus::Matrix narrower(condensed, 0.0F, 0.0F, 1.0F, left * (1.0F - condensed), 0.0F);
    path->Transform(&narrower);
    Gdiplus::Bitmap bitmap(canvas.width(), canvas.height(), PixelFormat32bppARGB);
    {
        Gdiplus::Graphics graphics(&bitmap);
        const Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFFU));
        graphics.FillPath(&white, path.get());
    }
    const Gdiplus::Rect area(0, 0, canvas.width(), canvas.height());
    Gdiplus::BitmapData data;
    if (bitmap.LockBits(&area, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB, &data) != Gdiplus::Ok) {
        return;
    }
    GlyphMask mask;
    mask.top = baseline;
    mask.width = canvas.width();
    mask.height = canvas.height();
    for (int y = 0; y < mask.height; ++y) {
        const auto* const row =
            reinterpret_cast<const DWORD*>(static_cast<const BYTE*>(data.Scan0) + std::ptrdiff_t{y} * data.Stride);
        std::transform(row, row + mask.width, std::back_inserter(mask.points),
                       [](DWORD pixel) { return static_cast<std::uint8_t>(pixel >> 31U); });
    }
    bitmap.UnlockBits(&data);
    canvas.add(mask, 0, baseline);
}

// How many of a pixel's points count as letter where `inside` of them are within one and the outline has the others. A
// light letter's half-covered pixels shine into the narrow gaps beside it and close them: they give way to the outline,
// and what is nearly whole becomes whole.
unsigned sharpened(unsigned inside, unsigned all) {
    constexpr double kGiveWay = 1.2;
    const double share = std::pow(static_cast<double>(inside) / all, kGiveWay);
    return static_cast<unsigned>(std::lround(share * share * (3.0 - 2.0 * share) * all));
}

// The letters' colour inside the letters, the outline's colour around them, averaged for each pixel.
Picture coloured(const MaskCanvas& letters, const MaskCanvas* outline, Gdiplus::ARGB fill, Gdiplus::ARGB edge) {
    constexpr int kPoints = kSubPixels * kSubPixels;
    std::array<std::array<DWORD, kPoints + 1>, kPoints + 1> mixes{};
    for (int first = 0; first <= kPoints; ++first) {
        for (int second = 0; first + second <= kPoints; ++second) {
            mixes[static_cast<std::size_t>(first)][static_cast<std::size_t>(second)] =
                mixColours(fill, first, edge, second, kPoints);
        }
    }
    std::array<unsigned, kPoints + 1> sharp{};
    for (unsigned inside = 0; inside <= kPoints; ++inside) {
        sharp[inside] = sharpened(inside, kPoints);
    }
    Picture picture{letters.width() / kSubPixels, letters.height() / kSubPixels, {}};
    picture.pixels.reserve(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            unsigned inLetters = 0;
            unsigned inOutline = 0;
            for (int point = 0; point < kPoints; ++point) {
                const int column = x * kSubPixels + point % kSubPixels;
                const int row = y * kSubPixels + point / kSubPixels;
                const bool letter = letters.at(column, row) != 0;
                inLetters += letter ? 1U : 0U;
                inOutline += !letter && outline != nullptr && outline->at(column, row) != 0 ? 1U : 0U;
            }
            if (inLetters + inOutline == kPoints && outline != nullptr) {
                inLetters = sharp[inLetters];
                inOutline = kPoints - inLetters;
            }
            picture.pixels.push_back(mixes[inLetters][inOutline]);
        }
    }
    return picture;
}

bool withinReach(const Gdiplus::RectF& layout) {
    return std::fabs(layout.X) <= kFarthest && std::fabs(layout.Y) <= kFarthest &&
           std::fabs(layout.Width) <= kFarthest && std::fabs(layout.Height) <= kFarthest;
}

// One text while it is being drawn.
class TextLayout {
 public:
    TextLayout(Gdiplus::Graphics& graphics, const Gdiplus::Font& font, const std::wstring& family,
               const wchar_t* pszText)
        : m_graphics(graphics),
          m_font(font),
          m_glyphs(GlyphFont::of({family, font.GetStyle(), font.GetSize()})),
          m_metrics(lineMetrics(font)),
          m_bSimple(m_glyphs.canWrite(_printable(pszText))) {}

    // What it takes, wrapped at `width`, if it has letters of other fonts; otherwise nothing.
    [[nodiscard]] Gdiplus::SizeF sizeWithOtherFonts(const wchar_t* pszText, float width) {
        if (m_bSimple) {
            return {};
        }
        const Measure measure = [this](const std::wstring& line) { return _width(line); };
        const std::vector<std::wstring> lines = wrapLines(pszText, width, measure);
        return {widestOf(lines, measure), m_metrics.height * static_cast<float>(lines.size())};
    }

    // On a picture of its own, just large enough, to be drawn at `place`.
    [[nodiscard]] Picture draw(const wchar_t* pszText, const Gdiplus::RectF& layout,
                               const Gdiplus::StringFormat& format, double outlineWidth, Gdiplus::ARGB fill,
                               Gdiplus::ARGB edge, POINT& place) {
        const Measure measure = [this](const std::wstring& line) { return _width(line); };
        const Measure wordsApart = [this](const std::wstring& line) {
            return _spaced(line, kFarthest, false, false).width;
        };
        // What its outline takes, and a twentieth, which nobody notices: systems measure texts differently.
        const float slack = static_cast<float>(outlineWidth) + layout.Width / 20;
        const bool centred = format.GetAlignment() == Gdiplus::StringAlignmentCenter;
        const bool whole = format.GetTrimming() != Gdiplus::StringTrimmingEllipsisCharacter;
        std::vector<Line> lines;
        for (std::wstring& text : linesOf(pszText, layout, format, m_metrics.height, slack, measure, wordsApart)) {
            lines.push_back(_spaced(std::move(text), layout.Width, centred, whole));
        }
        float widest = 0.0F;
        for (const Line& line : lines) {
            widest = std::max(widest, line.width);
        }
        const float block = m_metrics.height * static_cast<float>(lines.size());
        const float top = aligned(layout.Y, layout.Height, block, format.GetLineAlignment());
        const int margin = static_cast<int>(std::ceil(outlineWidth / 2)) + kMargin;
        const float leftmost = _left(layout, widest, format);
        place = {static_cast<LONG>(std::floor(leftmost)) - margin, static_cast<LONG>(std::floor(top)) - margin};
        const double width = std::ceil(widest) + 2.0 * margin + 1.0;
        const double height = std::ceil(block) + 2.0 * margin + 1.0;
        if (!(width * height <= kLargestArea)) {
            return {};
        }
        MaskCanvas letters(static_cast<int>(width), static_cast<int>(height));
        float ascent = top + m_metrics.ascent;
        for (const Line& line : lines) {
            const float left = _left(layout, line.width, format) - static_cast<float>(place.x);
            // On a whole pixel, so that strokes on it are sharp.
            const int baseline = static_cast<int>(std::lround(ascent) - place.y) * kSubPixels;
            _addLine(letters, line, left, baseline);
            ascent += m_metrics.height;
        }
        if (outlineWidth <= 0.0) {
            return coloured(letters, nullptr, fill, edge);
        }
        const MaskCanvas outline = letters.grown(outlineWidth / 2 * kSubPixels);
        return coloured(letters, &outline, fill, edge);
    }

 private:
    static constexpr int kMargin = 2;  // pixels, for letters that exceed their advance

    struct Line {
        std::wstring text;
        Spacing spacing;
        float width;    // pixels
        bool bMovable;  // by half a pixel
    };

    [[nodiscard]] Line _spaced(std::wstring text, float room, bool bCentred, bool bWhole) {
        if (!m_bSimple) {
            const float width = _width(text);
            return {std::move(text), {}, bWhole ? std::min(width, room) : width, false};
        }
        const int em = static_cast<int>(m_font.GetSize() * kSubPixels);
        const int roomPoints = static_cast<int>(room * kSubPixels);
        const Spacing spacing = spacingOf(m_glyphs, text, em, roomPoints, bWhole);
        return {std::move(text), spacing, static_cast<float>(spacing.width) / kSubPixels,
                bCentred && spacing.width + kAir <= roomPoints};
    }

    static std::wstring _printable(std::wstring text) {
        std::erase_if(text, [](wchar_t letter) { return letter == L'\r' || letter == L'\n'; });
        return text;
    }

    [[nodiscard]] float _width(const std::wstring& line) {
        if (m_bSimple) {
            return static_cast<float>(advanceOf(m_glyphs, line)) / kSubPixels;
        }
        // To the end of its path: the system measures letters of other fonts as if they stood on whole pixels.
        Gdiplus::RectF bounds;
        pathOf(line, m_font, Gdiplus::PointF(0.0F, 0.0F))->GetBounds(&bounds);
        return std::max(0.0F, bounds.X + bounds.Width) / kSubPixels;
    }

    [[nodiscard]] static float _left(const Gdiplus::RectF& layout, float width, const Gdiplus::StringFormat& format) {
        return aligned(layout.X, layout.Width, width, format.GetAlignment());
    }

    void _addLine(MaskCanvas& letters, const Line& line, float left, int baseline) {
        if (!m_bSimple) {
            const float natural = _width(line.text);
            addPath(letters, line.text, m_font, baseline, left * kSubPixels, m_metrics.ascent,
                    natural > 0.0F ? line.width / natural : 1.0F);
            return;
        }
        int start = static_cast<int>(std::lround(left * kSubPixels));
        PlacedLine best = placeLine(m_glyphs, line.text, start, line.spacing);
        if (line.bMovable) {
            // To where, within a pixel, the most upright strokes are on whole pixels anyway.
            const int exact = start;
            for (const int other : {exact - 1, exact + 1, exact + 2}) {
                PlacedLine placed = placeLine(m_glyphs, line.text, other, line.spacing);
                if (placed.score > best.score) {
                    best = std::move(placed);
                    start = other;
                }
            }
        }
        for (const PlacedGlyph& placed : best.glyphs) {
            letters.add(*placed.glyph, start + placed.x, baseline);
        }
    }

    Gdiplus::Graphics& m_graphics;
    const Gdiplus::Font& m_font;
    GlyphFont& m_glyphs;
    LineMetrics m_metrics;
    bool m_bSimple;
};

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
    Key key{common::shownText(pszText),
            {layoutRect.X, layoutRect.Y, layoutRect.Width, layoutRect.Height},
            familyName(font),
            font.GetSize(),
            font.GetStyle(),
            format.GetAlignment(),
            format.GetLineAlignment(),
            format.GetTrimming(),
            format.GetFormatFlags(),
            outlineWidth,
            fillColour,
            outlineColour};
    if (!m_key || *m_key != key) {
        const bool possible = !key.text.empty() && withinReach(layoutRect) && key.fontSize > 0.0F &&
                              key.fontSize <= kLargestFont && outlineWidth >= 0.0 && outlineWidth <= kWidestOutline;
        m_pBitmap.reset();
        m_picture =
            possible ? TextLayout(graphics, font, key.fontFamily, key.text.c_str())
                           .draw(key.text.c_str(), layoutRect, format, outlineWidth, fillColour, outlineColour, m_place)
                     : Picture{};
        m_key = std::move(key);
        if (!m_picture.pixels.empty()) {
            m_pBitmap = tryMakeGdiPlus<Gdiplus::Bitmap>(m_picture.width, m_picture.height, m_picture.width * 4,
                                                        PixelFormat32bppPARGB,
                                                        reinterpret_cast<BYTE*>(m_picture.pixels.data()));
            if (m_pBitmap == nullptr) {
                m_key.reset();  // no memory: tried again at the next frame
            }
        }
    }
    if (m_pBitmap != nullptr) {
        graphics.DrawImage(m_pBitmap.get(), static_cast<INT>(m_place.x), static_cast<INT>(m_place.y), m_picture.width,
                           m_picture.height);
    }
}

void coverOtherFonts(Gdiplus::Graphics& graphics, const wchar_t* pszText, const Gdiplus::Font& font, float width,
                     Gdiplus::RectF& measured) {
    // Latin, Greek and Cyrillic letters are in every font of dialogs.
    constexpr wchar_t kFirstOfOtherFonts = 0x0530;
    const std::wstring_view text(pszText);
    const bool others = std::ranges::any_of(
        text, [](wchar_t letter) { return letter >= kFirstOfOtherFonts && (letter < 0x2000 || letter > 0x20CF); });
    if (!others || !(font.GetSize() > 0.0F && font.GetSize() <= kLargestFont)) {
        return;
    }
    const Gdiplus::SizeF size =
        TextLayout(graphics, font, familyName(font), pszText).sizeWithOtherFonts(pszText, width);
    measured.Width = std::max(measured.Width, size.Width);
    measured.Height = std::max(measured.Height, size.Height);
}

void drawOutlineText(Gdiplus::Graphics& graphics, const Gdiplus::RectF& layoutRect, const wchar_t* pszText,
                     const Gdiplus::Font& font, const Gdiplus::StringFormat* pFormat, double outlineWidth,
                     Gdiplus::ARGB fillColour, Gdiplus::ARGB outlineColour) {
    OutlineText().draw(graphics, layoutRect, pszText, font, pFormat, outlineWidth, fillColour, outlineColour);
}
