// The hover strip: its place, its four rows of pixels, and the idle time after which it brings up the cards.
#include "AppFixture.h"

namespace {

using namespace apptest;

class HoverStripTest : public ShellTest {
 protected:
    static constexpr RECT kArea{101, 40, 1000, 700};

    HoverStripTest() {
        system_double::state().workArea = kArea;
        config().bEnableHover = 1;
        config().uMouseEnterIdle = 60000;
        layOut();
        EXPECT_EQ(hover().refresh(3), S_OK);
        EXPECT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
        EXPECT_TRUE(hoverShown());
        pump();
        m_log.clear();
    }
    void mouse(UINT message) {
        RECT place{};
        ::GetWindowRect(hoverWindow(), &place);
        system_double::state().cursor = POINT{place.left + 5, place.top + 2};
        ::SendMessageW(hoverWindow(), message, 0, MAKELPARAM(5, 2));
    }
    [[nodiscard]] UINT idle() const { return system_double::timer(hoverWindow(), 200); }
    // A border image whose blue identifies the rows on the screen.
    void stripeBorder() {
        auto border = std::make_unique<Gdiplus::Bitmap>(96, 65, PixelFormat32bppARGB);
        for (INT y = 0; y < 65; ++y) {
            for (INT x = 0; x < 96; ++x) {
                border->SetPixel(x, y, Gdiplus::Color(255, 0, 0, static_cast<BYTE>(y * 3)));
            }
        }
        HideDlgSeam::border(hover()) = LateImage(std::move(border));
        system_double::state().keepFrames = true;
    }
    [[nodiscard]] const system_double::Frame& frame() const { return system_double::state().frames[hoverWindow()]; }
};

TEST_F(HoverStripTest, DialogOnlyTakesTheMouse) {
    COLORREF key = 0;
    BYTE alpha = 0;
    DWORD flags = 0;
    ASSERT_TRUE(::GetLayeredWindowAttributes(hoverWindow(), &key, &alpha, &flags));
    EXPECT_EQ(key, RGB(0xFF, 0, 0xFF));
    EXPECT_EQ(alpha, 1);
    EXPECT_EQ(flags, static_cast<DWORD>(LWA_COLORKEY | LWA_ALPHA));
    EXPECT_NE(::GetWindowLongPtrW(hoverWindow(), GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
    EXPECT_NE(HideDlgSeam::border(hover()).get(), nullptr) << "the border's picture comes from the image library";
}

TEST_F(HoverStripTest, TakesFourPixelsOfTheChosenEdge) {
    EXPECT_EQ(windowRect(hoverWindow()), (RECT{406, 40, 406 + 288, 44}));
    config().uPosition = 1;
    layOut();
    EXPECT_EQ(hover().refresh(3), S_OK);
    EXPECT_EQ(windowRect(hoverWindow()), (RECT{406, 696, 406 + 288, 700}));
    EXPECT_TRUE(logged(L"[TRC] (CZelHideDlg::_setDlgPos): rectWorkArea = (101, 40) - (1000, 700), 899 * 660"));
}

TEST_F(HoverStripTest, HasOneSegmentPerCard) {
    EXPECT_EQ(HideDlgSeam::segments(hover()), (std::vector<RECT>{{0, 0, 96, 4}, {96, 0, 192, 4}, {192, 0, 288, 4}}));
    m_room.setRatio(0.5);
    EXPECT_EQ(hover().refresh(2), S_OK);
    EXPECT_EQ(HideDlgSeam::segments(hover()), (std::vector<RECT>{{0, 0, 48, 4}, {48, 0, 96, 4}}));
}

TEST_F(HoverStripTest, HasNoWidthWithoutCardsAndDrawsNothing) {
    system_double::state().keepFrames = true;
    EXPECT_EQ(hover().refresh(0), S_OK);
    EXPECT_EQ(windowRect(hoverWindow()).left, windowRect(hoverWindow()).right);
    EXPECT_GE(HideDlgSeam::show(hover()), 0);
    EXPECT_TRUE(system_double::state().frames.empty());
    EXPECT_TRUE(errors().empty());
}

TEST_F(HoverStripTest, UnknownWorkAreaLeavesNoSegments) {
    system_double::state().workAreaFails = true;
    EXPECT_EQ(MainDlgSeam::place(strip()), E_FAIL);
    EXPECT_EQ(hover().refresh(3), E_FAIL);
    EXPECT_TRUE(HideDlgSeam::segments(hover()).empty());
    EXPECT_EQ(HideDlgSeam::layered(hover()), nullptr);
    EXPECT_EQ(HideDlgSeam::show(hover()), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CZelHideDlg::_showBlackCardsBoder): ASSERT( m_pLyrWndBlkCards )"));
}

TEST_F(HoverStripTest, StaysAboveOthersOnlyWhenTopmost) {
    const auto topmost = [this] { return (::GetWindowLongPtrW(hoverWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
    EXPECT_FALSE(topmost());
    config().bTopmost = 1;
    EXPECT_EQ(hover().refresh(3), S_OK);
    EXPECT_TRUE(topmost());
    config().bTopmost = 0;
    EXPECT_EQ(hover().refresh(3), S_OK);
    EXPECT_FALSE(topmost());
}

TEST_F(HoverStripTest, ShowsTheLastRowsOfTheBorderAtTheTop) {
    stripeBorder();
    EXPECT_EQ(HideDlgSeam::show(hover()), S_OK);
    for (int y = 0; y < 4; ++y) {
        EXPECT_NEAR(frame().at(200, y) & 0xFFU, (61 + y) * 3 * 220 / 255, 2);
        EXPECT_EQ(frame().at(200, y) >> 24U, 220U);
    }
    EXPECT_TRUE(shown(HideDlgSeam::layered(hover())->m_hWnd));
}

TEST_F(HoverStripTest, ShowsTheFirstRowsOfTheBorderAtTheBottom) {
    config().uPosition = 1;
    layOut();
    EXPECT_EQ(hover().refresh(3), S_OK);
    stripeBorder();
    EXPECT_EQ(HideDlgSeam::show(hover()), S_OK);
    for (int y = 0; y < 4; ++y) {
        EXPECT_NEAR(frame().at(5, y) & 0xFFU, y * 3 * 220 / 255, 2);
    }
}

TEST_F(HoverStripTest, HidingTakesThePictureAway) {
    ::InvalidateRect(hoverWindow(), nullptr, TRUE);
    ::UpdateWindow(hoverWindow());
    const HWND picture = HideDlgSeam::layered(hover())->m_hWnd;
    ASSERT_TRUE(shown(picture));
    ::ShowWindow(hoverWindow(), SW_HIDE);
    EXPECT_FALSE(shown(picture));
}

TEST_F(HoverStripTest, RefreshMakesANewLayerAndRepaints) {
    ::InvalidateRect(hoverWindow(), nullptr, TRUE);
    ::UpdateWindow(hoverWindow());
    const HWND before = HideDlgSeam::layered(hover())->m_hWnd;
    EXPECT_EQ(hover().refresh(2), S_OK);
    EXPECT_FALSE(::IsWindow(before));
    EXPECT_TRUE(::GetUpdateRect(hoverWindow(), nullptr, FALSE));
}

TEST_F(HoverStripTest, RestingMouseCallsTheCardsUp) {
    config().uMouseEnterIdle = 30;
    mouse(WM_MOUSEMOVE);
    EXPECT_EQ(idle(), 30U);
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(pumpUntil([this] { return stripShown(); }));
    EXPECT_FALSE(hoverShown());
    EXPECT_TRUE(ZelMainSeam::mouseOperating());
    EXPECT_EQ(idle(), 0U);
}

TEST_F(HoverStripTest, FurtherMovesDoNotStartTheIdleTimeAgain) {
    mouse(WM_MOUSEMOVE);
    EXPECT_EQ(idle(), 60000U);
    config().uMouseEnterIdle = 50000;
    mouse(WM_MOUSEMOVE);
    EXPECT_EQ(idle(), 60000U);
    EXPECT_EQ(system_double::state().tracked.size(), 1U);
}

TEST_F(HoverStripTest, MouseThatLeavesInTimeShowsNothing) {
    mouse(WM_MOUSEMOVE);
    mouse(WM_MOUSELEAVE);
    EXPECT_EQ(idle(), 0U);
    EXPECT_FALSE(stripShown());
    mouse(WM_MOUSEMOVE);
    EXPECT_EQ(idle(), 60000U) << "the next visit counts anew";
}

TEST_F(HoverStripTest, MouseThatIsGoneWhenTheIdleTimeIsOverShowsNothing) {
    config().uMouseEnterIdle = 30;
    mouse(WM_MOUSEMOVE);
    system_double::state().cursor = POINT{5, 700};
    EXPECT_TRUE(pumpUntil([this] { return idle() == 0U; }));
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(hoverShown());
}

TEST_F(HoverStripTest, ClickDoesNotTakeTheFocus) {
    EXPECT_EQ(::SendMessageW(hoverWindow(), WM_MOUSEACTIVATE, 0, MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)), MA_NOACTIVATE);
}

TEST_F(HoverStripTest, MouseMeansNothingWhenDisabled) {
    config().bDisable = 1;
    mouse(WM_MOUSEMOVE);
    EXPECT_EQ(idle(), 0U);
}

TEST_F(HoverStripTest, DestructionTakesTheLayerAlong) {
    EXPECT_EQ(HideDlgSeam::show(hover()), S_OK);
    const HWND picture = HideDlgSeam::layered(hover())->m_hWnd;
    hover().DestroyWindow();
    EXPECT_FALSE(::IsWindow(picture));
    EXPECT_EQ(HideDlgSeam::layered(hover()), nullptr);
}

}  // namespace
