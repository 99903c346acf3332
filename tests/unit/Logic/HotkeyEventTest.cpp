// Events of the hotkey library: key events, changes of the configuration, and the latched modifier.
#include "AppFixture.h"

namespace {

using namespace apptest;
using HotkeyEvents = ShellTest;

constexpr UINT kHotkeyMessage = WM_USER + 101;

std::vector<MSG> waiting(HWND window, UINT message) {
    std::vector<MSG> found;
    for (MSG next{}; ::PeekMessageW(&next, window, message, message, PM_REMOVE) != FALSE;) {
        found.push_back(next);
    }
    return found;
}

TEST_F(HotkeyEvents, ArePostedInOrderAndNeverSent) {
    HotkeyEventSeam::hotkey(0x3B, 0);
    HotkeyEventSeam::hotkey(0x3B, 1);
    EXPECT_FALSE(logged(L"[TRC] (CZelMainDlg::handleHotkey): ENTER CZelMainDlg::handleHotkey"));
    const std::vector<MSG> posted = waiting(stripWindow(), kHotkeyMessage);
    ASSERT_EQ(posted.size(), 2U);
    EXPECT_EQ(posted[0].wParam, 0x3BU);
    EXPECT_EQ(posted[0].lParam, 0);
    EXPECT_EQ(posted[1].wParam, 0x3BU);
    EXPECT_EQ(posted[1].lParam, 1);
}

TEST_F(HotkeyEvents, AreLoggedOneByOne) {
    HotkeyEventSeam::hotkey(0x3B, 0);
    HotkeyEventSeam::hotkey(0, 1);
    const std::vector<std::wstring> wanted{
        L"[INF] (CHotkeyEventHandler::_hotkeyNotify): Get hotkey code:0x3b, modifier:0x0",
        L"[INF] (CZelMainApp::handleHotkey): Get make code of hotkey:0x3b",
        L"[INF] (CZelMainApp::cancelScreenSaver): Screensaver is not running.",
        L"[INF] (CHotkeyEventHandler::_hotkeyNotify): Get hotkey code:0x0, modifier:0x1",
        L"[INF] (CZelMainApp::handleHotkey): Get break code of hotkey:0x0",
        L"[INF] (CZelMainApp::cancelScreenSaver): Screensaver is not running."};
    EXPECT_EQ(m_log.lines(), wanted);
}

TEST_F(HotkeyEvents, OfAnUnknownKindAreDroppedWithAnAssertion) {
    for (const DWORD modifier : {2U, 0x80U, 0xFFFFFFFFU}) {
        m_log.clear();
        HotkeyEventSeam::hotkey(0x3B, modifier);
        EXPECT_EQ(errors(),
                  std::vector<std::wstring>{
                      L"[ERR] (CHotkeyEventHandler::_hotkeyNotify): ASSERT( !\"Wrong hotkey make/break status.\" )"});
        EXPECT_EQ(m_log.lines().size(), 2U);
    }
    EXPECT_TRUE(waiting(stripWindow(), kHotkeyMessage).empty());
    EXPECT_TRUE(system_double::state().executionStates.empty());
}

TEST_F(HotkeyEvents, AreDroppedWithoutALineWhenDisabled) {
    config().bDisable = 1;
    HotkeyEventSeam::hotkey(0x3B, 0);
    EXPECT_EQ(m_log.lines(), std::vector<std::wstring>{
                                 L"[INF] (CHotkeyEventHandler::_hotkeyNotify): Get hotkey code:0x3b, modifier:0x0"});
    EXPECT_TRUE(waiting(stripWindow(), kHotkeyMessage).empty());
    EXPECT_TRUE(system_double::state().executionStates.empty());
}

TEST_F(HotkeyEvents, WithoutAStripFail) {
    ZelMainSeam::stripWnd() = nullptr;
    EXPECT_EQ(theApp.handleHotkey(0x3B, FALSE), E_FAIL);
    ZelMainSeam::stripWnd() = stripWindow();
    ::DestroyWindow(stripWindow());
    EXPECT_EQ(theApp.handleHotkey(0x3B, FALSE), E_FAIL);
    EXPECT_EQ(timesLogged(L"[ERR] (CZelMainApp::handleHotkey): Error Code: 0x80004005"), 2U);
    EXPECT_TRUE(system_double::state().executionStates.empty());
}

TEST_F(HotkeyEvents, WakeTheDisplayAndInjectNothingWithoutAScreenSaver) {
    EXPECT_EQ(theApp.handleHotkey(0x3B, FALSE), S_OK);
    EXPECT_EQ(system_double::state().executionStates, std::vector<EXECUTION_STATE>{ES_DISPLAY_REQUIRED});
    EXPECT_TRUE(system_double::state().inputs.empty());
}

TEST_F(HotkeyEvents, EndAScreenSaverWithAClickThatDoesNotMoveThePointer) {
    system_double::state().screenSaver = true;
    EXPECT_EQ(theApp.handleHotkey(0x3B, FALSE), S_OK);
    ASSERT_EQ(system_double::state().inputs.size(), 1U);
    const std::vector<INPUT>& click = system_double::state().inputs[0];
    ASSERT_EQ(click.size(), 2U);
    EXPECT_EQ(click[0].mi.dwFlags, 0x8020U);
    EXPECT_EQ(click[1].mi.dwFlags, 0x8040U);
    for (const INPUT& part : click) {
        EXPECT_EQ(part.type, static_cast<DWORD>(INPUT_MOUSE));
        EXPECT_EQ(part.mi.dx, 0);
        EXPECT_EQ(part.mi.dy, 0);
    }
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::cancelScreenSaver): Screensaver is  running."));
    EXPECT_EQ(waiting(stripWindow(), kHotkeyMessage).size(), 1U);
}

