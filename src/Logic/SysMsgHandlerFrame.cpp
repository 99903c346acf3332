#include "Logic/SysMsgHandlerFrame.h"

#include <wtsapi32.h>

#include "Data/ZelConfig.h"
#include "Logic/Faults/HangWatch.h"
#include "Logic/HbqNotify.h"
#include "Messages.h"
#include "ZelMain.h"
#include "common/Status.h"
#include "common/SystemLoops.h"

namespace {

constexpr WPARAM kSettingWorkArea = SPI_SETWORKAREA;

}  // namespace

const MessageMap& CSysMsgHandlerFrame::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CSysMsgHandlerFrame::OnReloadConfig>(kMsgReloadConfig),
        onMessage<&CSysMsgHandlerFrame::OnSecondInstance>(kMsgSecondInstance),
        onMessage<&CSysMsgHandlerFrame::OnHideStrip>(kMsgHideStrip),
        onEvent<&CSysMsgHandlerFrame::OnAlive>(kMsgAlive),
        onEvent<&CSysMsgHandlerFrame::OnDisplayChange>(WM_DISPLAYCHANGE),
        onMessage<&CSysMsgHandlerFrame::OnPowerBroadcast>(WM_POWERBROADCAST),
        onMessage<&CSysMsgHandlerFrame::OnSessionChange>(WM_WTSSESSION_CHANGE),
        onMessage<&CSysMsgHandlerFrame::OnSettingChange>(WM_SETTINGCHANGE),
        onMessage<&CSysMsgHandlerFrame::OnColoursChanged>(WM_SYSCOLORCHANGE),
        onMessage<&CSysMsgHandlerFrame::OnColoursChanged>(WM_THEMECHANGED),
        onMessage<&CSysMsgHandlerFrame::OnEndSession>(WM_ENDSESSION),
        onTimer<&CSysMsgHandlerFrame::OnTimer>(),
    };
    static const MessageMap kMap{&CFrameWnd::messageMap(), kEntries};
    return kMap;
}

bool CSysMsgHandlerFrame::Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place,
                                 HWND parent) {
    if (!CFrameWnd::Create(className, title, style, place, parent)) {
        return false;
    }
    ::WTSRegisterSessionNotification(m_hWnd, NOTIFY_FOR_THIS_SESSION);
    return true;
}

bool CSysMsgHandlerFrame::DestroyWindow() {
    LOG_ENTER_LEAVE();
    ::WTSUnRegisterSessionNotification(m_hWnd);
    return CFrameWnd::DestroyWindow();
}

// The registered message of the button utility is not in the table: its number is known only at run time (0 if the
// system refused one), and it counts only while keys may be customised.
LRESULT CSysMsgHandlerFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != 0 && message == hbqNotifyMessage() && CZelConfig::getQrdConfig().bProgrammable) {
        LOG_INFO(L"Refersh the fenwyn because hotkey is customized.");
        return theApp.refreshCards(TRUE);
    }
    // The hidden frame cannot be closed, moved or shown through system commands.
    return common::startsSystemLoop(message, wParam) ? 0 : CFrameWnd::WindowProc(message, wParam, lParam);
}

LRESULT CSysMsgHandlerFrame::OnReloadConfig(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    // The sender expects no answer, and failures are in the log.
    static_cast<void>(CZelConfig::_initQrdConfig(CZelConfig::getQrdConfig()));
    CZelMainApp::settingsRead();
    static_cast<void>(theApp.refreshCards(FALSE));
    return Default();
}

LRESULT CSysMsgHandlerFrame::OnSecondInstance(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (CZelConfig::getQrdConfig().bShowQrdAtLaunch) {
        return theApp.showMainDlgAlt();
    }
    flashMainDlg();
    return Default();
}

LRESULT CSysMsgHandlerFrame::OnHideStrip(WPARAM wParam, LPARAM /*lParam*/) {
    static_cast<void>(theApp.showMainDlg(FALSE, wParam == 1));
    return Default();
}

// Not logged: it comes several times a second while plug-ins are called.
void CSysMsgHandlerFrame::OnAlive() {
    faults::noteAnswer();
}

void CSysMsgHandlerFrame::OnDisplayChange() {
    LOG_ENTER_LEAVE();
    static_cast<void>(theApp.refreshCards(FALSE));
    Default();
}

LRESULT CSysMsgHandlerFrame::OnPowerBroadcast(WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam == PBT_APMRESUMESUSPEND) {
        OnResume();
    }
    return Default();
}

LRESULT CSysMsgHandlerFrame::OnSessionChange(WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam == WTS_CONSOLE_CONNECT || wParam == WTS_CONSOLE_DISCONNECT) {
        OnSessionConnect();
    } else if (wParam == WTS_SESSION_UNLOCK) {
        OnSessionUnlock();
    }
    return Default();
}

LRESULT CSysMsgHandlerFrame::OnSettingChange(WPARAM wParam, LPARAM /*lParam*/) {
    const LRESULT result = Default();
    if (wParam == SPI_SETHIGHCONTRAST) {
        CZelMainApp::renewContrast();
    }
    if (wParam == kSettingWorkArea) {
        LOG_INFO(L"Workarea change event.");
        static_cast<void>(theApp.refreshCards(FALSE));
    }
    return result;
}

LRESULT CSysMsgHandlerFrame::OnColoursChanged(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    CZelMainApp::renewContrast();
    return Default();
}

// The preceding query, WM_QUERYENDSESSION, is accepted by default. After the answer to this message the system may end
// the process at any time; the frame itself is destroyed when endSession() returns.
LRESULT CSysMsgHandlerFrame::OnEndSession(WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != FALSE) {
        theApp.endSession();
    }
    return 0;
}

void CSysMsgHandlerFrame::OnResume() {
    LOG_ENTER_LEAVE();
    static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
}

void CSysMsgHandlerFrame::OnSessionConnect() {
    LOG_ENTER_LEAVE();
    static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
}

void CSysMsgHandlerFrame::OnSessionUnlock() {
    LOG_ENTER_LEAVE();
    static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
}

// Shows the strip for half a second; a second flash restarts that time.
void CSysMsgHandlerFrame::flashMainDlg() {
    LOG_ENTER_LEAVE();
    static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    static_cast<void>(theApp.showMainDlg(TRUE, TRUE));
    ::SetTimer(m_hWnd, kTimerFlash, kFlashMs, nullptr);
}

void CSysMsgHandlerFrame::OnTimer(UINT_PTR uId) {
    if (uId != kTimerFlash) {
        Default();
        return;
    }
    ::KillTimer(m_hWnd, kTimerFlash);
    theApp.mouseOperating() = FALSE;
    static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
}
