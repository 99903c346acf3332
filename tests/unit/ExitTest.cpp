// The end of the program: after a complete start and after one that failed at each of its steps.
#include <algorithm>

#include "AppFixture.h"
#include "Data/RegistryPaths.h"

namespace {

using namespace apptest;

bool mutexThere() {
    const common::UniqueHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, L"_ZelMain_Mutex_"));
    return static_cast<bool>(mutex);
}

void expectNothingLeft(std::size_t windows) {
    EXPECT_EQ(ZelMainSeam::strip(), nullptr);
    EXPECT_EQ(ZelMainSeam::hoverStrip(), nullptr);
    EXPECT_FALSE(ZelMainSeam::pngDll());
    EXPECT_FALSE(ZelMainSeam::prtHookDll());
    EXPECT_FALSE(ZelMainSeam::mutex());
    EXPECT_FALSE(mutexThere());
    EXPECT_EQ(system_double::gdiplusSessions(), 0);
    EXPECT_EQ(theApp.m_pMainWnd.load(), nullptr);
    EXPECT_EQ(support::threadWindows(), windows);
    EXPECT_EQ(::GetModuleHandleW(support::AppRoom::artPath().c_str()), nullptr);
}

TEST_F(StartTest, EndReleasesEverything) {
    ASSERT_TRUE(start());
    EXPECT_TRUE(mutexThere());
    end();
    expectNothingLeft(m_windows);
    EXPECT_EQ(hotkeyLibrary().stop.calls, 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 2);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

// What is released later must not need what was released before: windows before the pictures they show, the hooks
// before the keys, GDI+ after the last picture, and the mutex last, because another start may take over as soon as it
// is free.
TEST_F(StartTest, EndReleasesInTheOrderInWhichThingsNeedEachOther) {
    ASSERT_TRUE(start());
    EXPECT_EQ(system_double::gdiplusSessions(), 1);
    system_double::State& system = system_double::state();
    system.watched = {{stripWindow(), L"strip"},
                      {hoverWindow(), L"hover strip"},
                      {ZelMainSeam::pngDll().get(), L"CardArt.dll"},
                      {ZelMainSeam::prtHookDll().get(), L"PrtHook.dll"},
                      {ZelMainSeam::mutex().get(), L"mutex"}};
    ASSERT_EQ(system.watched.size(), 5U);
    hotkeyLibrary().called = [](const wchar_t* exportName) {
        system_double::state().released.emplace_back(exportName);
    };
    end();
    EXPECT_EQ(system.released, (std::vector<std::wstring>{L"strip", L"hover strip", L"CardArt.dll", L"PrtHook.dll",
                                                          L"Stop", L"GDI+", L"mutex"}));
}

TEST_F(StartTest, EndWithCardsOpenReleasesEverything) {
    ASSERT_TRUE(start());
    ZelMainSeam::mouseOperating() = TRUE;
    ASSERT_EQ(ZelMainSeam::strip()->handleHotkey(kMuteKey, kMake), S_OK);
    ASSERT_EQ(ZelMainSeam::strip()->handleHotkey(kLockKey, kMake), S_OK);
    end();
    expectNothingLeft(m_windows);
}

TEST_F(StartTest, EndTellsOfAStopThatFails) {
    ASSERT_TRUE(start());
    hotkeyLibrary().stop.result = 5;
    m_log.clear();
    end();
    EXPECT_EQ(errors(),
              std::vector<std::wstring>{L"[ERR] (CHotkeyEventHandler::stopHotkeyEventLoop): Error Code: 0x80004005"});
    expectNothingLeft(m_windows);
}

TEST_F(StartTest, MissingStopIsLoggedAtTheEndOnly) {
    siblings::withoutExport(L"ZelMain.dll", L"Stop");
    ASSERT_TRUE(start());
    EXPECT_TRUE(errors().empty());
    end();
    EXPECT_TRUE(logged(L"[ERR] (CHotkeyEventHandler::stopHotkeyEventLoop): Error Code: 0x80004005"));
    expectNothingLeft(m_windows);
}

// A callback may return, after Stop gave up waiting for it, into a library that nobody holds any more.
TEST_F(StartTest, BoundLibrariesStayMappedAfterTheEnd) {
    const std::wstring hotkeys = siblings::copyThatNobodyHolds(L"ZelMain.dll");
    const std::wstring queries = siblings::copyThatNobodyHolds(L"ZelEvnt.dll");
    ASSERT_TRUE(start());
    end();
    EXPECT_NE(::GetModuleHandleW(hotkeys.c_str()), nullptr);
    EXPECT_NE(::GetModuleHandleW(queries.c_str()), nullptr);
}

TEST_F(StartTest, LibraryThatCouldNotBeBoundIsUnloaded) {
    siblings::withoutExport(L"ZelEvnt.dll", L"CancelQueryEvent");
    const std::wstring queries = siblings::copyThatNobodyHolds(L"ZelEvnt.dll");
    ASSERT_TRUE(start());
    EXPECT_EQ(::GetModuleHandleW(queries.c_str()), nullptr);
}

TEST_F(StartTest, ClosingTheFrameEndsTheMessageLoop) {
    ASSERT_TRUE(start());
    HotkeyEventSeam::config(0x80000000U);
    EXPECT_TRUE(pumpUntil([&] { return ZelMainSeam::frame()->m_hWnd == nullptr; }));
    EXPECT_EQ(theApp.m_pMainWnd.load(), nullptr);
    EXPECT_TRUE(logged(L"[TRC] (CSysMsgHandlerFrame::DestroyWindow): ENTER CSysMsgHandlerFrame::DestroyWindow"));
    end();
    expectNothingLeft(m_windows);
}

TEST_F(StartTest, EndOfTheSessionReleasesEverythingBeforeItIsAnswered) {
    ASSERT_TRUE(start());
    const HWND frame = ZelMainSeam::frame()->m_hWnd;
    EXPECT_NE(::SendMessageW(frame, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF), 0);
    EXPECT_NE(ZelMainSeam::strip(), nullptr) << "asking is not ending";
    ::SendMessageW(frame, WM_ENDSESSION, FALSE, 0);
    EXPECT_NE(ZelMainSeam::strip(), nullptr) << "another program refused";
    ::SendMessageW(frame, WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
    EXPECT_EQ(hotkeyLibrary().stop.calls, 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 2);
    expectNothingLeft(m_windows);
    EXPECT_EQ(m_log.lines().back(), L"(closed)");
    end();
    EXPECT_EQ(m_log.lines().back(), L"(closed)");
    EXPECT_EQ(hotkeyLibrary().stop.calls, 1) << "the end of the message loop does it no second time";
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 2);
}

TEST_F(StartTest, EndOfTheSessionWhileAPluginIsAtWorkEndsTheProgramAfterwards) {
    instr::InstrumentedPlugin idle(L"InstrNoGetUnsupportedReason");
    listFunction(L"Sleep", {kMuteKey + 1});
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, std::wstring(regpath::kHotkeyKey) + L"\\Sleep",
                                   regpath::kFuncDll, idle.path());
    ASSERT_TRUE(start());
    ASSERT_EQ(ZelMainSeam::strip()->handleHotkey(kMuteKey, kMake), S_OK);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    ::PostMessageW(ZelMainSeam::frame()->m_hWnd, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(ZelMainSeam::strip()->handleHotkey(kModifier, kBreak), S_OK);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 0) << "not under its feet";
    EXPECT_EQ(idle.count(instr::FinalizeHotkeyDllId), 1) << "the system may end the process before the other returns";
    EXPECT_EQ(hotkeyLibrary().stop.calls, 1);
    EXPECT_EQ(theApp.m_pMainWnd.load(), nullptr) << "which is what the message loop ends on";
    m_plugin->exports[instr::SelectItemId].pumps = FALSE;
    end();
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 2);
    EXPECT_EQ(idle.count(instr::FinalizeHotkeyDllId), 1) << "once";
    EXPECT_FALSE(idle.heldByOthers());
    expectNothingLeft(m_windows);
}

