// The hidden frame: every message that it handles, and those that it leaves to the default.
#include <windows.h>

#include <wtsapi32.h>

#include "AppFixture.h"

namespace {

using namespace apptest;

class FrameTest : public ShellTest {
 protected:
    FrameTest() {
        addThreeCards();
        m_hFrame = makeFrame();
    }
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::SendMessageW(m_hFrame, message, wParam, lParam);
    }
    // The requests to the application, in order.
    [[nodiscard]] std::vector<std::wstring> actions() const {
        return entered({L"CZelMainApp::showMainDlg", L"CZelMainApp::refreshCards", L"CZelMainApp::_cancelFnSticky"});
    }
    // The strip was hidden and a latched modifier cancelled, and nothing else happened.
    void expectHidden(bool cancelled = true) const {
        EXPECT_FALSE(stripShown());
        std::vector<std::wstring> wanted{L"CZelMainApp::showMainDlg"};
        if (cancelled) {
            wanted.emplace_back(L"CZelMainApp::_cancelFnSticky");
        }
        EXPECT_EQ(actions(), wanted);
    }
    void expectNothing() const {
        EXPECT_TRUE(stripShown());
        EXPECT_TRUE(actions().empty());
    }
    void expectLaidOut() const {
        EXPECT_FALSE(stripShown());
        EXPECT_EQ(actions(), (std::vector<std::wstring>{L"CZelMainApp::refreshCards", L"CZelMainApp::showMainDlg",
                                                        L"CZelMainApp::_cancelFnSticky"}));
        EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 0) << "the cards are not built anew";
    }
    void showForTest() {
        showStrip();
        m_log.clear();
    }

    HWND m_hFrame = nullptr;
};

