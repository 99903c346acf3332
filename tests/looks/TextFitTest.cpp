// Every text that ships, in every language and at every ratio, in pixels: it keeps to its box, what does not fit ends
// with an ellipsis, and letters keep apart.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <set>

#include "Logic/FuncX/FunctionTables.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/CardGeometry.h"
#include "UI/CardStyle.h"
#include "UI/ItemDlg/ErrorItemDlg.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/GdiPlusFunc.h"
#include "common/Rendering.h"
#include "common/UiLanguage.h"
#include "companions/captions/CaptionIds.h"
#include "looks/Looks.h"
#include "res/Pictures.h"

namespace looks {
namespace {

using rendering::alphaOf;
using rendering::Canvas;

constexpr int kWidth = 300;
constexpr int kHeight = 200;

struct Text {
    UINT id;
    LANGID language;
    std::wstring text;
};

// The texts of a block of the string table, in one language.
BOOL CALLBACK addLanguage(HMODULE module, LPCWSTR type, LPCWSTR block, WORD language, LONG_PTR list) {
    constexpr UINT kBlock = 16;
    const HRSRC found = ::FindResourceExW(module, type, block, language);
    const auto* text = static_cast<const WCHAR*>(::LockResource(::LoadResource(module, found)));
    for (UINT i = 0; i < kBlock; ++i) {
        const UINT id = (static_cast<UINT>(reinterpret_cast<ULONG_PTR>(block)) - 1) * kBlock + i;
        if (*text != 0) {
            reinterpret_cast<std::vector<Text>*>(list)->push_back({id, language, {text + 1, *text}});
        }
        text += *text + 1;
    }
    return TRUE;
}
BOOL CALLBACK addBlock(HMODULE module, LPCWSTR type, LPWSTR block, LONG_PTR list) {
    return ::EnumResourceLanguagesW(module, type, block, &addLanguage, list);
}
const std::vector<Text>& linkedTexts() {
    static const std::vector<Text> texts = [] {
        std::vector<Text> found;
        ::EnumResourceNamesW(nullptr, RT_STRING, &addBlock, reinterpret_cast<LONG_PTR>(&found));
        return found;
    }();
    return texts;
}
bool isCaption(const Text& text) {
    return text.id >= IDS_CAPTION_MUTE && text.id <= IDS_CAPTION_ODD;
}
// The program's own texts on the cards. A window of its own shows those about faults.
const std::vector<Text>& allTexts() {
    static const std::vector<Text> texts = [] {
        std::vector<Text> found = linkedTexts();
        std::erase_if(found, [](const Text& text) {
            return isCaption(text) || text.id == IDS_FAULT_HANGS || text.id == IDS_FAULT_RESTARTED ||
                   text.id == IDS_FAULT_SET_ASIDE;
        });
        return found;
    }();
    return texts;
}

// The bounds of what is not transparent.
RECT inkOf(const std::vector<DWORD>& pixels, std::size_t width = kWidth) {
    RECT ink{100000, 100000, 0, 0};
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i] >> 24U != 0) {
            const auto x = static_cast<LONG>(i % width);
            const auto y = static_cast<LONG>(i / width);
            ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                   std::max(ink.bottom, y + 1)};
        }
    }
    return ink;
}

// The same text, if need be a fraction of a pixel further: where it is centred depends on the last bit of a number.
bool alike(const std::vector<DWORD>& one, const std::vector<DWORD>& other) {
    if (one == other) {
        return true;
    }
    const RECT first = inkOf(one);
    const RECT second = inkOf(other);
    const auto close = [](LONG a, LONG b) { return std::abs(a - b) <= 1; };
    const auto coverage = [](const std::vector<DWORD>& pixels) {
        double sum = 0.0;
        for (const DWORD pixel : pixels) {
            sum += static_cast<double>(pixel >> 24U) / 255.0;
        }
        return sum;
    };
    return close(first.left, second.left) && close(first.right, second.right) && first.top == second.top &&
           first.bottom == second.bottom && std::fabs(coverage(one) - coverage(other)) <= 0.1 * coverage(one);
}

