// When a thread counts as hung.
#include <gtest/gtest.h>

#include "Logic/Faults/HangJudge.h"

namespace {

using faults::CHangJudge;
using Verdict = CHangJudge::Verdict;

constexpr faults::Patience kPatience{3000, 20000};

class HangJudge : public testing::Test {
 protected:
    // Looks until something else than Nothing comes, `dwLimit` ms at most; how long that took is in m_dwTime.
    Verdict lookFor(DWORD dwLimit, bool bInCall, bool bAnswers = true) {
        for (m_dwTime = 0; m_dwTime < dwLimit;) {
            m_dwTime += CHangJudge::kLookMs;
            const Verdict verdict = m_judge.look({CHangJudge::kLookMs, m_lSigns, bInCall, bAnswers}, kPatience);
            if (verdict != Verdict::Nothing) {
                return verdict;
            }
        }
        return Verdict::Nothing;
    }

    CHangJudge m_judge;
    LONG m_lSigns = 0;
    DWORD m_dwTime = 0;
};

TEST_F(HangJudge, CallWithoutASignIsNoticedOnceAndEndedLater) {
    EXPECT_EQ(lookFor(60000, true), Verdict::Notice);
    EXPECT_EQ(m_dwTime, 3000U);
    EXPECT_TRUE(m_judge.hangs());
    EXPECT_EQ(lookFor(60000, true), Verdict::End);
    EXPECT_EQ(m_dwTime, 17000U);
}

TEST_F(HangJudge, CallThatHandlesMessagesNeverHangs) {
    for (int i = 0; i < 1000; ++i) {
        ++m_lSigns;
        ASSERT_EQ(lookFor(CHangJudge::kLookMs, true), Verdict::Nothing) << i;
    }
}

TEST_F(HangJudge, ReturnAfterTheNoticeIsTold) {
    EXPECT_EQ(lookFor(60000, true), Verdict::Notice);
    ++m_lSigns;
    EXPECT_EQ(lookFor(CHangJudge::kLookMs, false), Verdict::Over);
    EXPECT_FALSE(m_judge.hangs());
}

TEST_F(HangJudge, AfterACallTheProgramHasMoreTime) {
    ++m_lSigns;
    EXPECT_EQ(lookFor(CHangJudge::kLookMs, true), Verdict::Nothing);
    EXPECT_EQ(lookFor(60000, false), Verdict::Notice);
    EXPECT_EQ(m_dwTime, CHangJudge::kAfterCallMs);
}

TEST_F(HangJudge, WhoDoesNotHandleMessagesYetIsStarting) {
    EXPECT_EQ(lookFor(600000, false, false), Verdict::Nothing);
}

TEST_F(HangJudge, WithoutATimeNothingHangs) {
    EXPECT_EQ(m_judge.look({250, 0, true, true}, {0, 1}), Verdict::Nothing);
    EXPECT_EQ(m_judge.look({250, 0, true, true}, {0, 1}), Verdict::Nothing);
}

TEST_F(HangJudge, SleepOfTheMachineIsNoHang) {
    EXPECT_EQ(m_judge.look({8 * 3600 * 1000, m_lSigns, true, true}, kPatience), Verdict::Nothing);
}

TEST_F(HangJudge, RestsWhenAllIsCalm) {
    DWORD dwTime = 0;
    Verdict verdict = Verdict::Nothing;
    while (verdict == Verdict::Nothing && dwTime < 60000) {
        ++m_lSigns;
        dwTime += CHangJudge::kLookMs;
        verdict = m_judge.look({CHangJudge::kLookMs, m_lSigns, false, true}, kPatience);
    }
    EXPECT_EQ(verdict, Verdict::Rest);
    EXPECT_EQ(dwTime, CHangJudge::kCalmMs);
}

}  // namespace