TEST_F(FrameTest, ReloadMessageReadsTheConfigurationAndLaysOut) {
    setConfig(L"AutoHideDelayTime", 1234);
    setConfig(L"Position", 1);
    showForTest();
    send(WM_USER + 100);
    EXPECT_EQ(config().uAutoHideDelayTime, 1234U);
    expectLaidOut();
    RECT area{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    EXPECT_EQ(windowRect(stripWindow()).bottom, area.bottom);
}

TEST_F(FrameTest, SecondStartFlashesTheStripForHalfASecond) {
    ZelMainSeam::mouseOperating() = TRUE;
    send(WM_USER + 102);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(system_double::timer(m_hFrame, 100), 500U);
    EXPECT_TRUE(ZelMainSeam::mouseOperating());
    EXPECT_EQ(entered({L"CSysMsgHandlerFrame::"}), std::vector<std::wstring>{L"CSysMsgHandlerFrame::flashMainDlg"});
    EXPECT_EQ(actions(), (std::vector<std::wstring>{L"CZelMainApp::showMainDlg", L"CZelMainApp::_cancelFnSticky",
                                                    L"CZelMainApp::showMainDlg"}));
    m_log.clear();
    EXPECT_TRUE(pumpUntil([this] { return !stripShown(); }, 3000));
    EXPECT_FALSE(ZelMainSeam::mouseOperating());
    EXPECT_EQ(system_double::timer(m_hFrame, 100), 0U);
    expectHidden();
}

TEST_F(FrameTest, SecondFlashStartsTheHalfSecondAgain) {
    send(WM_USER + 102);
    const ULONGLONG first = ::GetTickCount64();
    static_cast<void>(pumpUntil([&] { return ::GetTickCount64() - first >= 300; }));
    ASSERT_TRUE(stripShown());
    send(WM_USER + 102);
    const ULONGLONG second = ::GetTickCount64();
    EXPECT_TRUE(pumpUntil([this] { return !stripShown(); }, 3000));
    EXPECT_GE(::GetTickCount64() - second, 450U);
}

TEST_F(FrameTest, SecondStartWithShowAtLaunchTogglesTheStripAndAnswersWithTheStatus) {
    config().bShowQrdAtLaunch = 1;
    EXPECT_EQ(send(WM_USER + 102), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(system_double::timer(stripWindow(), 10), 5000U);
    EXPECT_EQ(system_double::timer(m_hFrame, 100), 0U);
    EXPECT_EQ(send(WM_USER + 102), S_OK);
    EXPECT_FALSE(stripShown());
    ZelMainSeam::hoverStrip().reset();
    EXPECT_EQ(static_cast<HRESULT>(send(WM_USER + 102)), E_FAIL);
}

TEST_F(FrameTest, HideMessageCancelsTheLatchOnlyWithOne) {
    showForTest();
    send(WM_USER + 104, 1);
    expectHidden();
    showForTest();
    send(WM_USER + 104, 0);
    expectHidden(false);
    showForTest();
    send(WM_USER + 104, 2);
    expectHidden(false);
}

TEST_F(FrameTest, DisplayChangeLaysOut) {
    showForTest();
    system_double::state().workArea = RECT{0, 0, 640, 480};
    send(WM_DISPLAYCHANGE, 32, MAKELPARAM(640, 480));
    expectLaidOut();
    EXPECT_EQ(windowRect(stripWindow()), geometry::cardStrip({0, 0, 640, 480}, 3, 1.0, false).place);
    EXPECT_EQ(entered({L"CSysMsgHandlerFrame::"}), std::vector<std::wstring>{L"CSysMsgHandlerFrame::OnDisplayChange"});
}

TEST_F(FrameTest, ResumeHidesTheStrip) {
    showForTest();
    send(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND);
    expectHidden();
    EXPECT_EQ(entered({L"CSysMsgHandlerFrame::"}), std::vector<std::wstring>{L"CSysMsgHandlerFrame::OnResume"});
}

TEST_F(FrameTest, OtherPowerEventsDoNothing) {
    showForTest();
    for (const int event : {PBT_APMSUSPEND, PBT_APMRESUMECRITICAL, PBT_APMPOWERSTATUSCHANGE, PBT_APMRESUMEAUTOMATIC}) {
        send(WM_POWERBROADCAST, static_cast<WPARAM>(event));
    }
    expectNothing();
}

TEST_F(FrameTest, ConsoleConnectAndDisconnectHideTheStrip) {
    for (const int change : {WTS_CONSOLE_CONNECT, WTS_CONSOLE_DISCONNECT}) {
        showForTest();
        send(WM_WTSSESSION_CHANGE, static_cast<WPARAM>(change));
        expectHidden();
        EXPECT_EQ(entered({L"CSysMsgHandlerFrame::"}),
                  std::vector<std::wstring>{L"CSysMsgHandlerFrame::OnSessionConnect"});
    }
}

TEST_F(FrameTest, UnlockingHidesTheStrip) {
    showForTest();
    send(WM_WTSSESSION_CHANGE, WTS_SESSION_UNLOCK);
    expectHidden();
    EXPECT_EQ(entered({L"CSysMsgHandlerFrame::"}), std::vector<std::wstring>{L"CSysMsgHandlerFrame::OnSessionUnlock"});
}

TEST_F(FrameTest, OtherSessionChangesDoNothing) {
    showForTest();
    for (const int change : {0, 3, 4, 5, 6, 7, 9, 11}) {
        send(WM_WTSSESSION_CHANGE, static_cast<WPARAM>(change));
    }
    expectNothing();
}

TEST_F(FrameTest, WorkAreaChangeLaysOut) {
    showForTest();
    send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
    expectLaidOut();
    EXPECT_TRUE(logged(L"[INF] (CSysMsgHandlerFrame::OnSettingChange): Workarea change event."));
}

TEST_F(FrameTest, OtherSettingsDoNothing) {
    showForTest();
    send(WM_SETTINGCHANGE, 0);
    send(WM_SETTINGCHANGE, SPI_SETDESKWALLPAPER);
    expectNothing();
}

const UINT kHbqNotify = ::RegisterWindowMessageW(L"KESTOVA_HBQ_NOTIFY_5B0C7D2A-3E41-4F8B-9A16-2C7E0D94B1F3");
constexpr wchar_t kCustomised[] =
    L"[INF] (CSysMsgHandlerFrame::WindowProc): Refersh the fenwyn because hotkey is customized.";

TEST_F(FrameTest, CustomisedKeysRebuildTheCards) {
    config().bProgrammable = 1;
    listFunction(L"Mute", {kMuteKey});
    listFunction(L"Lock", {kLockKey});
    customise(kMuteKey, L"C:\\no\\such.exe");
    showForTest();
    EXPECT_EQ(send(kHbqNotify), S_OK);
    EXPECT_EQ(strip().cardCount(), 1);
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(logged(kCustomised));
}

TEST_F(FrameTest, CustomisedKeysThatCannotBeReadAreTheMessagesAnswer) {
    config().bProgrammable = 1;
    EXPECT_EQ(static_cast<HRESULT>(send(kHbqNotify)), E_FAIL) << "the button utility has no keys";
    EXPECT_EQ(strip().cardCount(), 3);
}

TEST_F(FrameTest, CustomisedKeysAreIgnoredUnlessProgrammable) {
    customise(kMuteKey, L"C:\\no\\such.exe");
    listFunction(L"Lock", {kLockKey});
    showForTest();
    EXPECT_EQ(send(kHbqNotify), 0);
    expectNothing();
    EXPECT_FALSE(logged(kCustomised));
    EXPECT_EQ(strip().cardCount(), 3);
}

TEST_F(FrameTest, SystemCommandsAreSwallowed) {
    showForTest();
    for (const int command : {SC_CLOSE, SC_RESTORE, SC_MAXIMIZE, SC_MINIMIZE, SC_MOVE}) {
        EXPECT_EQ(send(WM_SYSCOMMAND, static_cast<WPARAM>(command)), 0);
    }
    pump();
    EXPECT_TRUE(::IsWindow(m_hFrame));
    EXPECT_FALSE(shown(m_hFrame));
    EXPECT_FALSE(::IsZoomed(m_hFrame));
    EXPECT_FALSE(::IsIconic(m_hFrame));
    expectNothing();
}

TEST_F(FrameTest, EverythingElseGoesToTheDefault) {
    wchar_t title[32] = {};
    EXPECT_EQ(send(WM_GETTEXT, 32, reinterpret_cast<LPARAM>(title)), 14);
    EXPECT_STREQ(title, kFrameTitle);
    EXPECT_EQ(send(WM_USER + 101), 0) << "not the frame's";
    EXPECT_EQ(send(WM_USER + 103), 0);
    EXPECT_EQ(send(WM_QUERYENDSESSION), TRUE);
    EXPECT_TRUE(actions().empty());
}

TEST_F(FrameTest, MessagesWithoutStripsAreLoggedOnly) {
    ZelMainSeam::hoverStrip().reset();
    ZelMainSeam::strip().reset();
    for (const UINT message : {WM_USER + 100U, WM_USER + 102U, WM_USER + 104U, UINT{WM_DISPLAYCHANGE}}) {
        send(message);
    }
    send(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND);
    EXPECT_GE(errors().size(), 5U);
}

}  // namespace
