#include "SetupApp.h"

#include "ConfigDlg.h"
#include "OutputDlg.h"
#include "SaveDlg.h"
#include "SetupIds.h"
#include "Texts.h"
#include "common/ObjectSecurity.h"

namespace setup {
namespace {

// How long a second start waits for the window of the first one, which may still be starting.
constexpr DWORD kPatienceMs = 2000;
constexpr DWORD kPollMs = 20;

std::unique_ptr<CSetupDlg> makeWindow(const Request& request, const Surroundings& surroundings) {
    switch (request.task) {
        case Task::Output:
            return std::make_unique<COutputDlg>(request, surroundings);
        case Task::Save:
            return std::make_unique<CSaveDlg>(surroundings);
        case Task::Config:
            break;
    }
    return std::make_unique<CConfigDlg>(surroundings);
}

HWND awaitWindow(const wchar_t* className) {
    HWND window = ::FindWindowW(className, nullptr);
    for (DWORD waited = 0; window == nullptr && waited < kPatienceMs; waited += kPollMs) {
        ::Sleep(kPollMs);
        window = ::FindWindowW(className, nullptr);
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

bool CSetupApp::InitInstance() {
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
    ::InitCommonControlsEx(&classes);
    const std::optional<Request> request = parseCommandLine(m_lpCmdLine);
    if (!request) {
        return _fail(text(IDS_ERROR_COMMAND_LINE));
    }
    m_pDlg = makeWindow(*request, m_surroundings);
    if (_isSecondStart(m_pDlg->className(), *request)) {
        return false;
    }
    if (!m_surroundings.warning.empty()) {
        m_surroundings.tell(nullptr, m_surroundings.warning);
    }
    // Favourites can be managed without any display.
    if (request->task != Task::Config && m_surroundings.displays().empty()) {
        return _fail(text(IDS_ERROR_NO_DISPLAY));
    }
    m_pMainWnd = m_pDlg.get();
    if (!m_pDlg->open()) {
        return _fail(text(IDS_ERROR_WINDOW, systemErrorText(::GetLastError())));
    }
    return true;
}

int CSetupApp::ExitInstance() {
    const int code = CWinApp::ExitInstance();
    return m_bFailed ? 1 : code;
}

bool CSetupApp::_fail(const std::wstring& message) {
    m_bFailed = true;
    m_surroundings.tell(nullptr, message);
    return false;
}

// The mutex decides who is first when two start at the same time; the window is found by its class.
bool CSetupApp::_isSecondStart(const wchar_t* className, const Request& request) {
    m_mutex.reset(::CreateMutexW(common::OnlyForTheUser().get(), FALSE, className));
    if (::GetLastError() != ERROR_ALREADY_EXISTS) {
        return false;
    }
    if (const HWND first = awaitWindow(className); first != nullptr) {
        if (request.task == Task::Output) {
            ::PostMessageW(first, COutputDlg::kRequestMessage, request.mask, request.mode);
        }
        bringToFront(first);
    }
    return true;
}

}  // namespace setup
