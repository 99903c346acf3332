#include "system/SleepNews.h"

#include <utility>

#include "keyboard/OwnModule.h"

namespace win {

namespace {

constexpr wchar_t kWindowClass[] = L"FenwynSleepWnd";

}  // namespace

// Top-level, because message-only windows hear nothing of the machine's sleep; never shown, out of the task list.
CSleepNews::CSleepNews(std::function<void()> awake) : m_awake(std::move(awake)) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &CSleepNews::_procedure;
    windowClass.hInstance = keyboard::ownModule();
    windowClass.lpszClassName = kWindowClass;
    ::RegisterClassW(&windowClass);
    m_hWnd.reset(::CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kWindowClass, L"", WS_POPUP, 0, 0, 0, 0,
                                   nullptr, nullptr, windowClass.hInstance, this));
}

// The library may go before the process, and the procedure with it. The class stays for as long as another window of
// the library has it.
CSleepNews::~CSleepNews() {
    m_hWnd.reset();
    ::UnregisterClassW(kWindowClass, keyboard::ownModule());
}

LRESULT CALLBACK CSleepNews::_procedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept {
    if (uMessage == WM_NCCREATE) {
        const auto* const pCreate = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pCreate->lpCreateParams));
    }
    const auto* const pThis = reinterpret_cast<const CSleepNews*>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    const bool bAwake = wParam == PBT_APMRESUMEAUTOMATIC || wParam == PBT_APMRESUMESUSPEND;
    if (uMessage == WM_POWERBROADCAST && bAwake && pThis != nullptr) {
        try {
            pThis->m_awake();
        } catch (...) {
            return TRUE;  // out of memory: the card asks the machine when it opens
        }
    }
    return ::DefWindowProcW(hWnd, uMessage, wParam, lParam);
}

}  // namespace win
