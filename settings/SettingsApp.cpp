#include "SettingsApp.h"

#include <commctrl.h>

#include "Model.h"
#include "Outside.h"
#include "SettingsDlg.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/LogSettings.h"
#include "common/ObjectSecurity.h"

namespace settings {
namespace {

constexpr wchar_t kMutexName[] = L"Local\\KESTOVA_Fenwyn_Settings";

// How long a second start waits for the window of the first one, which may still be starting.
constexpr DWORD kPatienceMs = 2000;
constexpr DWORD kPollMs = 20;

HWND awaitWindow() {
    HWND window = ::FindWindowW(SETTINGS_WINDOW_CLASS, nullptr);
    for (DWORD waited = 0; window == nullptr && waited < kPatienceMs; waited += kPollMs) {
        ::Sleep(kPollMs);
        window = ::FindWindowW(SETTINGS_WINDOW_CLASS, nullptr);
    }
    return window;
}

void bringToFront(HWND window) {
    if (::IsIconic(window) != FALSE) {
        ::ShowWindow(window, SW_RESTORE);
    }
    // A message box of the window must be answered first.
    ::SetForegroundWindow(::GetLastActivePopup(window));
}

}  // namespace

CSettingsApp::CSettingsApp(Surroundings surroundings) : m_surroundings(std::move(surroundings)), m_store(dbglog::settingsPath().data()) {}

CSettingsApp::~CSettingsApp() = default;

bool CSettingsApp::InitInstance() {
    if (_isSecondStart()) {
        return false;
    }
    constexpr DWORD kControls = ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES;
    const INITCOMMONCONTROLSEX classes{sizeof(classes), kControls};
    ::InitCommonControlsEx(&classes);
    m_pModel = std::make_unique<CModel>(realOutside(m_store));
    m_pDlg = std::make_unique<CSettingsDlg>(*m_pModel, m_surroundings);
    m_pMainWnd = m_pDlg.get();
    if (!m_pDlg->open()) {
        m_bFailed = true;
        m_surroundings.tell(nullptr, text(IDS_ERROR_WINDOW, {systemErrorText(::GetLastError())}));
        return false;
    }
    return true;
}

int CSettingsApp::ExitInstance() {
    const int code = CWinApp::ExitInstance();
    return m_bFailed ? 1 : code;
}

// The mutex decides who is first when two start at the same time; the window is found by its class.
bool CSettingsApp::_isSecondStart() {
    m_mutex.reset(::CreateMutexW(common::OnlyForTheUser().get(), FALSE, kMutexName));
    if (::GetLastError() != ERROR_ALREADY_EXISTS) {
        return false;
    }
    if (const HWND first = awaitWindow(); first != nullptr) {
        bringToFront(first);
    }
    return true;
}

}  // namespace settings
