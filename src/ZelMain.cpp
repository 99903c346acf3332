#include "ZelMain.h"

#include <utility>

#include "Data/ZelConfig.h"
#include "FaultCare.h"
#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/HangWatch.h"
#include "Logic/Faults/Succession.h"
#include "Logic/FullScreen.h"
#include "Logic/HbqNotify.h"
#include "Logic/HotkeyEventHandler.h"
#include "Logic/SysMsgHandlerFrame.h"
#include "Messages.h"
#include "UI/CardsInUse.h"
#include "UI/ZelHideDlg.h"
#include "UI/ZelMainDlg.h"
#include "common/Contrast.h"
#include "common/ObjectSecurity.h"
#include "common/SiblingLibrary.h"
#include "common/Status.h"
#include "common/SystemLoops.h"
#include "common/TryMake.h"
#include "companions/hotkey/include/ZelHotkey.h"
#include "companions/prtscreen/include/PrtHook.h"

CZelMainApp theApp;

namespace {

constexpr wchar_t kMutexName[] = L"_ZelMain_Mutex_";
constexpr wchar_t kImageLibrary[] = L"CardArt.dll";
constexpr DWORD kSecondLookMs = 200;     // the other instance may just be starting or ending
constexpr UINT kSignalTimeoutMs = 5000;  // the caller must not hang with a user interface that hangs

BOOL CALLBACK drawAgain(HWND hWnd, LPARAM /*lParam*/) {
    ::RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    return TRUE;
}

}  // namespace

// The button utility's message is registered before anything else runs, so that its number is the same everywhere.
CZelMainApp::CZelMainApp() {
    static_cast<void>(hbqNotifyMessage());
}

CZelMainApp::~CZelMainApp() = default;

bool CZelMainApp::InitInstance() {
    LOG_ENTER_LEAVE();
    m_bEnded = false;
    // Nothing is undone here after a failure: ExitInstance follows and handles every partially initialised state.
    if (!CWinApp::InitInstance() || FAILED(common::statusOf([this] { return _startServices(); })) ||
        FAILED(common::statusOf([this] { return _createStrips(); }))) {
        LOG_STATUS(0);
        return false;
    }
    settingsRead();
    renewContrast();
    // "/hide" hides the cards; any other command line shows them even if the configuration says otherwise.
    BOOL show = CZelConfig::getQrdConfig().bShowQrdAtLaunch != 0;
    if (m_lpCmdLine[0] != L'\0') {
        LOG_TRACE(L"%s = %s", L"m_lpCmdLine", m_lpCmdLine);
        show = !faults::isSwitch(m_lpCmdLine, faults::kQuietSwitch);
    }
    static_cast<void>(showMainDlg(show, FALSE));
    // Cards below other windows are better than none.
    static_cast<void>(_makeTopmost());
    return true;
}

HRESULT CZelMainApp::_startServices() {
    CHotkeyEventHandler::cancelHotkeyIOEvent();
    HRESULT status = checkMultiInstance();
    if (FAILED(status)) {
        return status;
    }
    static_cast<void>(m_gdiplus.start());
    m_hPngDll = loadSibling(kImageLibrary);
    if (!m_hPngDll) {
        return E_FAIL;
    }
    // Without the hook, the user's screenshots contain the cards; that is no reason not to start.
    static_cast<void>(installPrtscHook());
    status = CHotkeyEventHandler::startHotkeyEventLoop();
    if (FAILED(status)) {
        return status;
    }
    status = createSysMsgHandlerFrame();
    if (FAILED(status)) {
        return status;
    }
    static_cast<void>(_setWndClsName());  // without its class, creating the strip fails later
    return S_OK;
}

