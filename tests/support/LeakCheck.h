// The procedure of a leak test: run it until everything that is created once exists, count, run it many times more, and
// count again.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>

#include "support/AppRoom.h"
#include "support/ResourceCounters.h"

namespace testsupport {

// `cycle` gets its number; pending messages are handled before each count.
inline void expectNoLeak(int warmUp, int times, const std::function<void(int)>& cycle) {
    const auto run = [&cycle](int turns) {
        for (int turn = 0; turn < turns; ++turn) {
            cycle(turn);
        }
        support::pump();
    };
    run(warmUp);
    const std::size_t gdi = gdiHandles();
    const std::size_t kernel = kernelHandles();
    const std::size_t windows = support::threadWindows();
    ASSERT_GT(gdi, 0U) << "the counter does not work here";
    ASSERT_GT(kernel, 0U) << "the counter does not work here";
    run(times);
    EXPECT_LE(gdiHandles(), gdi);
    EXPECT_LE(kernelHandles(), kernel);
    EXPECT_EQ(support::threadWindows(), windows);
}

}  // namespace testsupport
