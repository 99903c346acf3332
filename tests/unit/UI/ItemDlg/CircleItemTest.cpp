#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"
#include "support/LeakCheck.h"

namespace items {
namespace {

constexpr UINT kSmallId = 115;
constexpr UINT kLargeId = 114;
constexpr UINT kMissingId = 9999;
constexpr int kX = 300;
constexpr int kY = 200;

class CircleItem : public ItemTest {
 protected:
    CircleItem() : m_pItem(std::make_unique<CCircleItemDlg>(kSmallId, kLargeId, L"Mute off")) {
        m_pItem->setPlacement(m_room.placement());
        EXPECT_EQ(m_pItem->initialize(), S_OK);
        EXPECT_TRUE(m_pItem->Create(nullptr));
        place(item(), kX, kY, 72, 72);
    }
    ~CircleItem() override {
        if (m_pItem != nullptr) {
            m_pItem->destroyItem();
        }
    }
    [[nodiscard]] HWND item() const { return m_pItem->windowHandle(); }
    [[nodiscard]] HWND box() const { return CircleItemSeam::box(*m_pItem).m_hWnd; }
    [[nodiscard]] HWND smallWnd() const { return CircleItemSeam::smallWnd(*m_pItem); }
    [[nodiscard]] HWND largeWnd() const { return CircleItemSeam::largeWnd(*m_pItem); }
    [[nodiscard]] bool enlarged() const { return CircleItemSeam::enlarged(*m_pItem); }
    void show() {
        m_pItem->showItem(true);
        paintNow(item());
    }
    void select(bool selected) {
        m_pItem->switchItem(0x3B, false, selected);
        paintNow(item());
    }