bool isDescription(UINT id) {
    static const std::set<UINT> ids = [] {
        std::set<UINT> found;
        for (const functiontables::Look* look : functiontables::kOtherLooks) {
            found.insert(look->uDescId);
        }
        for (const functiontables::CircleDescription* circle : functiontables::kCircleFunctions) {
            found.insert(circle->look.uDescId);
        }
        return found;
    }();
    return ids.contains(id);
}

bool isDisplayName(UINT id) {
    return id >= IDS_OUTPUT_MODE_INTERNAL && id <= IDS_OUTPUT_SWAP && !isDescription(id);
}

// Those of the function lists that are written, in every language.
const std::vector<std::wstring>& captions() {
    static const std::vector<std::wstring> found = [] {
        std::vector<std::wstring> texts;
        for (const Text& text : linkedTexts()) {
            if (isCaption(text)) {
                texts.push_back(text.text);
            }
        }
        return texts;
    }();
    return found;
}

std::size_t languageCount() {
    return common::languagesOfText(nullptr, IDS_CANCEL).size();
}

// Whether the font of most systems has its letters. Chinese, Japanese and Korean systems have another one.
bool isOwnScript(const std::wstring& text) {
    return std::ranges::all_of(text,
                               [](wchar_t letter) { return letter < 0x0530 || letter == 0x2026 || letter == 0x203A; });
}

// What stands below items, each once: names of connectors are the same in every language.
std::set<std::wstring> itemTexts() {
    std::set<std::wstring> texts;
    for (const Text& text : allTexts()) {
        if (!isDescription(text.id) && text.id != IDS_WIRELESS_NO_DEVICE) {
            texts.insert(text.text);
        }
    }
    return texts;
}

// The box of an item, one window for many texts.
class DescBox {
 public:
    explicit DescBox(const Placement& placement) {
        m_box.setPlacement(placement);
        EXPECT_TRUE(m_box.Create(nullptr));
    }
    RECT placeOf(const std::wstring& text) {
        constexpr RECT kItem{300, 200, 372, 272};
        ItemDescSeam::setText(m_box, text);
        EXPECT_EQ(m_box.setWndPos(&kItem), S_OK);
        return support::windowRect(m_box.m_hWnd);
    }
    const CItemDescDlg& window() const { return m_box; }

 private:
    CItemDescDlg m_box{L""};
};

