#include "system/Worker.h"

#include <gtest/gtest.h>

#include <atomic>

#include "plugins/windows/Waiting.h"
#include "support/ResourceCounters.h"
#include "system/SlowState.h"
#include "system/fake/FakeOfferMemory.h"

namespace win {
namespace {

struct Gate {
    common::UniqueHandle hInside{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    common::UniqueHandle hOpen{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};

    // A turn that takes time.
    void pass() const {
        ::SetEvent(hInside.get());
        ::WaitForSingleObject(hOpen.get(), kDeadlineMs);
    }
    [[nodiscard]] bool entered() const { return ::WaitForSingleObject(hInside.get(), kDeadlineMs) == WAIT_OBJECT_0; }
    void open() const { ::SetEvent(hOpen.get()); }
};

TEST(Worker, RunsItsTurnOnAThreadOfItsOwn) {
    std::atomic<DWORD> thread = 0;
    CWorker worker([&thread] { thread = ::GetCurrentThreadId(); });
    EXPECT_TRUE(worker.wake());
    EXPECT_TRUE(soon([&] { return thread != 0; }));
    EXPECT_NE(thread, ::GetCurrentThreadId());
}

TEST(Worker, WakesDuringATurnAreOneTurn) {
    const auto gate = std::make_shared<Gate>();
    const auto turns = std::make_shared<std::atomic<int>>(0);
    CWorker worker([gate, turns] {
        ++*turns;
        gate->pass();
    });
    worker.wake();
    ASSERT_TRUE(gate->entered());
    worker.wake();
    worker.wake();
    worker.wake();
    gate->open();
    EXPECT_TRUE(soon([&] { return *turns == 2; }));
    ::Sleep(50);  // for a third turn there is nothing to wait for
    EXPECT_EQ(*turns, 2);
}

TEST(Worker, EndsWithinASecondWhateverItsTurnDoes) {
    const auto gate = std::make_shared<Gate>();
    auto pWorker = std::make_unique<CWorker>([gate] { gate->pass(); });
    pWorker->wake();
    ASSERT_TRUE(gate->entered());
    const ULONGLONG start = ::GetTickCount64();
    pWorker.reset();
    EXPECT_LT(::GetTickCount64() - start, 500U) << "more than the brief wait, on a busy machine";
    gate->open();
    EXPECT_TRUE(soon([&] { return gate.use_count() == 1; })) << "the thread has given up what its turn used";
}

TEST(Worker, GoesOnAfterATurnThatThrows) {
    const auto turns = std::make_shared<std::atomic<int>>(0);
    CWorker worker([turns] {
        if (++*turns == 1) {
            throw std::bad_alloc();
        }
    });
    worker.wake();
    ASSERT_TRUE(soon([&] { return *turns == 1; }));
    worker.wake();
    EXPECT_TRUE(soon([&] { return *turns == 2; }));
}

TEST(Worker, LeavesNoHandleBehind) {
    const auto cycle = [] {
        CWorker worker([] {});
        worker.wake();
    };
    cycle();
    const std::size_t before = testsupport::kernelHandles();
    ASSERT_GT(before, 0U) << "the counter does not work here";
    for (int i = 0; i < 20; ++i) {
        cycle();
    }
    EXPECT_TRUE(soon([&] { return testsupport::kernelHandles() <= before; })) << testsupport::kernelHandles() - before;
}

// A machine whose number is slow to read and to set.
struct SlowNumber {
    std::atomic<int> number = 1;
    std::atomic<bool> there = true;
    std::atomic<int> changes = 0;
    Gate gate;
    std::atomic<bool> gated = false;
    std::atomic<DWORD> dwReadMs = 0;

    std::optional<int> read() {
        ::Sleep(dwReadMs);
        if (gated) {
            gate.pass();
        }
        return there ? std::optional<int>(number) : std::nullopt;
    }
};

class SlowState : public testing::Test {
 protected:
    bool change(int number) {
        return m_state.change(
            [pMachine = m_pMachine, number] {
                pMachine->number = number;
                ++pMachine->changes;
            },
            number);
    }