HRESULT CZelMainApp::_createStrips() {
    m_pZelMainDlg = common::tryMake<CZelMainDlg>();
    if (m_pZelMainDlg == nullptr) {
        return E_POINTER;
    }
    const HRESULT status = m_pZelMainDlg->initialize();
    if (FAILED(status)) {
        return status;
    }
    if (m_pZelMainDlg->Create(nullptr)) {
        m_pZelMainDlg->show(false);
        m_hStripWnd = m_pZelMainDlg->m_hWnd;
    }
    m_pZelHideDlg = common::tryMake<CZelHideDlg>(m_pZelMainDlg->cardCount());
    if (m_pZelHideDlg == nullptr) {
        return E_POINTER;
    }
    m_pZelHideDlg->Create(nullptr);
    return S_OK;
}

HRESULT CZelMainApp::checkMultiInstance() {
    LOG_ENTER_LEAVE();
    bool exists = false;
    RETURN_IF_FAILED(_claimMutex(exists));
    if (!exists) {
        return S_OK;
    }
    LOG_INFO(L"Mutex already exists.");
    m_hMutex.reset();
    ::Sleep(kSecondLookMs);
    const HWND frame = ::FindWindowW(kFrameClass, kFrameTitle);
    if (::IsWindow(frame)) {
        _signalFirstInstance(frame);
        return E_FAIL;
    }
    // The other instance is still starting, or is ending.
    RETURN_IF_FAILED(_claimMutex(exists));
    if (!exists) {
        return S_OK;
    }
    LOG_INFO(L"Mutex really exists.");
    m_hMutex.reset();
    return E_FAIL;
}

HRESULT CZelMainApp::_claimMutex(bool& rbExists) {
    ::SetLastError(ERROR_SUCCESS);
    const HANDLE mutex = ::CreateMutexW(common::OnlyForTheUser().get(), FALSE, kMutexName);
    rbExists = ::GetLastError() == ERROR_ALREADY_EXISTS;
    m_hMutex.reset(mutex);
    return m_hMutex ? S_OK : E_POINTER;
}

// The first instance shows or flashes its cards; this one ends in any case.
void CZelMainApp::_signalFirstInstance(HWND hFrame) {
    DWORD_PTR answer = 0;
    ::SendMessageTimeoutW(hFrame, kMsgSecondInstance, 0, 0, SMTO_NORMAL, kSignalTimeoutMs, &answer);
    if (!CZelConfig::getQrdConfig().bHideMainUIWhenLostFocus) {
        return;
    }
    LOG_TRACE(L"Need to hide main UI when lost focus.");
    const HWND strip = ::FindWindowW(kStripClass, nullptr);
    if (!::IsWindow(strip)) {
        LOG_ASSERT(L"::IsWindow(hWndQRDMainDlg)");
    }
    if (::IsWindowVisible(strip)) {
        // With the focus the strip can hide itself when it loses it again.
        ::SetForegroundWindow(strip);
    }
}

HRESULT CZelMainApp::installPrtscHook() {
    LOG_ENTER_LEAVE();
    m_hPrtHookDll = loadSibling(PRT_HOOK_LIBRARY);
    if (!m_hPrtHookDll) {
        RETURN_LOGGED(E_POINTER);
    }
    const auto install = findExport<PrtInstallHook>(m_hPrtHookDll.get(), PRT_INSTALL_HOOK);
    if (install == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!install(&CZelMainApp::hideQrdWhenPrtsc)) {
        RETURN_LOGGED(E_FAIL);
    }
    return S_OK;
}

// The strip's window class: a copy of the system's dialog class under a name by which other programs find the strip.
HRESULT CZelMainApp::_setWndClsName() const {
    LOG_ENTER_LEAVE();
    WNDCLASSW windowClass{};
    if (!::GetClassInfoW(m_hInstance, L"#32770", &windowClass)) {
        RETURN_LOGGED(E_FAIL);
    }
    windowClass.lpszClassName = kStripClass;
    windowClass.hInstance = m_hInstance;
    if (::RegisterClassW(&windowClass) == 0) {
        RETURN_LOGGED(E_FAIL);
    }
    return S_OK;
}