TEST_F(StartTest, TwoLivesInARowAreAlike) {
    ASSERT_TRUE(start());
    end();
    ::UnregisterClassW(kStripClass, theApp.m_hInstance);
    ASSERT_TRUE(start());
    EXPECT_TRUE(errors().empty());
    end();
    expectNothingLeft(m_windows);
}

TEST(ExitBeforeStart, ReleasesNothingAndDoesNotCrash) {
    siblings::reset();
    ZelMainSeam::exitInstance();
    EXPECT_EQ(siblings::control(L"ZelMain.dll").stop.calls, 0);
}

// No window of that class can be created.
class RefuseWindow {
 public:
    RefuseWindow() : m_hHook(::SetWindowsHookExW(WH_CBT, &RefuseWindow::hook, nullptr, ::GetCurrentThreadId())) {}

 private:
    static LRESULT CALLBACK hook(int code, WPARAM wParam, LPARAM lParam) {
        wchar_t name[32] = {};
        ::GetClassNameW(reinterpret_cast<HWND>(wParam), name, 32);
        if (code == HCBT_CREATEWND && ::lstrcmpW(name, kFrameClass) == 0) {
            return 1;
        }
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }
    common::UniqueHook m_hHook;
};

struct Fatal {
    const char* step;
    void (*arrange)();
    const wchar_t* line;  // the last error before InitInstance's own; null: none is expected
    LONG stopped;         // how often the hotkey library was stopped in the end, if it was bound
    bool refuseFrame = false;
};
void PrintTo(const Fatal& fatal, std::ostream* out) {
    *out << fatal.step;
}
class FatalFailure : public StartTest, public testing::WithParamInterface<Fatal> {};

