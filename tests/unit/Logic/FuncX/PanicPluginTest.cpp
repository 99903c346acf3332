// The panic threads of the two output functions with a real plug-in, and the timer that triggers them.
#include <gmock/gmock.h>

#include "Logic/FuncX/FxOutput.h"
#include "Logic/FuncX/Output2Fixture.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr UINT_PTR kTimer = 20;

// Libraries for the tests that interrupt a call, one each: they stay mapped for the rest of the process.
constexpr wchar_t kHangingPlugin[] = L"InstrNoGetCustomItemText";
constexpr wchar_t kSlowPlugin[] = L"InstrNoFocusItem";

bool setPanicEvent() {
    const common::UniqueHandle hEvent(::OpenEventW(EVENT_MODIFY_STATE, FALSE, L"FnF5Panic"));
    return hEvent && ::SetEvent(hEvent.get()) != FALSE;
}

// A window for timers, and its messages.
class TimerWindow {
 public:
    TimerWindow()
        : m_hWnd(::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {}
    [[nodiscard]] HWND get() const { return m_hWnd.get(); }
    template <typename Condition>
    [[nodiscard]] bool pumpUntil(Condition condition, DWORD dwMilliseconds) const {
        return eventually(
            [&] {
                MSG message;
                while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
                    ::DispatchMessageW(&message);
                }
                return condition();
            },
            dwMilliseconds);
    }

 private:
    common::UniqueWindow m_hWnd;
};

class OutputPanic : public FunctionTest {
 protected:
    void SetUp() override {
        m_function.setPlacement(m_placement);
        ASSERT_EQ(m_function.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
    }
    void offer(DWORD dwFirst) {
        m_plugin->info = dwFirst;
        ASSERT_EQ(m_function.initItems(m_items.vec()), S_OK);
    }

    CFxOutput m_function{{kCode}, L"Output"};
    Items m_items;
};

using Output2Panic = Output2Test;

}  // namespace

