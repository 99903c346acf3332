// The monitor on which the cards appear, and when it changes. Monitors are numbers here; the end-to-end tests use real
// ones.
#include "AppFixture.h"

namespace {

using namespace apptest;

constexpr RECT kPrimary{0, 0, 1280, 800};
constexpr RECT kLeft{-1024, 32, 0, 768};  // with a task bar at its top
constexpr RECT kAbove{200, -600, 1000, 0};

class MonitorTest : public ShellTest {
 protected:
    MonitorTest() {
        system_double::state().workArea = kPrimary;
        system_double::state().foreground = support::foreignWindow();
        system_double::state().monitorOfForeground = kLeft;
        config().bMonitorOfActiveWindow = 1;
        addThreeCards();
        EXPECT_TRUE(ratioIs(1.0));
    }
    static void workOn(const RECT& monitor) { system_double::state().monitorOfForeground = monitor; }
    [[nodiscard]] bool ratioIs(double ratio) const { return theApp.getPngRatio() == ratio; }
    [[nodiscard]] static RECT stripOn(const RECT& area, bool bottom = false) {
        return geometry::cardStrip(area, 3, 1.0, bottom).place;
    }
    [[nodiscard]] RECT stripPlace() const { return windowRect(stripWindow()); }
    [[nodiscard]] std::size_t layouts() const {
        return timesLogged(L"[TRC] (CZelMainDlg::setBlackCardsPos): ENTER CZelMainDlg::setBlackCardsPos");
    }
};

TEST_F(MonitorTest, CardsLieOnTheMonitorOfTheActiveWindow) {
    EXPECT_EQ(stripPlace(), stripOn(kLeft));
    config().uPosition = 1;
    layOut();
    EXPECT_EQ(stripPlace(), stripOn(kLeft, true));
    workOn(kAbove);
    layOut();
    EXPECT_EQ(stripPlace(), stripOn(kAbove, true));
}

TEST_F(MonitorTest, CardsLieOnThePrimaryScreenUnlessAsked) {
    config().bMonitorOfActiveWindow = 0;
    layOut();
    EXPECT_EQ(stripPlace(), stripOn(kPrimary));
    workOn(kAbove);
    showStrip();
    EXPECT_EQ(stripPlace(), stripOn(kPrimary));
}

TEST_F(MonitorTest, MonitorThatCannotBeAskedCountsAsThePrimaryOne) {
    system_double::state().monitorFails = true;
    layOut();
    EXPECT_EQ(stripPlace(), stripOn(kPrimary));
}

TEST_F(MonitorTest, ModifierShowsTheCardsWhereTheUserWorksNow) {
    workOn(kAbove);
    EXPECT_EQ(stripPlace(), stripOn(kLeft)) << "nothing moves before";
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(stripPlace(), stripOn(kAbove));
    EXPECT_TRUE(stripShown());
}

TEST_F(MonitorTest, ShownCardsStayWhereTheyAre) {
    showStrip();
    workOn(kAbove);
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    EXPECT_EQ(stripPlace(), stripOn(kLeft));
    // Nor does an open card jump to another screen in the middle of a choice.
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    const RECT opened = windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd), opened);
    EXPECT_EQ(stripPlace(), stripOn(kLeft));
}

TEST_F(MonitorTest, FunctionKeyWithoutAStripOpensItsCardThere) {
    config().bHideMainDlg = 1;
    workOn(kAbove);
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
    const RECT strip = stripOn(kAbove);
    const RECT enlarged = windowRect(BlackCardSeam::largeCard(card(1))->m_hWnd);
    EXPECT_EQ(enlarged, (RECT{strip.left + 96, strip.top, strip.left + 192, strip.top + 144}));
    // The row of items is laid out in that monitor too.
    const auto& row = BlackCardSeam::items(card(1));
    ASSERT_EQ(row.size(), 2U);
    const geometry::ItemRow wanted =
        geometry::itemRow(enlarged, kAbove, row[0]->width(), 2, row[0]->descOverhang(), 1.0);
    EXPECT_EQ(windowRect(row[1]->windowHandle()).left, wanted.left(1));
}