    std::unique_ptr<CCircleItemDlg> m_pItem;
};

TEST_F(CircleItem, IsASquareThatFollowsRatioAndScale) {
    EXPECT_EQ(m_pItem->width(), 72);
    EXPECT_EQ(m_pItem->height(), 72);
    m_room.setRatio(0.75);
    EXPECT_EQ(m_pItem->width(), 54);
    m_room.setRatio(0.999);
    EXPECT_EQ(m_pItem->height(), 71);
    m_pItem->setScale(0.5);
    EXPECT_EQ(m_pItem->width(), 35);
}

TEST_F(CircleItem, OverhangIsHalfOfWhatTheCaptionBoxMayStickOut) {
    EXPECT_EQ(m_pItem->descOverhang(), 14);
    m_room.config().uItemDescMaxWidth = 73;
    EXPECT_EQ(m_pItem->descOverhang(), 0);
    m_room.config().uItemDescMaxWidth = 0xFFFFFFFF;
    EXPECT_EQ(m_pItem->descOverhang(), 0x7FFFFFDB);
}

TEST_F(CircleItem, OverhangOfANarrowBoxWrapsAround) {
    m_room.config().uItemDescMaxWidth = 50;
    EXPECT_EQ(m_pItem->descOverhang(), 0x7FFFFFF5);
    m_room.config().uItemDescMaxWidth = 0;
    EXPECT_EQ(m_pItem->descOverhang(), 0x7FFFFFDC);
}

TEST_F(CircleItem, WindowOnlyTakesTheMouse) {
    constexpr DWORD kBits = WS_EX_LAYERED | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;
    EXPECT_EQ(exStyle(item()) & kBits, kBits);
    const Layer layer = layerOf(item());
    EXPECT_EQ(layer.key, RGB(0xFF, 0, 0xFF));
    EXPECT_EQ(layer.alpha, 1);
    EXPECT_EQ(layer.flags, static_cast<DWORD>(LWA_COLORKEY | LWA_ALPHA));
}

TEST_F(CircleItem, BringsAHiddenCaptionBoxWithoutParent) {
    ASSERT_TRUE(::IsWindow(box()));
    EXPECT_FALSE(shown(box()));
    EXPECT_EQ(::GetWindow(box(), GW_OWNER), nullptr);
}

TEST_F(CircleItem, ShowsTheSmallPictureOverItsInnerPart) {
    show();
    ASSERT_TRUE(shown(smallWnd()));
    // Eleven pixels in; the frame keeps the item's size.
    EXPECT_EQ(windowRect(smallWnd()), rect(kX + 11, kY + 11, kX + 11 + 72, kY + 11 + 72));
    EXPECT_FALSE(shown(largeWnd()));
    EXPECT_FALSE(shown(box()));
}

TEST_F(CircleItem, SelectedOneShowsTheLargePictureAndItsCaption) {
    show();
    select(true);
    ASSERT_TRUE(shown(largeWnd()));
    EXPECT_EQ(windowRect(largeWnd()), rect(kX, kY, kX + 72, kY + 72));
    EXPECT_FALSE(shown(smallWnd()));
    ASSERT_TRUE(shown(box()));
    EXPECT_EQ(windowRect(box()).top, kY + 72 + 5);
    const RECT caption = windowRect(box());
    EXPECT_EQ(caption.left, kX + 36 - (caption.right - caption.left) / 2);
}

TEST_F(CircleItem, DeselectedOneGoesBackToTheSmallPicture) {
    show();
    select(true);
    select(false);
    EXPECT_TRUE(shown(smallWnd()));
    EXPECT_FALSE(shown(largeWnd()));
    EXPECT_FALSE(shown(box()));
}

TEST_F(CircleItem, CaptionsOfAllItemsShowWhereTheSettingSaysSo) {
    m_room.config().bAlwaysShowItemsCaption = TRUE;
    show();
    ASSERT_TRUE(shown(box()));
    EXPECT_EQ(windowRect(box()).top, kY + 72 - 11 + 5);  // under the inner part
}

TEST_F(CircleItem, SwitchingToWhatItIsAlreadyDoesNothing) {
    show();
    EXPECT_EQ(m_pItem->switchItem(0x3B, true, false), S_FALSE);
    EXPECT_FALSE(waitsForPaint(item()));
    EXPECT_EQ(m_pItem->switchItem(0x3B, true, true), S_OK);
    EXPECT_TRUE(waitsForPaint(item()));
    paintNow(item());
    EXPECT_EQ(m_pItem->switchItem(0x3B, false, true), S_FALSE);
    EXPECT_FALSE(waitsForPaint(item()));
}

TEST_F(CircleItem, OnlyADiscTakesTheMouse) {
    show();
    rendering::Canvas canvas(72, 72);
    const auto at = [&](int x, int y) {
        const common::WindowDc dc(item());
        ::BitBlt(canvas.dc(), 0, 0, 72, 72, dc.get(), 0, 0, SRCCOPY);
        return canvas.at(x, y) & 0xFFFFFFU;
    };
    constexpr DWORD kWhite = 0xFFFFFF;
    constexpr DWORD kThrough = 0xFF00FF;
    EXPECT_EQ(at(36, 36), kWhite);
    EXPECT_EQ(at(36, 13), kWhite);
    EXPECT_EQ(at(36, 9), kThrough);
    EXPECT_EQ(at(12, 12), kThrough);
    select(true);
    EXPECT_EQ(at(36, 2), kWhite);
    EXPECT_EQ(at(36, 0), kThrough);
    EXPECT_EQ(at(3, 3), kThrough);
}

TEST_F(CircleItem, DiscStaysRoundInAnOblongWindow) {
    place(item(), kX, kY, 60, 100);
    show();
    select(true);
    EXPECT_EQ(windowRect(box()).top, kY + 60 + 5);
}

TEST_F(CircleItem, MouseGrowsItInsideAndShrinksItOutside) {
    show();
    m_room.setMouseOperating(true);
    mouse(item(), WM_MOUSEMOVE, 10, 36);
    EXPECT_FALSE(enlarged()) << "one pixel outside of the inner part";
    mouse(item(), WM_MOUSEMOVE, 11, 36);
    EXPECT_TRUE(enlarged());
    EXPECT_TRUE(waitsForPaint(item()));
    paintNow(item());
    for (const int x : {10, 0, 71, 61}) {
        mouse(item(), WM_MOUSEMOVE, x, 36);
        EXPECT_TRUE(enlarged()) << "between the two parts nothing changes, x = " << x;
        EXPECT_FALSE(waitsForPaint(item()));
    }
    mouse(item(), WM_MOUSEMOVE, 72, 36);
    EXPECT_FALSE(enlarged());
    EXPECT_TRUE(waitsForPaint(item()));
    paintNow(item());
    mouse(item(), WM_MOUSEMOVE, 61, 36);
    EXPECT_FALSE(enlarged());
}

TEST_F(CircleItem, MouseToTheLeftOfItHasNegativeCoordinates) {
    show();
    m_room.setMouseOperating(true);
    mouse(item(), WM_MOUSEMOVE, 36, 36);
    mouse(item(), WM_MOUSEMOVE, -1, 36);
    EXPECT_FALSE(enlarged());
}

TEST_F(CircleItem, MouseMeansNothingWhileTheKeysAreWorking) {
    show();
    mouse(item(), WM_MOUSEMOVE, 36, 36);
    EXPECT_FALSE(enlarged());
    EXPECT_FALSE(CircleItemSeam::tracking(*m_pItem));
}

TEST_F(CircleItem, LeavingMouseShrinksIt) {
    show();
    m_room.setMouseOperating(true);
    mouse(item(), WM_MOUSEMOVE, 36, 36);
    EXPECT_TRUE(CircleItemSeam::tracking(*m_pItem));
    paintNow(item());
    ::SendMessageW(item(), WM_MOUSELEAVE, 0, 0);
    EXPECT_FALSE(enlarged());
    EXPECT_FALSE(CircleItemSeam::tracking(*m_pItem));
    EXPECT_TRUE(waitsForPaint(item()));
}

TEST_F(CircleItem, ClickAppliesTheItemAndHidesTheStrip) {
    CBlackCard& card = addCard(L"Mute", {0x3B});
    ASSERT_EQ(card.showLargeCardDlg(), S_OK);
    const std::vector<CQrdItem*> row = BlackCardSeam::items(card);
    ASSERT_EQ(row.size(), 2U);
    showStrip();

    mouse(row[1]->windowHandle(), WM_LBUTTONDOWN, 36, 36);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0) << "the keys are working, not the mouse";
    EXPECT_TRUE(stripShown());

