// Every text that ships, in every language and at every ratio, in pixels: it keeps to its box, what does not fit ends
// with an ellipsis, and letters keep apart.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <set>

#include "Logic/FuncX/FunctionTables.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/CardGeometry.h"
#include "UI/CardStyle.h"
#include "UI/ItemDlg/ErrorItemDlg.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/GdiPlusFunc.h"
#include "common/Rendering.h"
#include "looks/Looks.h"
#include "plugins/simulated/Functions.h"
#include "plugins/simulated/Words.h"
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
        // A window of its own shows the texts about faults; no card does.
        const bool onCards = id != IDS_FAULT_HANGS && id != IDS_FAULT_RESTARTED && id != IDS_FAULT_SET_ASIDE;
        if (*text != 0 && onCards) {
            reinterpret_cast<std::vector<Text>*>(list)->push_back({id, language, {text + 1, *text}});
        }
        text += *text + 1;
    }
    return TRUE;
}
BOOL CALLBACK addBlock(HMODULE module, LPCWSTR type, LPWSTR block, LONG_PTR list) {
    return ::EnumResourceLanguagesW(module, type, block, &addLanguage, list);
}
const std::vector<Text>& allTexts() {
    static const std::vector<Text> texts = [] {
        std::vector<Text> found;
        ::EnumResourceNamesW(nullptr, RT_STRING, &addBlock, reinterpret_cast<LONG_PTR>(&found));
        return found;
    }();
    return texts;
}

// The bounds of what is not transparent.
RECT inkOf(const std::vector<DWORD>& pixels) {
    RECT ink{kWidth, kHeight, 0, 0};
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i] >> 24U != 0) {
            const auto x = static_cast<LONG>(i % kWidth);
            const auto y = static_cast<LONG>(i / kWidth);
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

// Two that are too long for a card, and those of the sample list in both languages.
std::vector<std::wstring> captions() {
    std::vector<std::wstring> found{L"Bildschirmausgabe w\x00E4hlen", L"Tastaturbeleuchtung"};
    for (const sim::Function& function : sim::kFunctions) {
        found.push_back(sim::word(function.caption, sim::Language::English));
        found.push_back(sim::word(function.caption, sim::Language::German));
    }
    return found;
}

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
    // What is seen is the whole text, or it is cut so that it ends with an ellipsis. `inPlenty` draws it where it has
    // room for all of its lines.
    void expectWholeOrEllipsis(const std::wstring& text, const std::vector<DWORD>& seen, const Draw& draw,
                               const Draw& inPlenty) {
        if (alike(seen, pixelsOfText(inPlenty, text))) {
            return;
        }
        for (std::size_t length = text.size(); length-- > 0;) {
            if (seen == pixelsOfText(draw, text.substr(0, length) + L"\x2026")) {
                return;
            }
        }
        ADD_FAILURE() << "neither whole nor with an ellipsis: " << testing::PrintToString(text);
    }
    void drawIn(const Gdiplus::RectF& box, const std::wstring& text, const Gdiplus::StringFormat& format,
                double outline) {
        drawOutlineText(m_graphics, box, text.c_str(), *m_pFont, &format, outline, kWhite, kBlack);
    }

    Canvas m_canvas{kWidth, kHeight};
    Gdiplus::Graphics m_graphics{m_canvas.dc()};
    std::unique_ptr<Gdiplus::Font> m_pFont;
};

TEST_P(ShippedTexts, CaptionsKeepToTheirBoxOnTheCard) {
    const int width = geometry::cardWidth(GetParam());
    const geometry::Card parts = geometry::cardParts({0, 0, width, 200}, GetParam(), false);
    Gdiplus::RectF box = toRectF(parts.caption);
    box.Inflate(-static_cast<float>(GetParam() * kCaptionMargin), 0.0F);
    const CCaptionFormat format;
    for (const std::wstring& text : captions()) {
        const auto draw = [&](const std::wstring& what) { drawIn(box, what, format, 0.0); };
        const std::vector<DWORD> seen = pixelsOfText(draw, text);
        const RECT ink = inkOf(seen);
        EXPECT_FALSE(ink.right <= ink.left) << testing::PrintToString(text);
        EXPECT_GE(ink.left, parts.caption.left) << testing::PrintToString(text);
        EXPECT_LE(ink.right, parts.caption.right) << testing::PrintToString(text);
        EXPECT_GE(ink.top, parts.caption.top) << testing::PrintToString(text);
        EXPECT_LE(ink.bottom, parts.caption.bottom + 1) << testing::PrintToString(text);
        expectWholeOrEllipsis(text, seen, draw, [&](const std::wstring& what) {
            Gdiplus::RectF wide = box;
            wide.Inflate(64.0F, 0.0F);
            drawIn(wide, what, format, 0.0);
        });
    }
}

