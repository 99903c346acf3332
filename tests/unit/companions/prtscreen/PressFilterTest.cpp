#include "PressFilter.h"

#include <gtest/gtest.h>

using prtscreen::CPressFilter;

TEST(PressFilter, CountsPressesAndNotRepeats) {
    CPressFilter filter;
    EXPECT_TRUE(filter.isPress(true, 100));
    EXPECT_FALSE(filter.isPress(true, 600));
    EXPECT_FALSE(filter.isPress(false, 700));
    EXPECT_TRUE(filter.isPress(true, 710));
}

TEST(PressFilter, LostReleaseCostsNoPressAfterALongSilence) {
    CPressFilter filter;
    EXPECT_TRUE(filter.isPress(true, 100));
    EXPECT_FALSE(filter.isPress(true, 100 + keyboard::kRepeatGap));
    EXPECT_TRUE(filter.isPress(true, 101 + 2 * keyboard::kRepeatGap));
}

TEST(PressFilter, ReleaseWithoutAPressIsNothing) {
    CPressFilter filter;
    EXPECT_FALSE(filter.isPress(false, 100));
    EXPECT_TRUE(filter.isPress(true, 110));
}