HRESULT CZelMainApp::createSysMsgHandlerFrame() {
    LOG_ENTER_LEAVE();
    if (m_pFrame != nullptr && m_pFrame->isWindow()) {
        return S_OK;
    }
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = ::DefWindowProcW;
    windowClass.hInstance = m_hInstance;
    windowClass.lpszClassName = kFrameClass;
    ::RegisterClassExW(&windowClass);  // an existing class serves as well

    m_pFrame = common::tryMake<CSysMsgHandlerFrame>();
    if (m_pFrame == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!m_pFrame->Create(kFrameClass, kFrameTitle, WS_OVERLAPPEDWINDOW)) {
        RETURN_LOGGED(E_FAIL);
    }
    ::ShowWindow(m_pFrame->m_hWnd, SW_HIDE);
    m_hFrameWnd = m_pFrame->m_hWnd;
    m_pMainWnd = m_pFrame.get();
    return S_OK;
}

HMODULE CZelMainApp::getPngDll() const {
    if (!m_hPngDll) {
        LOG_ASSERT(L"m_hPngDll");
    }
    return m_hPngDll.get();
}

double CZelMainApp::getPngRatio() const {
    RETURN_UNLESS(m_pZelMainDlg != nullptr, L"m_pZelMainDlg", 1.0);
    return m_pZelMainDlg->placement().ratio;
}

const Placement& CZelMainApp::placement() const {
    return m_pZelMainDlg != nullptr ? m_pZelMainDlg->placement() : kUnplaced;
}

void CZelMainApp::renewPlacement() {
    if (m_pZelMainDlg == nullptr || m_pZelHideDlg == nullptr || m_pZelMainDlg->isVisible() ||
        m_pZelMainDlg->cardInUse() || m_pZelHideDlg->mouseIsOn() || !m_pZelMainDlg->placementIsStale()) {
        return;
    }
    static_cast<void>(m_pZelMainDlg->refreshCards(false));
    if (CZelConfig::getQrdConfig().bEnableHover) {
        static_cast<void>(m_pZelHideDlg->refresh(m_pZelMainDlg->cardCount()));
    }
}

BOOL& CZelMainApp::mouseOperating() {
    LOG_TRACE(L"%s = %d", L"m_bMouseOperating", m_bMouseOperating);
    return m_bMouseOperating;
}

bool CZelMainApp::cardsStayHidden() {
    if (!CZelConfig::getQrdConfig().bHideInFullScreen || !fullScreenProgramRuns()) {
        return false;
    }
    LOG_INFO(L"A full-screen program runs: the cards stay hidden.");
    return true;
}

HRESULT CZelMainApp::showMainDlg(BOOL bShow, BOOL bCancelSticky) {
    LOG_ENTER_LEAVE();
    if (m_pZelMainDlg == nullptr || !m_pZelMainDlg->isWindow() || m_pZelHideDlg == nullptr ||
        !m_pZelHideDlg->isWindow()) {
        RETURN_LOGGED(E_FAIL);
    }
    if (bShow) {
        if (cardsStayHidden()) {
            return S_FALSE;
        }
        renewPlacement();
        m_pZelHideDlg->show(false);
        m_pZelMainDlg->showInFront();
        return S_OK;
    }
    m_pZelMainDlg->show(false);
    m_pZelMainDlg->hideLargeCards();
    accessible::giveFocusBack();
    if (bCancelSticky) {
        static_cast<void>(_cancelFnSticky());  // the cards are hidden anyway
    }
    const QrdConfig& config = CZelConfig::getQrdConfig();
    m_pZelHideDlg->show(!config.bDisable && config.bEnableHover);
    return S_OK;
}

