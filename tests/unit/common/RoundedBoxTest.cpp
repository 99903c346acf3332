#include "common/RoundedBox.h"

#include <gtest/gtest.h>

#include "Rendering.h"

namespace {

using rendering::Canvas;
using rendering::redOf;

constexpr DWORD kFace = 0xFFC0C0C0U;

TEST(RoundedBox, IsFullInTheMiddleAndSmoothAtItsCorners) {
    Canvas canvas(40, 20);
    fillRoundedBox(canvas.frame(), {0, 0, 40, 20}, 0.0, 0xFF000000U);
    fillRoundedBox(canvas.frame(), {2, 2, 38, 18}, 5.0, kFace);
    EXPECT_EQ(canvas.at(20, 10), kFace);
    EXPECT_EQ(canvas.at(2, 10), kFace) << "straight edges lie on whole pixels";
    EXPECT_EQ(canvas.at(20, 17), kFace);
    EXPECT_EQ(canvas.at(1, 10), 0xFF000000U);
    EXPECT_EQ(canvas.at(2, 2), 0xFF000000U) << "outside of the arc";
    int steps = 0;
    for (int y = 2; y < 7; ++y) {
        for (int x = 2; x < 7; ++x) {
            const int red = redOf(canvas.at(x, y));
            steps += red > 0 && red < 0xC0 ? 1 : 0;
            EXPECT_EQ(canvas.at(x, y), canvas.at(39 - x, y)) << "both sides alike";
            EXPECT_EQ(canvas.at(x, y), canvas.at(x, 19 - y));
        }
    }
    EXPECT_GE(steps, 5) << "no staircase";
}

TEST(RoundedBox, OnNothingItsCornersAreAsTransparentAsTheyLeaveThePixels) {
    Canvas canvas(40, 20);
    fillRoundedBox(canvas.frame(), {0, 0, 40, 20}, 5.0, kFace);
    EXPECT_EQ(canvas.at(0, 0), 0U);
    EXPECT_EQ(canvas.at(20, 10), kFace);
    int steps = 0;
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 5; ++x) {
            const int alpha = static_cast<int>(canvas.at(x, y) >> 24U);
            steps += alpha > 0 && alpha < 0xFF ? 1 : 0;
            EXPECT_NEAR(redOf(canvas.at(x, y)), alpha * 0xC0 / 0xFF, 1) << "no other colour in it: " << x << ", " << y;
        }
    }
    EXPECT_GE(steps, 5);
}

TEST(RoundedBox, TakesAColourForEachColumn) {
    Canvas canvas(10, 4);
    fillRoundedBox(canvas.frame(), {0, 0, 10, 4}, 0.0, [](int x) { return 0xFF000000U | static_cast<DWORD>(x); });
    EXPECT_EQ(canvas.at(0, 1), 0xFF000000U);
    EXPECT_EQ(canvas.at(7, 3), 0xFF000007U);
}

TEST(RoundedBox, OddBoxesAreTaken) {
    Canvas canvas(10, 4);
    fillRoundedBox(canvas.frame(), {5, 2, 5, 2}, 3.0, kFace);
    fillRoundedBox(canvas.frame(), {8, 3, 2, 1}, 3.0, kFace);
    EXPECT_EQ(canvas.ink().right, 0);
    fillRoundedBox(canvas.frame(), {-20, -20, 30, 24}, 500.0, kFace);
    fillRoundedBox(canvas.frame(), {0, 0, 10, 4}, -3.0, kFace);
    EXPECT_EQ(canvas.at(0, 0), kFace);
}

}  // namespace
