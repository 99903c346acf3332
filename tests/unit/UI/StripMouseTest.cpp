// The strip and the mouse.
#include "AppFixture.h"

namespace {

using namespace apptest;

class StripMouseTest : public ShellTest {
 protected:
    StripMouseTest() {
        addThreeCards();
        showStrip();
        pump();
    }
    LRESULT mouse(UINT message, int x, int y) { return ::SendMessageW(stripWindow(), message, 0, MAKELPARAM(x, y)); }
    [[nodiscard]] bool repaints() const { return ::GetUpdateRect(stripWindow(), nullptr, FALSE) != FALSE; }
    void pointAt(int x, int y) {
        const RECT place = windowRect(stripWindow());
        system_double::state().cursor = POINT{place.left + x, place.top + y};
    }
    [[nodiscard]] int hovered() const { return MainDlgSeam::hovered(strip()); }
};

TEST_F(StripMouseTest, MovesMeanNothingUntilTheMouseOperates) {
    mouse(WM_MOUSEMOVE, 10, 10);
    EXPECT_EQ(hovered(), -1);
    EXPECT_FALSE(MainDlgSeam::tracking(strip()));
    EXPECT_FALSE(repaints());
}

TEST_F(StripMouseTest, HoveredCardIsTheOneUnderThePointer) {
    m_room.setMouseOperating(true);
    mouse(WM_MOUSEMOVE, 100, 10);
    EXPECT_EQ(hovered(), 1);
    EXPECT_TRUE(repaints());
    pump();
    mouse(WM_MOUSEMOVE, 110, 20);
    EXPECT_FALSE(repaints()) << "still the same card";
    mouse(WM_MOUSEMOVE, 192, 0);
    EXPECT_EQ(hovered(), 2);
    mouse(WM_MOUSEMOVE, 192, 59);
    EXPECT_EQ(hovered(), -1) << "below the picture";
    mouse(WM_MOUSEMOVE, -5, 5);
    EXPECT_EQ(hovered(), -1);
}

TEST_F(StripMouseTest, AsksForOneLeaveAtATime) {
    m_room.setMouseOperating(true);
    mouse(WM_MOUSEMOVE, 100, 10);
    mouse(WM_MOUSEMOVE, 110, 10);
    ASSERT_EQ(system_double::state().tracked.size(), 1U);
    EXPECT_EQ(system_double::state().tracked[0].dwFlags, static_cast<DWORD>(TME_LEAVE));
    EXPECT_EQ(system_double::state().tracked[0].hwndTrack, stripWindow());
    pointAt(110, 10);
    mouse(WM_MOUSELEAVE, 0, 0);
    mouse(WM_MOUSEMOVE, 110, 10);
    EXPECT_EQ(system_double::state().tracked.size(), 2U);
}

TEST_F(StripMouseTest, ClickOpensTheCardWithNothingSelected) {
    ::SetTimer(stripWindow(), 10, 60000, nullptr);
    mouse(WM_LBUTTONDOWN, 100, 10);
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(ZelMainSeam::mouseOperating());
    EXPECT_FALSE(largeShown(0));
    EXPECT_TRUE(largeShown(1));
    EXPECT_FALSE(card(1).hasValidSelection());
    EXPECT_FALSE(BlackCardSeam::items(card(1)).empty());
    EXPECT_EQ(system_double::timer(stripWindow(), 10), 0U);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainApp::mouseOperating): m_bMouseOperating = 0"));
}

TEST_F(StripMouseTest, ClickDoesNotTakeTheFocus) {
    EXPECT_EQ(::SendMessageW(stripWindow(), WM_MOUSEACTIVATE, 0, MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)), MA_NOACTIVATE);
}

TEST_F(StripMouseTest, ClickBesideThePicturesOnlyHidesTheStrip) {
    mouse(WM_LBUTTONDOWN, 100, 80);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(ZelMainSeam::mouseOperating());
    EXPECT_FALSE(largeShown(1));
}

TEST_F(StripMouseTest, LeavingHidesTheStrip) {
    m_room.setMouseOperating(true);
    mouse(WM_MOUSEMOVE, 100, 10);
    system_double::state().cursor = POINT{5, 700};
    mouse(WM_MOUSELEAVE, 0, 0);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(MainDlgSeam::tracking(strip()));
    EXPECT_EQ(hovered(), -1);
}

TEST_F(StripMouseTest, LeaveWithThePointerStillOnTheStripDoesNothing) {
    m_room.setMouseOperating(true);
    mouse(WM_MOUSEMOVE, 100, 10);
    pump();
    pointAt(100, 10);
    mouse(WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(stripShown());
    EXPECT_FALSE(MainDlgSeam::tracking(strip()));
    EXPECT_EQ(hovered(), -1);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::OnMouseLeave): The window contains the cursor is current window."));
}

TEST_F(StripMouseTest, LeavingAHiddenStripDoesNothing) {
    ::ShowWindow(stripWindow(), SW_HIDE);
    system_double::state().cursor = POINT{5, 700};
    m_log.clear();
    mouse(WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(entered({L"CZelMainApp::showMainDlg"}).empty());
}

}  // namespace