HRESULT CZelMainApp::showMainDlgAlt() {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(CZelConfig::getQrdConfig().bShowQrdAtLaunch, L"CZelConfig::getQrdConfig().bShowQrdAtLaunch", E_FAIL);
    if (m_pZelMainDlg == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!m_pZelMainDlg->isWindow()) {
        RETURN_LOGGED(E_FAIL);
    }
    if (m_pZelMainDlg->isVisible()) {
        return showMainDlg(FALSE, TRUE);
    }
    const HRESULT status = showMainDlg(TRUE, TRUE);
    ::SetTimer(m_pZelMainDlg->m_hWnd, kTimerLaunchHide, kLaunchHideDelayMs, nullptr);
    return status;
}

HRESULT CZelMainApp::refreshCards(BOOL bReinitialize) {
    LOG_ENTER_LEAVE();
    // Checked first: during the very first build, the cards may be in use before the hover strip exists.
    if (bReinitialize && m_pZelMainDlg != nullptr && m_pZelMainDlg->postponeRebuild()) {
        return S_FALSE;
    }
    if (m_pZelMainDlg == nullptr || m_pZelHideDlg == nullptr) {
        RETURN_LOGGED(E_FAIL);
    }
    RETURN_IF_FAILED(showMainDlg(FALSE, TRUE));
    RETURN_IF_FAILED(m_pZelMainDlg->refreshCards(bReinitialize != FALSE));
    if (CZelConfig::getQrdConfig().bEnableHover) {
        RETURN_IF_FAILED(m_pZelHideDlg->refresh(m_pZelMainDlg->cardCount()));
        RETURN_IF_FAILED(_makeTopmost());
    }
    return S_OK;
}

