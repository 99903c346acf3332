#include "Alarm.h"

#include <gtest/gtest.h>

TEST(Alarm, IsDueOnceWhenItsTimeHasCome) {
    hotkey::CAlarm alarm;
    EXPECT_EQ(alarm.timeLeft(5), INFINITE);
    EXPECT_FALSE(alarm.takeIfDue(5));
    alarm.set(100);
    EXPECT_EQ(alarm.timeLeft(40), 60u);
    EXPECT_FALSE(alarm.takeIfDue(99));
    EXPECT_EQ(alarm.timeLeft(100), 0u);
    EXPECT_EQ(alarm.timeLeft(500), 0u);
    EXPECT_TRUE(alarm.takeIfDue(500));
    EXPECT_FALSE(alarm.takeIfDue(501));
    EXPECT_EQ(alarm.timeLeft(501), INFINITE);
}

TEST(Alarm, IsCancelled) {
    hotkey::CAlarm alarm;
    alarm.set(100);
    EXPECT_TRUE(alarm.isSet());
    alarm.cancel();
    EXPECT_FALSE(alarm.isSet());
    EXPECT_FALSE(alarm.takeIfDue(100));
}
