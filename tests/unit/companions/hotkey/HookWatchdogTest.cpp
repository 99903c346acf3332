#include "HookWatchdog.h"

#include <gtest/gtest.h>

using hotkey::CHookWatchdog;

namespace {

class HookWatchdog : public testing::Test {
 protected:
    // Whether the hook counts as lost when the last input of all came at that time.
    bool lost(ULONGLONG now, ULONGLONG lastInput) { return m_watchdog.takeIfLost(now, static_cast<DWORD>(lastInput)); }

    CHookWatchdog m_watchdog;
};

}  // namespace

TEST_F(HookWatchdog, SleepsWhileNothingHappens) {
    EXPECT_EQ(m_watchdog.timeLeft(1000000), INFINITE);
    EXPECT_FALSE(lost(1000000, 1000000));
    m_watchdog.hookCalled(2000000);
    EXPECT_EQ(m_watchdog.timeLeft(3000000), INFINITE);
}

TEST_F(HookWatchdog, HookThatIsCalledForTheKeyToo) {
    m_watchdog.keyboardUsed(10000);
    EXPECT_EQ(m_watchdog.timeLeft(10000), CHookWatchdog::kLater);
    m_watchdog.hookCalled(10010);
    EXPECT_EQ(m_watchdog.timeLeft(10010), INFINITE);
    m_watchdog.hookCalled(20000);
    m_watchdog.keyboardUsed(20000 + CHookWatchdog::kEarlier);
    EXPECT_EQ(m_watchdog.timeLeft(20050), INFINITE) << "it was called before";
}

TEST_F(HookWatchdog, HookThatIsNotCalledIsLost) {
    m_watchdog.hookCalled(10000);
    m_watchdog.keyboardUsed(20000);
    m_watchdog.keyboardUsed(20100);
    EXPECT_FALSE(lost(20000 + CHookWatchdog::kLater - 1, 20100));
    EXPECT_EQ(m_watchdog.timeLeft(20000 + CHookWatchdog::kLater), 0U) << "of the first key";
    EXPECT_TRUE(lost(20000 + CHookWatchdog::kLater, 20100));
    EXPECT_FALSE(lost(20000 + CHookWatchdog::kLater, 20100)) << "once";
}

TEST_F(HookWatchdog, NothingIsLostWhenTheSystemKnowsOfNoLaterInput) {
    m_watchdog.hookCalled(10000);
    m_watchdog.keyboardUsed(20000);
    EXPECT_FALSE(lost(20300, 10000));
    EXPECT_FALSE(lost(20300, 9990));
}

TEST_F(HookWatchdog, TicksOfTheSystemMayWrapAround) {
    constexpr ULONGLONG kWrap = 0x100000000U;
    m_watchdog.hookCalled(kWrap - 100);
    m_watchdog.keyboardUsed(kWrap + 200);
    EXPECT_TRUE(lost(kWrap + 200 + CHookWatchdog::kLater, kWrap + 200));
}

TEST_F(HookWatchdog, WhereNoNewHookHelpsItIsTriedEverMoreSeldom) {
    ULONGLONG now = 10000;
    ULONGLONG pause = 0;
    for (int i = 0; i < 20; ++i) {
        m_watchdog.keyboardUsed(now);
        EXPECT_EQ(m_watchdog.timeLeft(now), std::max(pause, CHookWatchdog::kLater)) << i;
        now += m_watchdog.timeLeft(now);
        ASSERT_TRUE(lost(now, now)) << i;
        pause = pause == 0 ? CHookWatchdog::kFirstPause : std::min(2 * pause, CHookWatchdog::kLongestPause);
    }
    m_watchdog.hookCalled(now);
    m_watchdog.keyboardUsed(now + 1000);
    EXPECT_EQ(m_watchdog.timeLeft(now + 1000), CHookWatchdog::kLater) << "a hook that was called starts anew";
}
