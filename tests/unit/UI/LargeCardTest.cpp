#include "Logic/FuncX/FunctionTables.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/CardStyle.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"
#include "common/UiLanguage.h"

namespace cards {
namespace {

using items::rect;
using items::shown;
using support::windowRect;
using Lines = std::vector<std::wstring>;

constexpr UINT kPicture = 110;
constexpr wchar_t kCaption[] = L"Fn+F1";
constexpr wchar_t kDesc[] = L"Mute";
constexpr wchar_t kLongText[] =
    L"A status text that goes on and on, far beyond the few lines that there is room for on "
    L"the lower half of an enlarged card";

class LargeCard : public items::ItemTest {
 protected:
    CLargeCardDlg& make(const wchar_t* caption, const wchar_t* desc, CBlackCard* card = nullptr) {
        m_pCard = std::make_unique<CLargeCardDlg>(kPicture, caption, desc, card, m_room.placement());
        EXPECT_EQ(m_pCard->initialize(), S_OK);
        EXPECT_TRUE(m_pCard->Create(nullptr));
        const double ratio = theApp.getPngRatio();
        items::place(m_pCard->m_hWnd, 400, 100, truncToInt(96 * ratio), truncToInt(144 * ratio));
        m_log.clear();
        return *m_pCard;
    }
    [[nodiscard]] HWND window() const { return m_pCard->m_hWnd; }
    [[nodiscard]] HWND picture() const { return LargeCardSeam::layered(*m_pCard)->m_hWnd; }
    // Only the texts, on a transparent background.
    std::unique_ptr<rendering::Canvas> texts() {
        auto canvas = std::make_unique<rendering::Canvas>(120, 180);
        Gdiplus::Graphics graphics(canvas->dc());
        m_status = m_pCard->drawText(graphics);
        return canvas;
    }
    // First and last inked row within the area; {-1, -1} without ink.
    static std::pair<int, int> inkedRows(const rendering::Canvas& canvas, const RECT& area) {
        int first = -1;
        int last = -1;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = 0; x < 120; ++x) {
                if (canvas.at(x, y) != 0) {
                    first = first < 0 ? y : first;
                    last = y;
                }
            }
        }
        return {first, last};
    }

    std::unique_ptr<CLargeCardDlg> m_pCard;
    HRESULT m_status = S_OK;
};

TEST_F(LargeCard, MissingPictureFails) {
    CLargeCardDlg card(9999, L"", L"", nullptr, m_room.placement());
    EXPECT_EQ(card.initialize(), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CLargeCardDlg::initialize): Error Code: 0x80004003"));
    m_room.withoutPictures();
    CLargeCardDlg another(kPicture, L"", L"", nullptr, m_room.placement());
    EXPECT_TRUE(FAILED(another.initialize()));
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::getPngDll): ASSERT( m_hPngDll )"));
}

TEST_F(LargeCard, WindowIsInvisibleWithoutAColourKey) {
    make(kCaption, kDesc);
    constexpr DWORD kBits = WS_EX_LAYERED | WS_EX_TOOLWINDOW;
    EXPECT_EQ(items::exStyle(window()) & kBits, kBits);
    const items::Layer layer = items::layerOf(window());
    EXPECT_EQ(layer.alpha, 1);
    EXPECT_EQ(layer.flags, static_cast<DWORD>(LWA_ALPHA));
}

TEST_F(LargeCard, TextPlacesFollowItsSize) {
    make(kCaption, kDesc);
    EXPECT_EQ(LargeCardSeam::rects(*m_pCard).caption, rect(4, 10, 92, 26));
    EXPECT_EQ(LargeCardSeam::rects(*m_pCard).text, rect(4, 95, 92, 140));
    items::place(window(), 400, 100, 200, 300);
    EXPECT_EQ(LargeCardSeam::rects(*m_pCard).desc, rect(4, 26, 196, 74));
    EXPECT_EQ(LargeCardSeam::rects(*m_pCard).text, rect(4, 95, 196, 296));
}

