// The panic thread itself, with an action that the test controls.
#include "Logic/FuncX/PanicThread.h"

#include <gmock/gmock.h>

#include <atomic>

#include "Logic/FuncX/FunctionFixture.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr wchar_t kEventName[] = L"FnF5Panic";
constexpr CPanicThread::Rules kQuiet{.dwEndWaitMs = 300, .bLogEvents = false, .pszFailureText = L"it worked"};
constexpr CPanicThread::Rules kLogging{.dwEndWaitMs = 300, .bLogEvents = true, .pszFailureText = nullptr};

class CTestAction final : public CPanicThread::IAction {
 public:
    HRESULT preparePanic() override {
        ++m_nPrepared;
        return m_prepareStatus;
    }
    HRESULT panic() override {
        m_dwThread = ::GetCurrentThreadId();
        ++m_nPanics;
        if (m_hGate != nullptr) {
            ::WaitForSingleObject(m_hGate, INFINITE);
        }
        if (m_bThrow) {
            throw std::bad_alloc();
        }
        return m_panicStatus;
    }

    HRESULT m_prepareStatus = S_OK;
    HRESULT m_panicStatus = S_OK;
    HANDLE m_hGate = nullptr;
    bool m_bThrow = false;
    std::atomic<int> m_nPrepared = 0;
    std::atomic<int> m_nPanics = 0;
    std::atomic<DWORD> m_dwThread = 0;
};

common::UniqueHandle openEvent() {
    return common::UniqueHandle(::OpenEventW(EVENT_MODIFY_STATE | SYNCHRONIZE, FALSE, kEventName));
}

bool setEvent() {
    const common::UniqueHandle hEvent = openEvent();
    return hEvent && ::SetEvent(hEvent.get()) != FALSE;
}

// In both cases it is not set afterwards.
bool isSet(const common::UniqueHandle& hEvent) {
    return ::WaitForSingleObject(hEvent.get(), 0) == WAIT_OBJECT_0;
}

class PanicThread : public testing::Test {
 protected:
    [[nodiscard]] std::vector<std::wstring> lines() const { return m_log.lines(); }

    support::LogCapture m_log;
    CTestAction m_action;
};

}  // namespace

TEST_F(PanicThread, AnActionThatThrowsHasFailedAndTheThreadGoesOn) {
    m_action.m_bThrow = true;
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    for (int panics = 1; panics <= 2; ++panics) {
        ASSERT_TRUE(setEvent());
        EXPECT_TRUE(eventually([&] { return m_action.m_nPanics == panics; }));
    }
    EXPECT_TRUE(thread.end().bInTime);
    EXPECT_THAT(lines(), ElementsAre(L"[ERR] (CPanicThread::_panicOnce): ASSERT( it worked )",
                                     L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005",
                                     L"[ERR] (CPanicThread::_panicOnce): ASSERT( it worked )",
                                     L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005"));
}

TEST_F(PanicThread, EachEventIsOneActionOnAnotherThread) {
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return m_action.m_nPanics == 1; }));
    EXPECT_NE(m_action.m_dwThread, ::GetCurrentThreadId());
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return m_action.m_nPanics == 2; }));
    const CPanicThread::EndResult result = thread.end();
    EXPECT_TRUE(result.bEventFound);
    EXPECT_TRUE(result.bInTime);
    EXPECT_EQ(m_action.m_nPanics, 2);
    EXPECT_EQ(m_action.m_nPrepared, 1);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(PanicThread, TheEventIsThereFromTheStartAndGoneAfterTheEnd) {
    EXPECT_FALSE(openEvent());
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    EXPECT_TRUE(openEvent());
    thread.end();
    EXPECT_FALSE(openEvent());
}

TEST_F(PanicThread, StartedTwiceItIsOneThread) {
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    thread.start();
    EXPECT_TRUE(eventually([this] { return m_action.m_nPrepared == 1; }));
    EXPECT_TRUE(thread.end().bInTime);
    thread.start();
    EXPECT_TRUE(eventually([this] { return m_action.m_nPrepared == 2; }));
    EXPECT_TRUE(thread.end().bInTime);
}

TEST_F(PanicThread, EndingWithoutAThreadFindsNoEvent) {
    CPanicThread thread(m_action, kQuiet);
    const CPanicThread::EndResult result = thread.end();
    EXPECT_FALSE(result.bEventFound);
    EXPECT_TRUE(result.bInTime);
}

TEST_F(PanicThread, TheObjectsEndEndsTheThread) {
    {
        CPanicThread thread(m_action, kQuiet);
        thread.start();
    }
    EXPECT_FALSE(openEvent());
    EXPECT_EQ(m_action.m_nPanics, 0);
}

TEST_F(PanicThread, AFailedActionIsLoggedAndTheThreadGoesOn) {
    m_action.m_panicStatus = E_ABORT;
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return lines().size() == 2; }));
    EXPECT_THAT(lines(), ElementsAre(L"[ERR] (CPanicThread::_panicOnce): ASSERT( it worked )",
                                     L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005"));
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return m_action.m_nPanics == 2; }));
    EXPECT_TRUE(thread.end().bInTime);
}