    m_room.setMouseOperating(true);
    mouse(row[1]->windowHandle(), WM_LBUTTONDOWN, 36, 36);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 1);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(shown(row[1]->windowHandle()));
}

TEST_F(CircleItem, ClickWithoutACardIsHarmless) {
    show();
    m_room.setMouseOperating(true);
    mouse(item(), WM_LBUTTONDOWN, 36, 36);
    EXPECT_TRUE(::IsWindow(item()));
}

TEST_F(CircleItem, LostFocusIsReportedByTheSmallOneOnly) {
    EXPECT_EQ(m_pItem->setBlackCardInfo(&addCard(L"Mute", {0x3B})), S_OK);
    showStrip();
    m_room.setMouseOperating(true);
    CircleItemSeam::enlarged(*m_pItem) = true;
    killFocus(item(), support::foreignWindow());
    EXPECT_TRUE(stripShown());
    CircleItemSeam::enlarged(*m_pItem) = false;
    killFocus(item(), support::foreignWindow());
    EXPECT_FALSE(stripShown());
}

TEST_F(CircleItem, LostFocusWithoutACardIsLogged) {
    killFocus(item(), nullptr);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CQrdItem::killFocus): Error Code: 0x80004003"});
}

TEST_F(CircleItem, NullCardIsAnAssertionAndIsStored) {
    EXPECT_EQ(m_pItem->setBlackCardInfo(&addCard(L"Mute", {0x3B})), S_OK);
    m_log.clear();
    EXPECT_EQ(m_pItem->setBlackCardInfo(nullptr), S_OK);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CQrdItem::setBlackCardInfo): ASSERT( pBlackCardInfo )"});
    EXPECT_EQ(m_pItem->killFocus(nullptr), E_POINTER);
}

