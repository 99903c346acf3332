#include "framework/WinApp.h"

#include "framework/Wnd.h"

CWinApp* CWinApp::s_pCurrent = nullptr;

CWinApp::CWinApp() {
    s_pCurrent = this;
}

CWinApp::~CWinApp() {
    if (s_pCurrent == this) {
        s_pCurrent = nullptr;
    }
}

int CWinApp::Main(HINSTANCE instance, const wchar_t* commandLine) {
    m_hInstance = instance;
    m_lpCmdLine = commandLine;
    m_bMainWndGone = false;
    if (_start()) {
        _run();
    }
    return _end();
}

bool CWinApp::_start() noexcept {
    try {
        return InitInstance();
    } catch (...) {
        reportException();
        return false;
    }
}

void CWinApp::_run() noexcept {
    try {
        Run();
    } catch (...) {
        reportException();
    }
}

int CWinApp::_end() noexcept {
    try {
        return ExitInstance();
    } catch (...) {
        reportException();
        return m_nExitCode;
    }
}

void CWinApp::reportException() noexcept {
    if (s_pCurrent != nullptr) {
        s_pCurrent->exceptionCaught();
    }
}

void CWinApp::Run() {
    MSG message{};
    while (_nextMessage(message)) {
        _handle(message);
    }
    m_nExitCode = message.message == WM_QUIT ? static_cast<int>(message.wParam) : 0;
}

// Without a main window the loop does not wait: the window may have ended within a foreign message loop that swallowed
// WM_QUIT.
bool CWinApp::_nextMessage(MSG& message) const {
    if (m_bMainWndGone) {
        return ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE && message.message != WM_QUIT;
    }
    return ::GetMessageW(&message, nullptr, 0, 0) > 0;
}

int CWinApp::ExitInstance() {
    if (CWnd* frame = m_pMainWnd; frame != nullptr) {
        frame->DestroyWindow();
    }
    return m_nExitCode;
}

void CWinApp::windowGone(const CWnd& window) {
    if (s_pCurrent != nullptr && s_pCurrent->m_pMainWnd == &window) {
        s_pCurrent->m_pMainWnd = nullptr;
        s_pCurrent->m_bMainWndGone = true;
        ::PostQuitMessage(0);
    }
}

// A message that fails does not end the loop.
void CWinApp::_handle(MSG& message) noexcept {
    try {
        if (!_preTranslate(message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    } catch (...) {
        reportException();
    }
}

bool CWinApp::_preTranslate(MSG& message) {
    if (PreTranslateMessage(message)) {
        return true;
    }
    for (HWND window = message.hwnd; window != nullptr; window = ::GetAncestor(window, GA_PARENT)) {
        CWnd* object = CWnd::fromHandle(window);
        if (object != nullptr && object->PreTranslateMessage(message)) {
            return true;
        }
    }
    return false;
}