HRESULT CZelMainApp::_makeTopmost() const {
    const BOOL done =
        ::SetWindowPos(m_pZelMainDlg->m_hWnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return done ? S_OK : E_FAIL;
}

HRESULT CZelMainApp::handleHotkey(DWORD code, BOOL bBreak) {
    if (CZelConfig::getQrdConfig().bDisable) {
        return S_OK;
    }
    LOG_INFO(L"Get %s code of hotkey:0x%x", bBreak ? L"break" : L"make", static_cast<unsigned>(code));
    const HWND strip = m_hStripWnd;
    if (strip == nullptr || !::IsWindow(strip)) {
        RETURN_LOGGED(E_FAIL);
    }
    ::SetThreadExecutionState(ES_DISPLAY_REQUIRED);  // turns on a dimmed or blank display
    cancelScreenSaver();
    // Posted, never sent, so that events reach the strip in order.
    ::PostMessageW(strip, kMsgHotkey, code, bBreak);
    faults::wakeHangWatch();  // a strip that no longer answers must not go on swallowing keys
    return S_OK;
}

void CZelMainApp::postToFrame(UINT message) const {
    ::PostMessageW(m_hFrameWnd, message, 0, 0);
}

void CZelMainApp::sendToFrame(UINT message, DWORD dwPatienceMs) const {
    DWORD_PTR uResult = 0;
    ::SendMessageTimeoutW(m_hFrameWnd, message, 0, 0, SMTO_NORMAL, dwPatienceMs, &uResult);
}

void CZelMainApp::postLatch(bool bLatched) const {
    if (const HWND strip = m_hStripWnd; strip != nullptr) {
        ::PostMessageW(strip, kMsgLatch, bLatched ? 1 : 0, 0);
    }
}

bool CZelMainApp::_screenSaverRunning() {
    BOOL running = FALSE;  // not every system writes it
    ::SystemParametersInfoW(SPI_GETSCREENSAVERRUNNING, 0, &running, 0);
    return running != FALSE;
}

void CZelMainApp::cancelScreenSaver() {
    const bool running = _screenSaverRunning();
    LOG_INFO(L"Screensaver is %s running.", running ? L"" : L"not");
    if (!running) {
        return;
    }
    // A click of the middle button ends it without moving the pointer.
    INPUT click[2]{};
    click[0].type = INPUT_MOUSE;
    click[0].mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MIDDLEDOWN;
    click[1].type = INPUT_MOUSE;
    click[1].mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MIDDLEUP;
    ::SendInput(2, click, sizeof(INPUT));
}

HRESULT CZelMainApp::_cancelFnSticky() const {
    LOG_ENTER_LEAVE();
    static const UINT message = ::RegisterWindowMessageW(ZEL_STICKY_CANCEL_MESSAGE);
    if (CZelConfig::getQrdConfig().bIgnoreFnKey) {
        return S_OK;
    }
    const HWND utility = ::FindWindowW(ZEL_STICKY_WINDOW_CLASS, ZEL_STICKY_WINDOW_TITLE);
    if (utility == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    ::PostMessageW(utility, message, 0, 0);
    return S_OK;
}

// Runs on the hook library's thread. The cards belong to the user-interface thread, which may be building them at this
// moment: the message asks it to hide them and returns when that is done, so that they are not in the picture.
LONG WINAPI CZelMainApp::hideQrdWhenPrtsc() noexcept {
    LOG_ENTER_LEAVE();
    const bool running = _screenSaverRunning();
    LOG_INFO(L"Screensaver is %s running.", running ? L"" : L"not");
    if (running) {
        return S_OK;
    }
    if (theApp.m_hStripWnd == nullptr) {
        LOG_STATUS(E_FAIL);             // not yet, or no longer
    } else if (!faults::cardsHang()) {  // otherwise the key would only be held up
        DWORD_PTR answer = 0;
        ::SendMessageTimeoutW(theApp.m_hStripWnd, kMsgPrintScreen, 0, 0, SMTO_NORMAL, kSignalTimeoutMs, &answer);
    }
    return S_OK;
}

void CZelMainApp::settingsRead() {
    faultcare::readPatience();
}

void CZelMainApp::renewContrast() {
    if (!contrast::use(contrast::systemPalette())) {
        return;
    }
    LOG_INFO(L"High contrast is %s.", contrast::used() ? L"on" : L"off");
    ::EnumThreadWindows(::GetCurrentThreadId(), &drawAgain, 0);
}

void CZelMainApp::endSession() {
    // The system may end the process at any time, which is no plug-in's fault, and nothing is to start in its place.
    faults::endIsNear();
    faultcare::end();
    if (CCardsInUse::any()) {
        if (m_pZelMainDlg != nullptr) {
            m_pZelMainDlg->endFunctions();
        }
        CHotkeyEventHandler::stopHotkeyEventLoop();
        m_pFrame->DestroyWindow();  // the message loop ends on that
    } else {
        ExitInstance();
    }
    dbglog::close();
}

bool CZelMainApp::PreTranslateMessage(MSG& message) {
    return common::startsLoopOfInputMethod(message);
}

// Usually out of memory. The operation has failed; the program continues.
void CZelMainApp::exceptionCaught() noexcept {
    LOG_STATUS(common::caughtStatus());
}

int CZelMainApp::ExitInstance() {
    if (std::exchange(m_bEnded, true)) {
        return CWinApp::ExitInstance();
    }
    LOG_ENTER_LEAVE();
    faults::endIsNear();
    m_hStripWnd = nullptr;
    if (m_pZelMainDlg != nullptr) {
        m_pZelMainDlg->DestroyWindow();
        m_pZelMainDlg.reset();
    }
    if (m_pZelHideDlg != nullptr) {
        m_pZelHideDlg->DestroyWindow();
        m_pZelHideDlg.reset();
    }
    accessible::stop();
    m_hPngDll.reset();
    m_hPrtHookDll.reset();
    CHotkeyEventHandler::stopHotkeyEventLoop();
    m_gdiplus.stop();
    m_hMutex.reset();
    const int exitCode = CWinApp::ExitInstance();
    m_hFrameWnd = nullptr;
    m_pFrame.reset();
    return exitCode;
}