TEST_P(FatalFailure, EndsTheStartAndLeavesNothing) {
    GetParam().arrange();
    {
        const std::unique_ptr<RefuseWindow> refuse(GetParam().refuseFrame ? new RefuseWindow : nullptr);
        ASSERT_FALSE(start());
    }
    const std::vector<std::wstring> lines = m_log.lines();
    ASSERT_GE(errors().size(), 1U);
    EXPECT_EQ(errors().back(), L"[ERR] (CZelMainApp::InitInstance): Error Code: 0x0");
    EXPECT_EQ(lines.back(), L"[TRC] (CZelMainApp::InitInstance): LEAVE CZelMainApp::InitInstance");
    if (GetParam().line != nullptr) {
        ASSERT_GE(errors().size(), 2U);
        EXPECT_EQ(errors()[errors().size() - 2], GetParam().line);
    }
    end();
    expectNothingLeft(m_windows);
    EXPECT_EQ(hotkeyLibrary().stop.calls, GetParam().stopped);
}

constexpr wchar_t kStartFailed[] = L"[ERR] (CHotkeyEventHandler::startHotkeyEventLoop): Error Code: 0x80004005";

INSTANTIATE_TEST_SUITE_P(
    Steps, FatalFailure,
    testing::Values(
        Fatal{"no CardArt.dll", [] { siblings::remove(L"CardArt.dll"); }, nullptr, 0},
        Fatal{"no ZelMain.dll", [] { siblings::remove(L"ZelMain.dll"); }, kStartFailed, 0},
        Fatal{"no Start", [] { siblings::withoutExport(L"ZelMain.dll", L"Start"); }, kStartFailed, 0},
        Fatal{"no EnableHotkey", [] { siblings::withoutExport(L"ZelMain.dll", L"EnableHotkey"); }, kStartFailed, 0},
        Fatal{"Start fails", [] { siblings::control(L"ZelMain.dll").start.result = 7; }, kStartFailed, 1},
        Fatal{"EnableHotkey fails", [] { siblings::control(L"ZelMain.dll").enableHotkey.result = -1; }, kStartFailed,
              1},
        Fatal{"no frame", [] {}, L"[ERR] (CZelMainApp::createSysMsgHandlerFrame): Error Code: 0x80004005", 1, true},
        Fatal{"no function list", [] { support::RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey); },
              nullptr, 1}));

TEST_F(StartTest, EmptyFunctionListRunsWithoutCards) {
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList, L"");
    ASSERT_TRUE(start());
    EXPECT_EQ(ZelMainSeam::strip()->cardCount(), 0);
    EXPECT_EQ(theApp.getPngRatio(), 1.0);
}

TEST_F(StartTest, EventsAfterTheEndAreRefused) {
    ASSERT_TRUE(start());
    end();
    m_log.clear();
    HotkeyEventSeam::hotkey(kMuteKey, 0);
    HotkeyEventSeam::config(8);
    EXPECT_EQ(ZelMainSeam::hideForPrintScreen(), 0);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::handleHotkey): Error Code: 0x80004005"));
    EXPECT_TRUE(logged(L"[ERR] (CHotkeyEventHandler::_changeConfigNotify): ASSERT( NULL != theApp.m_pMainWnd )"));
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::hideQrdWhenPrtsc): Error Code: 0x80004005"));
}

}  // namespace