class ShippedTexts : public items::ItemTest, public testing::WithParamInterface<double> {
 protected:
    void SetUp() override {
        m_room.setRatio(GetParam());
        ASSERT_EQ(getNormalDPIWndFont(&m_room.strip(), m_graphics, m_pFont), S_OK);
    }
    using Draw = std::function<void(const std::wstring&)>;
    std::vector<DWORD> pixelsOfText(const Draw& draw, const std::wstring& text) {
        m_canvas.clear();
        draw(text);
        return m_canvas.pixels();
    }
    static void expectInside(const std::vector<DWORD>& seen, const RECT& place, const std::wstring& text) {
        const RECT ink = inkOf(seen);
        EXPECT_FALSE(ink.right <= ink.left) << testing::PrintToString(text);
        EXPECT_GE(ink.left, place.left) << testing::PrintToString(text);
        EXPECT_LE(ink.right, place.right) << testing::PrintToString(text);
        // An outline is wider than the gap between a description and the picture.
        EXPECT_GE(ink.top, place.top - 1) << testing::PrintToString(text);
        EXPECT_LE(ink.bottom, place.bottom + 1) << testing::PrintToString(text);
    }
    // What is seen is a part of the text with an ellipsis.
    void expectEllipsis(const std::wstring& text, const std::vector<DWORD>& seen, const Draw& draw) {
        for (std::size_t length = text.size(); length-- > 0;) {
            if (seen == pixelsOfText(draw, text.substr(0, length) + L"\x2026")) {
                return;
            }
        }
        ADD_FAILURE() << "no ellipsis: " << testing::PrintToString(text);
    }
    // What never goes to the next line: in pixels, drawn in one.
    float widestWord(const std::wstring& text) {
        const CCaptionFormat oneLine;
        float widest = 0.0F;
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = std::min(text.find_first_of(L" \n", start), text.size());
            Gdiplus::RectF measured;
            const std::wstring word = text.substr(start, end - start);
            m_graphics.MeasureString(word.c_str(), -1, m_pFont.get(), Gdiplus::PointF(0.0F, 0.0F), &oneLine, &measured);
            coverOtherFonts(m_graphics, word.c_str(), *m_pFont, 1000.0F, measured);
            widest = std::max(widest, measured.Width);
            start = end + 1;
        }
        return widest;
    }
    void drawIn(const Gdiplus::RectF& box, const std::wstring& text, const Gdiplus::StringFormat& format,
                double outline) {
        drawOutlineText(m_graphics, box, text.c_str(), *m_pFont, &format, outline, kWhite, kBlack);
    }

    Canvas m_canvas{kWidth, kHeight};
    Gdiplus::Graphics m_graphics{m_canvas.dc()};
    std::unique_ptr<Gdiplus::Font> m_pFont;
};

TEST_P(ShippedTexts, CaptionsAreWholeOnTheCard) {
    const int width = geometry::cardWidth(GetParam());
    const geometry::Card parts = geometry::cardParts({0, 0, width, 200}, GetParam(), false);
    Gdiplus::RectF box = toRectF(parts.caption);
    box.Inflate(-static_cast<float>(GetParam() * kCaptionMargin), 0.0F);
    const CCaptionFormat format;
    const auto draw = [&](const std::wstring& what) { drawIn(box, what, format, 0.0); };
    const auto inPlenty = [&](const std::wstring& what) {
        Gdiplus::RectF wide = box;
        wide.Inflate(64.0F, 0.0F);
        drawIn(wide, what, format, 0.0);
    };
    for (const std::wstring& text : captions()) {
        const std::vector<DWORD> seen = pixelsOfText(draw, text);
        expectInside(seen, parts.caption, text);
        EXPECT_TRUE(alike(seen, pixelsOfText(inPlenty, text))) << "cut: " << testing::PrintToString(text);
    }
    for (const wchar_t* const text : {L"Bildschirmausgabe w\x00E4hlen", L"Tastaturbeleuchtung"}) {  // somebody's own
        const std::vector<DWORD> seen = pixelsOfText(draw, text);
        expectInside(seen, parts.caption, text);
        expectEllipsis(text, seen, draw);
    }
}

TEST_P(ShippedTexts, DescriptionsAreWholeOnTheirCard) {
    const geometry::Strip strip = geometry::cardStrip({0, 0, 2000, 1000}, 1, GetParam(), false);
    const geometry::Card parts = geometry::cardParts(geometry::cardRect(strip, 0), GetParam(), false);
    Gdiplus::RectF box = toRectF(parts.desc);
    box.Inflate(-static_cast<float>(kOutlineWidth), 0.0F);
    Gdiplus::RectF high = box;
    high.Height += 200.0F;
    const CDescFormat format;
    for (const Text& text : allTexts()) {
        if (!isDescription(text.id)) {
            continue;
        }
        const std::vector<DWORD> seen =
            pixelsOfText([&](const std::wstring& what) { drawIn(box, what, format, kOutlineWidth); }, text.text);
        expectInside(seen, parts.desc, text.text);
        const auto inPlenty = [&](const std::wstring& what) { drawIn(high, what, format, kOutlineWidth); };
        EXPECT_TRUE(alike(seen, pixelsOfText(inPlenty, text.text)))
            << "too many lines: " << testing::PrintToString(text.text);
        EXPECT_LE(widestWord(text.text), box.Width) << "cut: " << testing::PrintToString(text.text);
    }
}

