// Full-screen programs: with the setting no card is shown over them, and the keys work.
#include "AppFixture.h"

namespace {

using namespace apptest;

class FullScreen : public ShellTest {
 protected:
    FullScreen() {
        addThreeCards();
        config().bHideInFullScreen = 1;
    }
    ~FullScreen() override { system_double::reset(); }

    static void screenIs(QUERY_USER_NOTIFICATION_STATE state) { system_double::state().notificationState = state; }
    static int visibleWindows() {
        int nVisible = 0;
        ::EnumThreadWindows(
            ::GetCurrentThreadId(),
            [](HWND hWnd, LPARAM lParam) -> BOOL {
                *reinterpret_cast<int*>(lParam) += shown(hWnd) ? 1 : 0;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&nVisible));
        return nVisible;
    }
};

class FullScreenProgram : public FullScreen, public testing::WithParamInterface<QUERY_USER_NOTIFICATION_STATE> {};
INSTANTIATE_TEST_SUITE_P(States, FullScreenProgram,
                         testing::Values(QUNS_BUSY, QUNS_RUNNING_D3D_FULL_SCREEN, QUNS_PRESENTATION_MODE));

TEST_P(FullScreenProgram, HidesTheCardsAndTheKeysWork) {
    screenIs(GetParam());
    const int before = visibleWindows();
    key(kModifier, kMake);
    EXPECT_FALSE(stripShown());
    key(kMuteKey, kMake);
    pump();
    EXPECT_FALSE(largeShown(0));
    EXPECT_EQ(visibleWindows(), before);
    EXPECT_TRUE(card(0).hasValidSelection());
    key(kMuteKey, kMake);
    key(kMuteKey, kMake);
    pump();
    EXPECT_EQ(visibleWindows(), before);
    key(kModifier, kBreak);
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId)[0].arguments[0], 1) << "the first press and two steps of two items";
    EXPECT_FALSE(card(0).hasValidSelection());
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::cardsStayHidden): A full-screen program runs: the cards stay hidden."));

    screenIs(QUNS_ACCEPTS_NOTIFICATIONS);
    key(kModifier, kMake);
    EXPECT_TRUE(stripShown()) << "after its end they are back";
    key(kMuteKey, kMake);
    EXPECT_TRUE(largeShown(0));
}

TEST_P(FullScreenProgram, ChangesNothingWithoutTheSetting) {
    config().bHideInFullScreen = 0;
    screenIs(GetParam());
    key(kModifier, kMake);
    EXPECT_TRUE(stripShown());
    key(kMuteKey, kMake);
    EXPECT_TRUE(largeShown(0));
}

class OrdinaryScreen : public FullScreen, public testing::WithParamInterface<QUERY_USER_NOTIFICATION_STATE> {};
INSTANTIATE_TEST_SUITE_P(States, OrdinaryScreen,
                         testing::Values(QUNS_ACCEPTS_NOTIFICATIONS, QUNS_NOT_PRESENT, QUNS_QUIET_TIME));

TEST_P(OrdinaryScreen, HasItsCards) {
    screenIs(GetParam());
    key(kModifier, kMake);
    EXPECT_TRUE(stripShown());
}

TEST_F(FullScreen, ScreenThatTheSystemDoesNotKnowHasItsCards) {
    screenIs(QUNS_BUSY);
    system_double::state().notificationStateFails = true;
    key(kModifier, kMake);
    EXPECT_TRUE(stripShown());
}

TEST_F(FullScreen, CardsThatAreShownAreStillHidden) {
    showStrip();
    screenIs(QUNS_BUSY);
    key(kModifier, kBreak);
    EXPECT_FALSE(stripShown());
}

}  // namespace