TEST_P(ShippedTexts, DescriptionsKeepToTheirCard) {
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
        const auto draw = [&](const std::wstring& what) { drawIn(box, what, format, kOutlineWidth); };
        const std::vector<DWORD> seen = pixelsOfText(draw, text.text);
        const RECT ink = inkOf(seen);
        EXPECT_GE(ink.left, parts.desc.left) << testing::PrintToString(text.text);
        EXPECT_LE(ink.right, parts.desc.right) << testing::PrintToString(text.text);
        EXPECT_GE(ink.top, parts.image.bottom) << "runs into the picture: " << testing::PrintToString(text.text);
        EXPECT_LE(ink.bottom, parts.desc.bottom) << testing::PrintToString(text.text);
        expectWholeOrEllipsis(text.text, seen, draw,
                              [&](const std::wstring& what) { drawIn(high, what, format, kOutlineWidth); });
    }
}

TEST_P(ShippedTexts, ItemTextsKeepToTheirBox) {
    constexpr RECT kItem{300, 200, 372, 272};
    for (const Text& text : allTexts()) {
        if (isDescription(text.id)) {
            continue;
        }
        CItemDescDlg box(text.text);
        box.setPlacement(m_room.placement());
        ASSERT_TRUE(box.Create(nullptr));
        ASSERT_EQ(box.setWndPos(&kItem), S_OK);
        RECT client{};
        ::GetClientRect(box.m_hWnd, &client);
        m_canvas.clear();
        ASSERT_EQ(ItemDescSeam::draw(box, m_canvas.dc()), S_OK);
        const RECT ink = inkOf(m_canvas.pixels());
        EXPECT_GE(ink.left, 1) << testing::PrintToString(text.text);
        EXPECT_LE(ink.right, client.right - 1) << testing::PrintToString(text.text);
        EXPECT_LE(ink.bottom, client.bottom) << testing::PrintToString(text.text);
    }
}

// The boxes of two neighbours of one card are never over each other, whichever they are, and a row that is pushed
// against an edge of the screen, where it keeps a gap, still shows its outermost box whole.
TEST_P(ShippedTexts, NamesOfDisplaysNeitherMeetNorLeaveTheScreen) {
    constexpr RECT kItem{300, 200, 372, 272};
    const int item = truncToInt(GetParam() * kItemSize);
    const int gap = truncToInt(GetParam() * kItemGap);
    struct Name {
        std::wstring text;
        int width;
    };
    std::map<std::pair<LANGID, bool>, std::vector<Name>> cards;  // by language and function
    for (const Text& text : allTexts()) {
        if (!isDisplayName(text.id)) {
            continue;
        }
        CItemDescDlg box(text.text);
        box.setPlacement(m_room.placement());
        ASSERT_TRUE(box.Create(nullptr));
        ASSERT_EQ(box.setWndPos(&kItem), S_OK);
        const RECT place = support::windowRect(box.m_hWnd);
        const int width = place.right - place.left;
        EXPECT_LE(width - item, 2 * gap) << testing::PrintToString(text.text);
        EXPECT_LE(place.bottom - place.top, truncToInt(GetParam() * 14.0) + 3)
            << "two lines: " << testing::PrintToString(text.text);
        cards[{text.language, text.id <= IDS_OUTPUT_MODE_SAVE}].push_back({text.text, width});
    }
    ASSERT_GE(cards.size(), 4U) << "two functions in two languages";
    for (const auto& [card, names] : cards) {
        for (const Name& one : names) {
            for (const Name& other : names) {
                EXPECT_LE((one.width + other.width) / 2, item + gap)
                    << testing::PrintToString(one.text) << " beside " << testing::PrintToString(other.text);
            }
        }
    }
}

// Their window is as large as GDI+ measures them.
TEST_P(ShippedTexts, NoticesAreWholeInTheirWindow) {
    int notices = 0;
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
    EXPECT_EQ(notices, 2) << "languages";
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