TEST_F(MonitorTest, NarrowMonitorMakesEverythingSmaller) {
    workOn({2000, 0, 2300, 600});
    showStrip();
    EXPECT_DOUBLE_EQ(theApp.getPngRatio(), 300 * 0.85 / 3 / 96);
    EXPECT_EQ(stripPlace().right - stripPlace().left, 3 * 85);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd).right -
                  windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd).left,
              85);
    EXPECT_EQ(BlackCardSeam::items(card(0)).front()->width(), static_cast<int>(72 * 300 * 0.85 / 3 / 96));
}

// The ratio does not exceed the screen's scale.
TEST_F(MonitorTest, ScreenOfAnotherScaleHasARatioOfItsOwn) {
    workOn(kAbove);
    system_double::state().scaleOfForeground = 1.25;
    showStrip();
    EXPECT_TRUE(ratioIs(1.25));
    EXPECT_EQ(stripPlace(), geometry::cardStrip(kAbove, 3, 1.25, false).place);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd).bottom -
                  windowRect(BlackCardSeam::largeCard(card(0))->m_hWnd).top,
              144 * 5 / 4);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    system_double::state().scaleOfForeground = 1.0;
    showStrip();
    EXPECT_TRUE(ratioIs(1.0)) << "the same work area at another scale";
}

TEST_F(MonitorTest, ScaleOfThePrimaryScreenCounts) {
    config().bMonitorOfActiveWindow = 0;
    system_double::state().scaleOfOthers = 1.125;
    system_double::state().scaleOfForeground = 1.25;
    layOut();
    EXPECT_TRUE(ratioIs(1.125));
}

TEST_F(MonitorTest, NewScaleOfTheScreenIsTakenOverAtOnce) {
    m_log.clear();
    RECT suggested{0, 0, 700, 300};
    const auto tell = [&](HWND window) {
        ::SendMessageW(window, kMsgDpiChanged, MAKEWPARAM(120, 120), reinterpret_cast<LPARAM>(&suggested));
    };
    tell(stripWindow());
    EXPECT_EQ(layouts(), 0U) << "it was placed there, with the right ratio";
    system_double::state().scaleOfForeground = 1.25;
    tell(stripWindow());
    EXPECT_EQ(stripPlace(), geometry::cardStrip(kLeft, 3, 1.25, false).place);
    EXPECT_EQ(layouts(), 1U);
    // No window lets the system scale it.
    const RECT hover = windowRect(hoverWindow());
    tell(hoverWindow());
    EXPECT_EQ(windowRect(hoverWindow()), hover);
}

TEST_F(MonitorTest, HoverStripGoesAlong) {
    config().bEnableHover = 1;
    EXPECT_EQ(theApp.refreshCards(FALSE), S_OK);
    EXPECT_EQ(windowRect(hoverWindow()), geometry::hoverStrip(kLeft, 3, 1.0, false).place);
    workOn(kAbove);
    showStrip();
    EXPECT_EQ(windowRect(hoverWindow()), geometry::hoverStrip(kAbove, 3, 1.0, false).place);
}

TEST_F(MonitorTest, MouseOnTheHoverStripCallsTheCardsToItself) {
    config().bEnableHover = 1;
    EXPECT_EQ(theApp.refreshCards(FALSE), S_OK);
    ASSERT_TRUE(hoverShown());
    workOn(kPrimary);
    ::SetWindowPos(hoverWindow(), HWND_TOPMOST, 500, 0, 288, 4, SWP_NOACTIVATE);  // on a screen that exists here
    system_double::state().cursor = POINT{505, 2};
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    EXPECT_EQ(stripPlace(), stripOn(kLeft));
}

TEST_F(MonitorTest, ScreenThatChangedUnheardOfCountsAtTheNextShowing) {
    config().bMonitorOfActiveWindow = 0;
    layOut();
    system_double::state().workArea = RECT{0, 40, 1280, 800};
    m_log.clear();
    showStrip();
    EXPECT_EQ(stripPlace(), stripOn({0, 40, 1280, 800}));
    EXPECT_EQ(layouts(), 1U);
}

TEST_F(MonitorTest, NothingIsLaidOutAnewWithoutAReason) {
    m_log.clear();
    showStrip();
    EXPECT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_EQ(layouts(), 0U);
}

TEST_F(MonitorTest, CardsStayWhileTheScreensCannotBeAsked) {
    config().bMonitorOfActiveWindow = 0;
    layOut();
    system_double::state().workAreaFails = true;
    showStrip();
    EXPECT_EQ(stripPlace(), stripOn(kPrimary));
}

}  // namespace