TEST_F(OutputPanic, ChoosesTheFirstArrangementOnAnotherThread) {
    offer(0x24);
    ASSERT_TRUE(setPanicEvent());
    ASSERT_TRUE(eventually([this] { return m_plugin.count(instr::SelectItemId) == 1; }));
    const auto call = m_plugin.calls(instr::SelectItemId).at(0);
    EXPECT_EQ(call.arguments[0], 2);
    EXPECT_NE(call.threadId, ::GetCurrentThreadId());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(OutputPanic, WithoutArrangementsItFailsQuietly) {
    ASSERT_TRUE(setPanicEvent());
    const std::wstring failed = L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005";
    EXPECT_TRUE(eventually([&] { return logged(failed); }));
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput::selectItem): ASSERT( ::indexInContainer(nItem, "
                                      L"m_vecAvailableMonitors) )",
                                      failed));
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(OutputPanic, RebuildsWhilePanickingAreSafe) {
    m_plugin->info = 0x7;
    for (int i = 0; i < 20; ++i) {
        m_items.clear();
        setPanicEvent();
        ASSERT_EQ(m_function.initItems(m_items.vec()), S_OK);
    }
    // Consecutive events may merge, and a panic between two lists selects nothing; one after the last list does.
    EXPECT_TRUE(eventually([this] {
        setPanicEvent();
        return m_plugin.count(instr::SelectItemId) > 0;
    }));
    for (const instr::CallEntry& call : m_plugin.calls(instr::SelectItemId)) {
        EXPECT_EQ(call.arguments[0], 0);
    }
}

TEST_F(OutputPanic, AHangingPluginIsCutOffAfterTwoSecondsAndStaysMapped) {
    instr::InstrumentedPlugin hanging(kHangingPlugin);
    m_function.finalize();
    ASSERT_EQ(m_function.initHotkeyDll(hanging.path().c_str()), S_OK);
    const common::UniqueHandle hGate(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    hanging->exports[instr::SelectItemId].gate = hGate.get();
    ASSERT_EQ(m_function.initItems(m_items.vec()), S_OK);
    ASSERT_TRUE(setPanicEvent());
    ASSERT_TRUE(eventually([&hanging] { return hanging.count(instr::SelectItemId) == 1; }));
    const ULONGLONG begin = ::GetTickCount64();
    m_function.finalize();
    const ULONGLONG took = ::GetTickCount64() - begin;
    EXPECT_GE(took, 1990U);
    EXPECT_LT(took, 5000U);
    EXPECT_TRUE(logged(L"[INF] (CFxOutput::finalize): Wait for FnF5 panic thread time out."));
    EXPECT_EQ(hanging.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_TRUE(hanging.heldByOthers());
}

TEST_F(OutputPanic, TheThreadRunsAlsoWhenThePluginIsNotSupported) {
    m_function.finalize();
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    ASSERT_EQ(m_function.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    EXPECT_TRUE(setPanicEvent());
}

TEST_F(OutputPanic, AHeldKeySetsTheEventOnceAfterThreeSeconds) {
    offer(0x1);
    const TimerWindow window;
    m_log.clear();
    const ULONGLONG begin = ::GetTickCount64();
    m_function.armPanicTimer(window.get(), kTimer);
    EXPECT_TRUE(window.pumpUntil([this] { return m_plugin.count(instr::SelectItemId) > 0; }, 8000));
    const ULONGLONG took = ::GetTickCount64() - begin;
    EXPECT_GE(took, 2950U);
    EXPECT_LT(took, 5000U);
    EXPECT_EQ(::KillTimer(window.get(), kTimer), FALSE);  // it has killed itself
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_TRUE(logged(L"[TRC] (_fnF5PanicTimerProc): ENTER _fnF5PanicTimerProc"));
    EXPECT_TRUE(logged(L"[TRC] (_fnF5PanicTimerProc): LEAVE _fnF5PanicTimerProc"));
}

TEST_F(OutputPanic, AKilledTimerSetsNothing) {
    offer(0x1);
    const TimerWindow window;
    m_function.armPanicTimer(window.get(), kTimer);
    EXPECT_NE(::KillTimer(window.get(), kTimer), FALSE);
    EXPECT_FALSE(window.pumpUntil([this] { return m_plugin.count(instr::SelectItemId) > 0; }, 3500));
}

TEST_F(Output2Panic, CallsTheExportOnAnotherThread) {
    ASSERT_TRUE(setPanicEvent());
    ASSERT_TRUE(eventually([this] { return m_plugin.count(instr::FnF5_SetCurrentForPanicId) == 1; }));
    EXPECT_NE(m_plugin.calls(instr::FnF5_SetCurrentForPanicId).at(0).threadId, ::GetCurrentThreadId());
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
    EXPECT_EQ(m_plugin.count(instr::FnF5_SetCurrentForPanicId), 1);
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(Output2Panic, AFailedExportIsLoggedAndTriedAgainTheNextTime) {
    m_plugin->exports[instr::FnF5_SetCurrentForPanicId].result = 1;
    ASSERT_TRUE(setPanicEvent());
    EXPECT_TRUE(eventually([this] { return errors().size() == 2; }));
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CPanicThread::_panicOnce): ASSERT( FUNCX_S_OK == nRet )",
                                      L"[ERR] (CPanicThread::_panicOnce): Error Code: 0x80004005"));
    ASSERT_TRUE(setPanicEvent());
    EXPECT_TRUE(eventually([this] { return m_plugin.count(instr::FnF5_SetCurrentForPanicId) == 2; }));
}

TEST_F(Output2Panic, WithoutTheExportTheThreadEnds) {
    m_function.finalize();
    m_log.clear();
    ASSERT_EQ(init(L"InstrNoFnF5_SetCurrentForPanic"), S_OK);
    EXPECT_TRUE(eventually([] { return !setPanicEvent(); }));
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CPanicThread::_run): Error Code: 0x80004003"));
    m_function.finalize();
    EXPECT_EQ(::GetModuleHandleW(L"InstrNoFnF5_SetCurrentForPanic.dll"), nullptr);
}

TEST_F(Output2Panic, ASlowExportHoldsNothingUpAndStaysMapped) {
    instr::InstrumentedPlugin slow(kSlowPlugin);
    m_function.finalize();
    ASSERT_EQ(init(kSlowPlugin), S_OK);
    slow->exports[instr::FnF5_SetCurrentForPanicId].delay = 5000;
    slow->itemCount = 1;
    ASSERT_TRUE(setPanicEvent());
    ASSERT_TRUE(eventually([&slow] { return slow.count(instr::FnF5_SetCurrentForPanicId) == 1; }));
    // The cards work meanwhile.
    ULONGLONG begin = ::GetTickCount64();
    EXPECT_EQ(m_function.initItems(m_items.vec()), S_OK);
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_LT(::GetTickCount64() - begin, 4000U);
    m_items.clear();
    begin = ::GetTickCount64();
    m_function.finalize();
    const ULONGLONG took = ::GetTickCount64() - begin;
    EXPECT_GE(took, 990U);
    EXPECT_LT(took, 4000U);
    EXPECT_EQ(slow.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_TRUE(slow.heldByOthers());
}

TEST_F(Output2Panic, TheTimerHasItsOwnName) {
    const TimerWindow window;
    m_log.clear();
    m_function.armPanicTimer(window.get(), kTimer);
    EXPECT_TRUE(window.pumpUntil([this] { return m_plugin.count(instr::FnF5_SetCurrentForPanicId) > 0; }, 8000));
    EXPECT_TRUE(logged(L"[TRC] (_fnF5PanicTimerProc_2): ENTER _fnF5PanicTimerProc_2"));
    EXPECT_EQ(::KillTimer(window.get(), kTimer), FALSE);
}

TEST_F(Output2Panic, AHeldKeyPanicsItsOwnFunctionOnly) {
    instr::InstrumentedPlugin olderPlugin(L"InstrNoIsDualBrtCtrl");
    CFxOutput older({kCode}, L"Output");
    older.setPlacement(m_placement);
    ASSERT_EQ(older.initHotkeyDll(olderPlugin.path().c_str()), S_OK);
    Items olderItems;
    olderPlugin->info = 1;
    ASSERT_EQ(older.initItems(olderItems.vec()), S_OK);
    const TimerWindow window;
    const auto hold = [&window](CFuncX& rFunction) {
        rFunction.armPanicTimer(window.get(), kTimer);
        CPanicThread::signalHeldKey(window.get(), kTimer);  // what the timer does when it fires
    };
    const auto panics = [&] {
        return std::pair(olderPlugin.count(instr::SelectItemId), m_plugin.count(instr::FnF5_SetCurrentForPanicId));
    };
    std::pair<LONG, LONG> expected;
    for (const char held : std::string("222111212211")) {
        if (held == '2') {
            ++expected.second;
            hold(m_function);
        } else {
            ++expected.first;
            hold(older);
        }
        ASSERT_TRUE(eventually([&] { return panics().first + panics().second == expected.first + expected.second; }));
        ASSERT_EQ(panics(), expected) << "the function whose key is held, and no other";
    }
    older.armPanicTimer(window.get(), kTimer);
    olderItems.clear();
    older.finalize();
    CPanicThread::signalHeldKey(window.get(), kTimer);
    EXPECT_FALSE(eventually([&] { return panics() != expected; }, 100)) << "its function is gone, and nobody is meant";
}

TEST_F(Output2Panic, BothFunctionsEndWithoutPanicking) {
    CFxOutput older({kCode}, L"Output");
    ASSERT_EQ(older.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    older.finalize();
    m_function.finalize();
    EXPECT_EQ(m_plugin.count(instr::FnF5_SetCurrentForPanicId), 0);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace functest