    std::wstring first() { return m_state.waitForFirst(L"There is none.", kDeadlineMs); }

    std::shared_ptr<SlowNumber> m_pMachine = std::make_shared<SlowNumber>();
    CSlowState<int> m_state{[pMachine = m_pMachine] { return pMachine->read(); }};
};

TEST_F(SlowState, FirstWaitsForTheMachine) {
    EXPECT_EQ(m_state.known(), std::nullopt);
    EXPECT_EQ(first(), L"");
    EXPECT_EQ(m_state.known(), 1);
}

TEST_F(SlowState, FirstGivesUpInTime) {
    m_pMachine->gated = true;
    EXPECT_EQ(m_state.waitForFirst(L"There is none.", 20), kNoAnswerInTime);
    m_pMachine->gate.open();
}

// What a later start gets from a machine that does not answer, in ms and words.
TEST_F(SlowState, TheAnswerOfAnEarlierStartStandsInForALateOne) {
    for (const auto before : {CFakeOfferMemory::Yes, CFakeOfferMemory::No}) {
        const auto pMachine = std::make_shared<SlowNumber>();
        pMachine->gated = true;
        CSlowState<int> state([pMachine] { return pMachine->read(); });
        state.remember(std::make_shared<CFakeOfferMemory>(before));
        const ULONGLONG start = ::GetTickCount64();
        EXPECT_EQ(state.waitForFirst(L"There is none.", kDeadlineMs),
                  before == CFakeOfferMemory::Yes
                      ? L""
                      : L"The system did not answer in time. At an earlier start: There is none.");
        EXPECT_LT(::GetTickCount64() - start, kFirstAnswerMs);
        EXPECT_EQ(state.known(), std::nullopt) << "nothing is made up";
        pMachine->gate.open();
    }
}

TEST_F(SlowState, TheMachinesOwnAnswerCountsMoreThanARememberedOne) {
    const auto pMemory = std::make_shared<CFakeOfferMemory>(CFakeOfferMemory::Yes);
    m_pMachine->there = false;
    m_state.remember(pMemory);
    // A busy machine may need longer than the brief wait.
    ASSERT_TRUE(soon([&] { return m_state.waitForFirst(L"There is none.") == L"There is none."; }));
    EXPECT_EQ(pMemory->answer, CFakeOfferMemory::No);
}

TEST_F(SlowState, ALateAnswerIsRememberedForTheNextStartEvenAfterTheEnd) {
    const auto pMemory = std::make_shared<CFakeOfferMemory>(CFakeOfferMemory::No);
    m_pMachine->gated = true;
    {
        CSlowState<int> state([pMachine = m_pMachine] { return pMachine->read(); });
        state.remember(pMemory);
        EXPECT_EQ(state.waitForFirst(L"There is none."), reasonWithoutAnswer(false, L"There is none."));
        ASSERT_TRUE(m_pMachine->gate.entered());
    }
    m_pMachine->gate.open();
    EXPECT_TRUE(soon([&] { return pMemory->answer == CFakeOfferMemory::Yes; }));
}

// A screen that is still waking, for example.
TEST_F(SlowState, ADeviceThatIsMissingLaterDoesNotCostTheNextStartItsCard) {
    const auto pMemory = std::make_shared<CFakeOfferMemory>(CFakeOfferMemory::No);
    m_state.remember(pMemory);
    EXPECT_TRUE(soon([&] { return m_state.waitForFirst(L"There is none.").empty(); }));
    ASSERT_TRUE(soon([&] { return pMemory->answer == CFakeOfferMemory::Yes; }));
    m_pMachine->there = false;
    m_state.refresh();
    EXPECT_TRUE(soon([this] { return !m_state.known(); }));
    EXPECT_EQ(pMemory->answer, CFakeOfferMemory::Yes);
}

TEST_F(SlowState, AMachineThatHasNothingSaysSo) {
    m_pMachine->there = false;
    EXPECT_EQ(first(), L"There is none.");
}

TEST_F(SlowState, ReadsAtOnceWhatIsKnownAndTheTruthLater) {
    ASSERT_EQ(first(), L"");
    m_pMachine->number = 7;
    EXPECT_EQ(m_state.known(), 1);
    m_state.refresh();
    EXPECT_TRUE(soon([&] { return m_state.known() == 7; }));
}

TEST_F(SlowState, AChangeIsExpectedAtOnceAndVerifiedLater) {
    ASSERT_EQ(first(), L"");
    EXPECT_TRUE(change(5));
    EXPECT_EQ(m_state.known(), 5);
    EXPECT_TRUE(soon([&] { return m_pMachine->number == 5; }));
    // The machine refuses: the expected value is replaced by the real one.
    EXPECT_TRUE(m_state.change([] {}, 9));
    EXPECT_TRUE(soon([&] { return m_state.known() == 5; }));
}

TEST_F(SlowState, OfSeveralChangesThatWaitOnlyTheLatestIsMade) {
    m_pMachine->gated = true;
    m_state.refresh();
    ASSERT_TRUE(m_pMachine->gate.entered());
    change(2);
    change(3);
    change(4);
    EXPECT_EQ(m_state.known(), 4);
    m_pMachine->gate.open();
    EXPECT_TRUE(soon([&] { return m_pMachine->number == 4; }));
    EXPECT_EQ(m_pMachine->changes, 1);
    EXPECT_EQ(m_state.known(), 4);
}

TEST_F(SlowState, WhoAsksForTheFreshStateWaitsForAReadThatIsUnderWay) {
    ASSERT_EQ(first(), L"");
    m_pMachine->dwReadMs = 5;
    EXPECT_TRUE(someTime([&](int nTry) {
        m_pMachine->number = 10 + nTry;
        m_state.refresh();
        return m_state.fresh() == 10 + nTry;
    }));
    m_pMachine->number = 7;
    EXPECT_NE(m_state.fresh(), 7) << "none is under way";
}

TEST_F(SlowState, WhoAsksForTheFreshStateOfAMachineThatHangsGetsTheKnownOneSoon) {
    ASSERT_EQ(first(), L"");
    m_pMachine->number = 7;
    m_pMachine->gated = true;
    m_state.refresh();
    ASSERT_TRUE(m_pMachine->gate.entered());
    const ULONGLONG ullStart = ::GetTickCount64();
    EXPECT_EQ(m_state.fresh(), 1);
    EXPECT_LT(::GetTickCount64() - ullStart, 250U) << "30 ms, on a busy machine";
    m_pMachine->gate.open();
}

// The read began before the card opened, so that it may have missed what was changed since.
TEST_F(SlowState, TheEndOfAnEarlierReadIsNotYetTheFreshState) {
    ASSERT_EQ(first(), L"");
    EXPECT_TRUE(someTime([&](int nTry) {
        const auto pMachine = std::make_shared<SlowNumber>();
        const auto pBefore = std::make_shared<std::atomic<bool>>(true);
        CSlowState<int> state([pMachine, pBefore] {
            const int nNumber = pMachine->number;
            if (pBefore->exchange(false)) {
                pMachine->gate.pass();
            }
            return std::optional<int>(nNumber);
        });
        state.refresh();
        EXPECT_TRUE(pMachine->gate.entered());
        pMachine->number = 100 + nTry;
        state.refresh();
        pMachine->gate.open();
        return state.fresh() == 100 + nTry;
    }));
}

TEST_F(SlowState, AnExpectedStateIsFreshAtOnce) {
    ASSERT_EQ(first(), L"");
    m_pMachine->gated = true;
    m_state.refresh();
    ASSERT_TRUE(m_pMachine->gate.entered());
    change(4);
    EXPECT_EQ(m_state.fresh(), 4);
    m_pMachine->gate.open();
}

}  // namespace
}  // namespace win