TEST_F(CircleItem, TakesAText) {
    EXPECT_EQ(m_pItem->setItemText(nullptr), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CCircleItemDlg::setItemText): Error Code: 0x80004003"});
    EXPECT_EQ(m_pItem->setItemText(L"Other"), S_OK);
    EXPECT_EQ(CircleItemSeam::itemText(*m_pItem), L"Other");
}

TEST_F(CircleItem, ShowsWithoutTakingTheFocus) {
    ::ShowWindow(m_room.stripWindow(), SW_SHOW);
    ::SetFocus(m_room.stripWindow());
    const HWND active = ::GetActiveWindow();
    show();
    select(true);
    EXPECT_EQ(::GetActiveWindow(), active);
    EXPECT_EQ(::GetFocus(), m_room.stripWindow());
}

TEST_F(CircleItem, HidingTakesAllItsWindowsAway) {
    show();
    const HWND small = smallWnd();
    select(true);
    m_pItem->showItem(false);
    for (const HWND window : {item(), small, largeWnd(), box()}) {
        EXPECT_FALSE(shown(window));
        EXPECT_TRUE(::IsWindow(window));
    }
}

TEST_F(CircleItem, IsShownAgainAsItWasSelected) {
    show();
    select(true);
    m_pItem->showItem(false);
    show();
    EXPECT_TRUE(shown(largeWnd()));
}

TEST_F(CircleItem, DestroyingTakesAllItsWindowsAndPictures) {
    show();
    select(true);
    const std::vector<HWND> windows{item(), smallWnd(), largeWnd(), box()};
    EXPECT_EQ(m_pItem->destroyItem(), S_OK);
    for (const HWND window : windows) {
        EXPECT_FALSE(::IsWindow(window));
    }
    EXPECT_FALSE(CircleItemSeam::hasAnyImage(*m_pItem));
    EXPECT_EQ(m_pItem->destroyItem(), S_OK) << "twice is harmless";
}

class HandedOverWindows : public CircleItem {
 protected:
    [[nodiscard]] std::vector<HWND> windows() const { return {item(), smallWnd(), largeWnd(), box()}; }
    void end() {
        EXPECT_EQ(m_pItem->destroyItem(), S_OK);
        m_pItem.reset();
    }
    void makeAnother(UINT uSmallId, UINT uLargeId, const wchar_t* pszText) {
        m_pItem = std::make_unique<CCircleItemDlg>(uSmallId, uLargeId, pszText);
        m_pItem->setPlacement(m_room.placement());
        EXPECT_EQ(m_pItem->initialize(), S_OK);
        EXPECT_TRUE(m_pItem->Create(nullptr));
    }

    std::optional<CCircleItemDlg::CHandOver> m_handOver{std::in_place};
};

TEST_F(HandedOverWindows, StayHiddenAndServeTheNextItem) {
    show();
    select(true);
    const std::vector<HWND> before = windows();
    end();
    for (const HWND window : before) {
        EXPECT_TRUE(::IsWindow(window));
        EXPECT_FALSE(shown(window));
    }
    m_log.clear();
    makeAnother(113, 112, L"Another text");
    m_handOver.reset();
    EXPECT_TRUE(logged(L"[TRC] (CCircleItemDlg::OnInitDialog): LEAVE CCircleItemDlg::OnInitDialog"));
    EXPECT_EQ(windows(), before);
    EXPECT_EQ(ItemDescSeam::text(CircleItemSeam::box(*m_pItem)), L"Another text");
    EXPECT_FALSE(enlarged());
    show();
    EXPECT_TRUE(shown(smallWnd()));
    EXPECT_FALSE(shown(largeWnd()));
    EXPECT_FALSE(shown(box()));
    // The place and the size of the old item's windows are known without a message.
    EXPECT_EQ(windowRect(smallWnd()).left, kX + 11);
    select(true);
    EXPECT_TRUE(shown(largeWnd()));
    EXPECT_TRUE(shown(box()));
}

