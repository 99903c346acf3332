#include "QuietPeriod.h"

#include <gtest/gtest.h>

using hotkey::CQuietPeriod;

TEST(QuietPeriod, WithoutAChangeNothingIsDue) {
    CQuietPeriod quiet;
    EXPECT_EQ(quiet.timeLeft(5000), INFINITE);
    EXPECT_FALSE(quiet.takeIfDue(5000));
}

TEST(QuietPeriod, ChangeIsDueOnceAHundredMillisecondsLater) {
    CQuietPeriod quiet;
    quiet.touch(1000);
    EXPECT_EQ(quiet.timeLeft(1000), 100u);
    EXPECT_FALSE(quiet.takeIfDue(1099));
    EXPECT_TRUE(quiet.takeIfDue(1100));
    EXPECT_FALSE(quiet.takeIfDue(1101));
}

TEST(QuietPeriod, FurtherChangesPutItOff) {
    CQuietPeriod quiet;
    quiet.touch(1000);
    quiet.touch(1090);
    EXPECT_FALSE(quiet.takeIfDue(1150));
    EXPECT_TRUE(quiet.takeIfDue(1190));
}

TEST(QuietPeriod, StormWithoutEndIsDueAfterASecond) {
    CQuietPeriod quiet;
    for (ULONGLONG now = 1000; now < 1990; now += 10) {
        quiet.touch(now);
        ASSERT_FALSE(quiet.takeIfDue(now));
    }
    quiet.touch(1995);
    EXPECT_EQ(quiet.timeLeft(1995), 5u);
    EXPECT_TRUE(quiet.takeIfDue(2000));
}