TEST_F(LargeCard, PictureCoversItWhileItShows) {
    make(kCaption, kDesc);
    EXPECT_FALSE(shown(picture()));
    ::ShowWindow(window(), SW_SHOW);
    items::paintNow(window());
    EXPECT_TRUE(shown(picture()));
    EXPECT_EQ(windowRect(picture()), windowRect(window()));
    items::place(window(), 500, 200, 96, 144);
    m_pCard->invalidate();
    items::paintNow(window());
    EXPECT_EQ(windowRect(picture()), windowRect(window()));
    ::ShowWindow(window(), SW_HIDE);
    EXPECT_FALSE(shown(picture()));
}

TEST_F(LargeCard, IsComposedAgainOnlyForAnotherText) {
    make(kCaption, kDesc);
    ::ShowWindow(window(), SW_SHOW);
    items::paintNow(window());
    const int composed = LargeCardSeam::layered(*m_pCard)->compositions();
    m_pCard->invalidate();
    items::paintNow(window());
    EXPECT_EQ(LargeCardSeam::layered(*m_pCard)->compositions(), composed);
    m_pCard->setText(L"On");
    items::paintNow(window());
    EXPECT_GT(LargeCardSeam::layered(*m_pCard)->compositions(), composed);
}

TEST_F(LargeCard, DestroyedCardTakesItsPictureAlong) {
    make(kCaption, kDesc);
    ::ShowWindow(window(), SW_SHOW);
    items::paintNow(window());
    const HWND popup = picture();
    m_pCard->DestroyWindow();
    EXPECT_FALSE(::IsWindow(popup));
    EXPECT_FALSE(m_pCard->DestroyWindow());
}

TEST_F(LargeCard, NewTextRepaintsItsPlaceOnly) {
    make(kCaption, kDesc);
    ::ShowWindow(window(), SW_SHOW);
    items::paintNow(window());
    ASSERT_FALSE(items::waitsForPaint(window()));
    m_pCard->setText(L"On");
    EXPECT_EQ(LargeCardSeam::text(*m_pCard), L"On");
    RECT stale{};
    ASSERT_TRUE(::GetUpdateRect(window(), &stale, FALSE));
    EXPECT_EQ(stale, LargeCardSeam::rects(*m_pCard).text);
}

class LargeCardTexts : public LargeCard, public testing::WithParamInterface<double> {};

TEST_P(LargeCardTexts, EachStandsInItsPlace) {
    m_room.setRatio(GetParam());
    make(kCaption, kDesc);
    m_pCard->setText(L"On");
    const auto canvas = texts();
    EXPECT_EQ(m_status, S_OK);
    const geometry::LargeCardTexts& places = LargeCardSeam::rects(*m_pCard);
    for (const RECT& place : {places.caption, places.desc, places.text}) {
        EXPECT_GE(inkedRows(*canvas, place).first, place.top);
    }
    const RECT between{0, places.desc.bottom, 120, places.text.top};
    EXPECT_EQ(inkedRows(*canvas, between).first, -1);
    const RECT all = canvas->ink();
    EXPECT_NEAR(all.left, truncToInt(96 * GetParam()) - all.right, 4) << "centred";
}

TEST_P(LargeCardTexts, DescriptionIsCentredUnderACaptionAndAtTheTopWithoutOne) {
    m_room.setRatio(GetParam());
    make(kCaption, kDesc);
    const RECT place = LargeCardSeam::rects(*m_pCard).desc;
    const auto [first, last] = inkedRows(*texts(), place);
    EXPECT_NEAR((first + last) / 2, (place.top + place.bottom) / 2, 3);

    make(L"", kDesc);
    const auto [topFirst, topLast] = inkedRows(*texts(), place);
    EXPECT_LT(topFirst, place.top + 8);
    EXPECT_LT(topLast, first + 2);
}

TEST_P(LargeCardTexts, LongTextIsMadeSmallerUntilItFits) {
    m_room.setRatio(GetParam());
    make(kCaption, kDesc);
    const RECT place = LargeCardSeam::rects(*m_pCard).text;
    m_pCard->setText(L"X");
    const auto [shortFirst, shortLast] = inkedRows(*texts(), {0, place.top, 120, 180});
    m_pCard->setText(kLongText);
    const auto canvas = texts();
    EXPECT_EQ(m_status, S_OK);
    const auto [first, last] = inkedRows(*canvas, {0, place.top, 120, 180});
    EXPECT_GE(first, place.top);
    EXPECT_LT(last, place.bottom);
    EXPECT_GT(last - first, 2 * (shortLast - shortFirst)) << "several lines";
}