TEST_P(ShippedTexts, ItemTextsAreWholeInTheirBox) {
    constexpr int kBoxWidth = 160;
    constexpr int kBoxHeight = 64;
    const Gdiplus::RectF plenty(0.0F, 0.0F, kBoxWidth, kBoxHeight);
    const CDescFormat format;
    Canvas canvas(kBoxWidth, kBoxHeight);
    Gdiplus::Graphics graphics(canvas.dc());
    DescBox box(m_room.placement());
    for (const std::wstring& text : itemTexts()) {
        const RECT place = box.placeOf(text);
        canvas.clear();
        ASSERT_EQ(ItemDescSeam::draw(box.window(), canvas.dc()), S_OK);
        const RECT ink = inkOf(canvas.pixels(), kBoxWidth);
        EXPECT_GE(ink.left, 0) << testing::PrintToString(text);
        EXPECT_LE(ink.right, place.right - place.left) << testing::PrintToString(text);
        EXPECT_LE(ink.bottom, place.bottom - place.top) << testing::PrintToString(text);
        if (ink.bottom <= GetParam() * 16.0) {  // one line
            canvas.clear();
            drawOutlineText(graphics, plenty, text.c_str(), *m_pFont, &format, 0.0, kBlack, kBlack);
            const RECT whole = inkOf(canvas.pixels(), kBoxWidth);
            EXPECT_NEAR(ink.right - ink.left, whole.right - whole.left, 2) << "cut: " << testing::PrintToString(text);
        }
    }
}

// The boxes of two neighbours of one card are never over each other, whichever they are, and a row that is pushed
// against an edge of the screen, where it keeps a gap, still shows its outermost box whole.
TEST_P(ShippedTexts, NamesOfDisplaysNeitherMeetNorLeaveTheScreen) {
    const int item = truncToInt(GetParam() * kItemSize);
    const int gap = truncToInt(GetParam() * kItemGap);
    DescBox box(m_room.placement());
    std::set<std::wstring> names;
    for (const Text& text : allTexts()) {
        if (isDisplayName(text.id)) {
            names.insert(text.text);
        }
    }
    ASSERT_GE(names.size(), languageCount() * 2) << "two functions in every language";
    for (const std::wstring& name : names) {
        const RECT place = box.placeOf(name);
        const int width = place.right - place.left;
        EXPECT_LE(width, item + gap) << "meets another as wide as itself: " << testing::PrintToString(name);
        EXPECT_LE(place.bottom - place.top, truncToInt(GetParam() * 14.0) + 3)
            << "two lines: " << testing::PrintToString(name);
    }
}

// Their window is as large as GDI+ measures them.
TEST_P(ShippedTexts, NoticesAreWholeInTheirWindow) {
    std::size_t notices = 0;
    for (const Text& text : allTexts()) {
        if (text.id != IDS_WIRELESS_NO_DEVICE) {
            continue;
        }
        ++notices;
        CErrorItemDlg notice(text.text);
        notice.setPlacement(m_room.placement());
        ASSERT_TRUE(notice.Create(nullptr));
        ASSERT_EQ(notice.initialize(), S_OK);
        items::place(notice.m_hWnd, 300, 200, notice.width(), notice.height());
        m_canvas.clear();
        ASSERT_EQ(notice.drawText(m_graphics), S_OK);
        const RECT ink = inkOf(m_canvas.pixels());
        EXPECT_GE(ink.left, 0) << testing::PrintToString(text.text);
        EXPECT_LE(ink.right, notice.width()) << testing::PrintToString(text.text);
        EXPECT_LE(ink.bottom, notice.height() + 1) << testing::PrintToString(text.text);
    }
    EXPECT_EQ(notices, languageCount());
}