TEST_F(HotkeyEvents, FromAThreadOfTheLibraryReachTheStrip) {
    const common::UniqueHandle library(::CreateThread(
        nullptr, 0,
        [](void*) -> DWORD {
            HotkeyEventSeam::hotkey(kModifier, 0);
            HotkeyEventSeam::hotkey(kModifier, 1);
            return 0;
        },
        nullptr, 0, nullptr));
    EXPECT_EQ(::WaitForSingleObject(library.get(), 5000), WAIT_OBJECT_0) << "nothing waits for the windows' thread";
    EXPECT_EQ(waiting(stripWindow(), kHotkeyMessage).size(), 2U);
}

struct Notification {
    DWORD code;
    UINT message;  // 0: none
};
class ConfigNotification : public ShellTest, public testing::WithParamInterface<Notification> {};

TEST_P(ConfigNotification, PostsWhatItsCodeMeans) {
    const HWND frame = makeFrame();
    HotkeyEventSeam::config(GetParam().code);
    const auto posted = [frame](UINT message) { return waiting(frame, message).size(); };
    EXPECT_EQ(posted(WM_USER + 100), GetParam().message == WM_USER + 100 ? 1U : 0U);
    EXPECT_EQ(posted(WM_CLOSE), GetParam().message == WM_CLOSE ? 1U : 0U);
    EXPECT_EQ(
        m_log.lines(),
        (std::vector<std::wstring>{
            L"[TRC] (CHotkeyEventHandler::_changeConfigNotify): ENTER CHotkeyEventHandler::_changeConfigNotify",
            L"[TRC] (CHotkeyEventHandler::_changeConfigNotify): LEAVE CHotkeyEventHandler::_changeConfigNotify"}));
}

INSTANTIATE_TEST_SUITE_P(Codes, ConfigNotification,
                         testing::Values(Notification{8, WM_USER + 100}, Notification{0x40000000U, WM_USER + 100},
                                         Notification{0x80000000U, WM_CLOSE}, Notification{0, 0}, Notification{9, 0},
                                         Notification{0x80000008U, 0}, Notification{0xFFFFFFFFU, 0}));

TEST_F(HotkeyEvents, LatchIsPostedToTheStripAndNeedsNoFrame) {
    HotkeyEventSeam::config(0x10);
    HotkeyEventSeam::config(0x11);
    EXPECT_EQ(waiting(stripWindow(), kMsgLatch).size(), 2U);
    ZelMainSeam::stripWnd() = nullptr;
    HotkeyEventSeam::config(0x10);
    EXPECT_TRUE(errors().empty());
}

TEST_F(HotkeyEvents, ConfigurationChangeBeforeTheFrameIsAnAssertion) {
    HotkeyEventSeam::config(8);
    EXPECT_EQ(errors(), std::vector<std::wstring>{
                            L"[ERR] (CHotkeyEventHandler::_changeConfigNotify): ASSERT( NULL != theApp.m_pMainWnd )"});
    EXPECT_EQ(m_log.lines().back(),
              L"[TRC] (CHotkeyEventHandler::_changeConfigNotify): LEAVE CHotkeyEventHandler::_changeConfigNotify");
}

const UINT kCancelSticky = ::RegisterWindowMessageW(L"KESTOVA Fenwyn-WM_CANCEL_STICKY");

TEST_F(HotkeyEvents, LatchedModifierIsCancelledThroughTheUtilitysWindow) {
    const MessageCounter utility(L"Dravik", L"Dravik Window", kCancelSticky);
    EXPECT_EQ(ZelMainSeam::cancelFnSticky(), S_OK);
    EXPECT_EQ(utility.count(), 0) << "posted, not sent";
    pump();
    ASSERT_EQ(utility.count(), 1);
    EXPECT_EQ(utility.messages()[0].wParam, 0U);
    EXPECT_EQ(utility.messages()[0].lParam, 0);
}

TEST_F(HotkeyEvents, LatchedModifierStaysWhenTheModifierIsIgnored) {
    const MessageCounter utility(L"Dravik", L"Dravik Window", kCancelSticky);
    config().bIgnoreFnKey = 1;
    EXPECT_EQ(ZelMainSeam::cancelFnSticky(), S_OK);
    pump();
    EXPECT_EQ(utility.count(), 0);
}

TEST_F(HotkeyEvents, MissingUtilityIsLogged) {
    EXPECT_EQ(ZelMainSeam::cancelFnSticky(), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainApp::_cancelFnSticky): Error Code: 0x80004003"});
}

TEST_F(HotkeyEvents, OnlyHidingWithTheFlagCancelsALatchedModifier) {
    const MessageCounter utility(L"Dravik", L"Dravik Window", kCancelSticky);
    EXPECT_EQ(theApp.showMainDlg(TRUE, TRUE), S_OK);
    EXPECT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    pump();
    EXPECT_EQ(utility.count(), 0);
    EXPECT_EQ(theApp.showMainDlg(FALSE, TRUE), S_OK);
    pump();
    EXPECT_EQ(utility.count(), 1);
}

}  // namespace