INSTANTIATE_TEST_SUITE_P(Ratios, LargeCardTexts, testing::Values(1.0, 0.75, 1.25));

TEST_F(LargeCard, TextThatNeverFitsEnds) {
    make(kCaption, kDesc);
    m_pCard->setText(std::wstring(5000, L'W'));
    texts();
    EXPECT_EQ(m_status, S_OK);
    m_pCard->setText(L"");
    texts();
    EXPECT_EQ(m_status, S_OK);
}

TEST_F(LargeCard, LostFocusFollowsTheCardsRule) {
    CBlackCard& card = m_room.addCard();
    make(kCaption, kDesc, &card);
    struct Row {
        bool mouse;
        HWND next;
        bool stays;
    };
    for (const Row& row : {Row{false, support::foreignWindow(), true}, Row{true, m_room.stripWindow(), true},
                           Row{true, nullptr, false}, Row{true, support::foreignWindow(), false}}) {
        showStrip();
        m_room.setMouseOperating(row.mouse);
        items::killFocus(window(), row.next);
        EXPECT_EQ(stripShown(), row.stays);
    }
    EXPECT_TRUE(logged(L"[TRC] (CLargeCardDlg::OnKillFocus): LEAVE CLargeCardDlg::OnKillFocus"));
}

TEST_F(LargeCard, FocusThatReallyMovesToAnItemKeepsTheStrip) {
    CBlackCard& card = addCard(L"Mute", {0x3B});
    m_room.setMouseOperating(true);
    showStrip();
    ASSERT_EQ(card.showLargeCardDlg(), S_OK);
    const HWND enlarged = BlackCardSeam::largeCard(card)->m_hWnd;
    ASSERT_FALSE(BlackCardSeam::items(card).empty());
    const HWND item = BlackCardSeam::items(card).front()->windowHandle();
    ::SetFocus(enlarged);
    ASSERT_EQ(::GetFocus(), enlarged);
    m_log.clear();
    ::SetFocus(item);
    ASSERT_EQ(::GetFocus(), item);
    ASSERT_TRUE(logged(L"[TRC] (CLargeCardDlg::OnKillFocus): ENTER CLargeCardDlg::OnKillFocus"));
    EXPECT_TRUE(stripShown());
    EXPECT_TRUE(shown(enlarged));
    EXPECT_TRUE(shown(item));
    // No window gets it: the cards hide.
    ::SetFocus(enlarged);
    ASSERT_EQ(::GetFocus(), enlarged);
    ::SetFocus(nullptr);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(shown(enlarged));
}

// ---------------------------------------------------------------------------------------------------------------------

// The picture begins below the second line of the description.
TEST_P(LargeCardTexts, DescriptionsOfAllFunctionsKeepOffThePicture) {
    m_room.setRatio(GetParam());
    make(kCaption, kDesc);
    rendering::Canvas canvas(10, 10);
    Gdiplus::Graphics graphics(canvas.dc());
    std::unique_ptr<Gdiplus::Font> font;
    ASSERT_EQ(getNormalDPIWndFont(m_pCard.get(), graphics, font), S_OK);
    const CCentredFormat format;
    const auto height = [&](const std::wstring& text) {
        const Gdiplus::RectF place = toRectF(LargeCardSeam::rects(*m_pCard).desc);
        const Gdiplus::RectF layout(0.0F, 0.0F, place.Width, 0.0F);
        Gdiplus::RectF measured;
        graphics.MeasureString(text.c_str(), -1, font.get(), layout, &format, &measured);
        return measured.Height;
    };
    const float twoLines = height(L"A\nA") + 0.5F;
    std::vector<const functiontables::Look*> looks(functiontables::kOtherLooks.begin(),
                                                   functiontables::kOtherLooks.end());
    for (const functiontables::CircleDescription* circle : functiontables::kCircleFunctions) {
        looks.push_back(&circle->look);
    }
    for (const functiontables::Look* look : looks) {
        const std::vector<LANGID> languages = common::languagesOfText(nullptr, look->uDescId);
        ASSERT_GE(languages.size(), 2U);
        for (const LANGID language : languages) {
            const std::wstring text = common::textIn(nullptr, look->uDescId, language);
            EXPECT_LE(height(text), twoLines) << testing::PrintToString(text);
        }
    }
}

}  // namespace
}  // namespace cards