TEST_F(HandedOverWindows, AreTakenInTheirOrderAndEndIfNobodyTakesThem) {
    CCircleItemDlg other(kSmallId, kLargeId, L"");
    other.setPlacement(m_room.placement());
    EXPECT_TRUE(other.Create(nullptr));
    const HWND otherWindow = other.windowHandle();
    const HWND window = item();
    end();
    EXPECT_EQ(other.destroyItem(), S_OK);
    makeAnother(113, 112, L"");
    EXPECT_EQ(item(), window);
    EXPECT_TRUE(::IsWindow(otherWindow));
    m_handOver.reset();
    EXPECT_FALSE(::IsWindow(otherWindow));
    EXPECT_TRUE(::IsWindow(window));
    end();
    EXPECT_FALSE(::IsWindow(window)) << "nobody hands over any more";
}

TEST_F(CircleItem, DeletedWithItsWindowItLeavesNothingBehind) {
    show();
    select(true);
    const std::vector<HWND> windows{item(), smallWnd(), largeWnd(), box()};
    m_pItem.reset();
    for (const HWND window : windows) {
        EXPECT_FALSE(::IsWindow(window));
    }
}

TEST_F(CircleItem, WithoutPicturesNothingIsShown) {
    CCircleItemDlg bare(kSmallId, kLargeId, L"");
    EXPECT_EQ(CircleItemSeam::showFakeWnd(bare), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{
                            L"[ERR] (CCircleItemDlg::showFakeWnd): ASSERT( (m_pImageSmall && m_pImageLarge) )"});
}

class CircleItemImages : public ItemTest, public testing::WithParamInterface<std::pair<UINT, UINT>> {};

TEST_P(CircleItemImages, MissingOneFailsWithTheSystemsErrorAndKeepsNone) {
    CCircleItemDlg item(GetParam().first, GetParam().second, L"");
    const HRESULT status = item.initialize();
    EXPECT_EQ(status, HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND));
    EXPECT_TRUE(logged(L"[ERR] (CCircleItemDlg::initialize): Error Code: 0x80070716"));
    EXPECT_FALSE(CircleItemSeam::hasAnyImage(item));
}

INSTANTIATE_TEST_SUITE_P(All, CircleItemImages,
                         testing::Values(std::pair{kMissingId, kLargeId}, std::pair{kSmallId, kMissingId},
                                         std::pair{kMissingId, kMissingId}));

TEST_F(ItemTest, CircleItemAssertsTheImageLibrary) {
    m_room.withoutPictures();
    CCircleItemDlg item(kSmallId, kLargeId, L"");
    EXPECT_TRUE(FAILED(item.initialize()));
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::getPngDll): ASSERT( m_hPngDll )"));
}

TEST_F(ItemTest, CircleItemsLeakNothing) {
    testsupport::expectNoLeak(10, 100, [this](int) {
        CCircleItemDlg item(kSmallId, kLargeId, L"Mute off");
        ASSERT_EQ(item.initialize(), S_OK);
        ASSERT_TRUE(item.Create(nullptr));
        place(item.windowHandle(), kX, kY, 72, 72);
        EXPECT_EQ(item.showItem(true), S_OK);
        for (const bool selected : {true, false, true}) {
            paintNow(item.windowHandle());
            static_cast<void>(item.switchItem(0, false, selected));
        }
        paintNow(item.windowHandle());
        EXPECT_EQ(item.showItem(false), S_OK);
        EXPECT_EQ(item.destroyItem(), S_OK);
        support::pump();
        m_log.clear();
    });
}

}  // namespace
}  // namespace items