TEST_P(ShippedTexts, StatusTextsKeepToTheirField) {
    CLargeCardDlg card(110, L"Caption", L"Description", nullptr, m_room.placement());
    ASSERT_EQ(card.initialize(), S_OK);
    ASSERT_TRUE(card.Create(nullptr));
    items::place(card.m_hWnd, 400, 100, truncToInt(96 * GetParam()), truncToInt(144 * GetParam()));
    const RECT field = LargeCardSeam::rects(card).text;
    card.setText(L"");
    m_canvas.clear();
    ASSERT_EQ(card.drawText(m_graphics), S_OK);
    const std::vector<DWORD> others = m_canvas.pixels();
    for (const Text& text : allTexts()) {
        if (isDescription(text.id) || isDisplayName(text.id)) {
            continue;  // they are nobody's status
        }
        card.setText(text.text);
        m_canvas.clear();
        ASSERT_EQ(card.drawText(m_graphics), S_OK);
        std::vector<DWORD> seen = m_canvas.pixels();
        for (std::size_t i = 0; i < seen.size(); ++i) {
            seen[i] = seen[i] == others[i] ? 0 : seen[i];
        }
        const RECT ink = inkOf(seen);
        // A letter moves by half a pixel at most to stand on whole ones.
        EXPECT_GE(ink.left, field.left - 1) << testing::PrintToString(text.text);
        EXPECT_LE(ink.right, field.right + 1) << testing::PrintToString(text.text);
        EXPECT_GE(ink.top, field.top) << testing::PrintToString(text.text);
        EXPECT_LE(ink.bottom, field.bottom) << testing::PrintToString(text.text);
    }
}

INSTANTIATE_TEST_SUITE_P(Ratios, ShippedTexts, testing::ValuesIn(kRatios));

// Pixel for pixel: where one letter is nearly solid, the pixel beside it does not belong nearly solid to the next one.
// Letters of 4 and 6 pixels have no room for a gap of their own everywhere, and larger ones have more than these.
class ShippedLetters : public ShippedTexts {};
INSTANTIATE_TEST_SUITE_P(Ratios, ShippedLetters, testing::Values(0.8, 1.0));

TEST_P(ShippedLetters, DoNotTouch) {
    constexpr int kSolid = 0xC0;
    constexpr int kRows = 24;
    std::set<std::wstring> words;
    for (const Text& text : allTexts()) {
        words.insert(text.text);
    }
    for (const std::wstring& caption : captions()) {
        words.insert(caption);
    }
    std::erase_if(words, [](const std::wstring& word) { return !isOwnScript(word); });
    Gdiplus::StringFormat oneLine;
    oneLine.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    Canvas canvas(kWidth, kRows);
    Gdiplus::Graphics graphics(canvas.dc());
    const Gdiplus::RectF box(2.0F, 2.0F, 250.0F, 20.0F);
    for (const std::wstring& word : words) {
        std::vector<DWORD> before(static_cast<std::size_t>(kWidth) * kRows);
        std::vector<int> letterOf(before.size(), -1);
        int touching = 0;
        for (std::size_t length = 1; length <= word.size(); ++length) {
            canvas.clear();
            drawOutlineText(graphics, box, word.substr(0, length).c_str(), *m_pFont, &oneLine, 0.0, kWhite, kWhite);
            std::vector<DWORD> now = canvas.pixels();
            for (std::size_t i = 0; i < now.size(); ++i) {
                if (now[i] != before[i] && alphaOf(now[i]) >= kSolid) {
                    const int mine = static_cast<int>(length);
                    touching += letterOf[i] >= 0 || (i > 0 && letterOf[i - 1] >= 0 && letterOf[i - 1] < mine) ? 1 : 0;
                    letterOf[i] = mine;
                }
            }
            before = std::move(now);
        }
        EXPECT_EQ(touching, 0) << testing::PrintToString(word);
    }
}

}  // namespace
}  // namespace looks