TEST_F(PanicThread, WakeUpsAreLoggedWhereTheRulesSaySo) {
    m_action.m_panicStatus = E_ABORT;
    CPanicThread thread(m_action, kLogging);
    thread.start();
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return lines().size() == 2; }));
    EXPECT_TRUE(thread.end().bInTime);
    const std::wstring triggered = L"[INF] (CPanicThread::_waitForPanic): FnF5 panic event is triggered.";
    EXPECT_THAT(lines(),
                ElementsAre(triggered, L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005", triggered));
}

TEST_F(PanicThread, AFailedPreparationEndsTheThread) {
    m_action.m_prepareStatus = E_POINTER;
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    EXPECT_TRUE(eventually([] { return !openEvent(); }));
    EXPECT_THAT(lines(), ElementsAre(L"[ERR] (CPanicThread::_run): Error Code: 0x80004003"));
    const CPanicThread::EndResult result = thread.end();
    EXPECT_FALSE(result.bEventFound);
    EXPECT_TRUE(result.bInTime);
}

TEST_F(PanicThread, ATakenEventNameEndsTheThread) {
    const common::UniqueHandle hTaken(::CreateMutexW(nullptr, FALSE, kEventName));
    ASSERT_TRUE(hTaken);
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    EXPECT_TRUE(eventually([this] { return lines().size() == 2; }));
    EXPECT_THAT(lines(), ElementsAre(L"[ERR] (CPanicThread::_run): ASSERT( hevtFnF5Panic )",
                                     L"[ERR] (CPanicThread::_run): Error Code: 0x80004003"));
    EXPECT_FALSE(thread.end().bEventFound);
    EXPECT_EQ(m_action.m_nPrepared, 0);
}

TEST_F(PanicThread, AThreadWithoutObjectEndsAtOnce) {
    EXPECT_EQ(CPanicThread::threadProcedure(nullptr), 0U);
    EXPECT_THAT(lines(), ElementsAre(L"[ERR] (CPanicThread::threadProcedure): Error Code: 0x0"));
}

TEST_F(PanicThread, AnActionThatHangsIsCutOffAfterTheWait) {
    const common::UniqueHandle hGate(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_action.m_hGate = hGate.get();
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    ASSERT_TRUE(setEvent());
    ASSERT_TRUE(eventually([this] { return m_action.m_nPanics == 1; }));
    const ULONGLONG begin = ::GetTickCount64();
    EXPECT_FALSE(thread.end().bInTime);
    const ULONGLONG took = ::GetTickCount64() - begin;
    EXPECT_GE(took, 290U);
    EXPECT_LT(took, 2000U);
    // It can start again.
    m_action.m_hGate = nullptr;
    thread.start();
    ASSERT_TRUE(setEvent());
    EXPECT_TRUE(eventually([this] { return m_action.m_nPanics == 2; }));
    EXPECT_TRUE(thread.end().bInTime);
}

TEST_F(PanicThread, AnActionThatComesBackInTimeIsWaitedFor) {
    const common::UniqueHandle hGate(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_action.m_hGate = hGate.get();
    CPanicThread thread(m_action, {.dwEndWaitMs = 5000, .bLogEvents = false, .pszFailureText = nullptr});
    thread.start();
    ASSERT_TRUE(setEvent());
    ASSERT_TRUE(eventually([this] { return m_action.m_nPanics == 1; }));
    HANDLE hOpener = nullptr;
    ASSERT_NE(::CreateTimerQueueTimer(
                  &hOpener, nullptr, [](void* pGate, BOOLEAN) { ::SetEvent(static_cast<HANDLE>(pGate)); }, hGate.get(),
                  100, 0, WT_EXECUTEONLYONCE),
              FALSE);
    EXPECT_TRUE(thread.end().bInTime);
    EXPECT_NE(::DeleteTimerQueueTimer(nullptr, hOpener, INVALID_HANDLE_VALUE), FALSE);
}

TEST_F(PanicThread, EndingOneNeverMakesAnotherPanic) {
    CTestAction otherAction;
    CPanicThread other(otherAction, kLogging);
    other.start();
    for (int i = 0; i < 50; ++i) {
        CPanicThread thread(m_action, kLogging);
        thread.start();
        EXPECT_TRUE(thread.end().bInTime);
    }
    EXPECT_TRUE(other.end().bInTime);
    EXPECT_EQ(otherAction.m_nPanics + m_action.m_nPanics, 0);
}

TEST_F(PanicThread, AFunctionWithoutThreadDoesNotMakeAnotherPanic) {
    CTestAction otherAction;
    CPanicThread other(otherAction, kQuiet);
    other.start();
    CPanicThread never(m_action, kQuiet);
    EXPECT_TRUE(never.end().bEventFound);
    EXPECT_TRUE(other.end().bInTime);
    EXPECT_EQ(otherAction.m_nPanics, 0);
}

TEST_F(PanicThread, TheSignalToEndIsNotLeftBehind) {
    CPanicThread thread(m_action, kQuiet);
    thread.start();
    const common::UniqueHandle hEvent = openEvent();  // something else keeps the event alive
    ASSERT_TRUE(hEvent);
    thread.end();
    EXPECT_FALSE(isSet(hEvent));
    m_action.m_prepareStatus = E_FAIL;
    thread.start();
    EXPECT_TRUE(eventually([this] { return lines().size() == 1; }));
    thread.end();  // no thread waited any more
    EXPECT_FALSE(isSet(hEvent));
}

TEST_F(PanicThread, ManyStartsAndEndsLeaveNoHandleBehind) {
    CPanicThread thread(m_action, kQuiet);
    const auto nextHandle = [] {
        const common::UniqueHandle hProbe(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
        return reinterpret_cast<ULONG_PTR>(hProbe.get());
    };
    thread.start();
    thread.end();
    const ULONG_PTR before = nextHandle();
    for (int i = 0; i < 100; ++i) {
        thread.start();
        thread.end();
    }
    EXPECT_EQ(nextHandle(), before);
}

}  // namespace functest
