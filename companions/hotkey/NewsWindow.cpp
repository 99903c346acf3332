#include "NewsWindow.h"

#include <wtsapi32.h>

#include "common/SystemLoops.h"
#include "keyboard/OwnModule.h"

namespace hotkey {
namespace {

constexpr wchar_t kClass[] = L"FenwynKeyboardNews";
// No hook is called for these: half of a scan code of several bytes, and a key that the system has no name for.
constexpr USHORT kHalfKey = 0xFF;
constexpr USHORT kUnknownKey = 0;

// A process has one window for all its raw keyboard input: a host that wants it for itself takes it from here.
bool registerRawKeyboard(DWORD flags, HWND hWnd) noexcept {
    constexpr USHORT kGenericDesktop = 1;
    constexpr USHORT kKeyboard = 6;
    const RAWINPUTDEVICE device{kGenericDesktop, kKeyboard, flags, hWnd};
    return ::RegisterRawInputDevices(&device, 1, sizeof(device)) != FALSE;
}

bool isKey(LPARAM lParam) noexcept {
    RAWINPUT input{};
    UINT cb = sizeof(input);
    const UINT read =
        ::GetRawInputData(reinterpret_cast<HRAWINPUT>(lParam), RID_INPUT, &input, &cb, sizeof(RAWINPUTHEADER));
    return read != static_cast<UINT>(-1) && input.header.dwType == RIM_TYPEKEYBOARD &&
           input.data.keyboard.VKey != kHalfKey && input.data.keyboard.VKey != kUnknownKey;
}

}  // namespace

void CNewsWindow::open() noexcept {
    if (m_hWnd) {
        return;
    }
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &CNewsWindow::_wndProc;
    windowClass.hInstance = keyboard::ownModule();
    windowClass.lpszClassName = kClass;
    ::RegisterClassW(&windowClass);
    // Top-level, because message-only windows hear nothing of the machine's sleep; never shown, out of the task list.
    m_hWnd.reset(::CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr,
                                   nullptr, windowClass.hInstance, this));
    if (!m_hWnd) {
        ::UnregisterClassW(kClass, windowClass.hInstance);
        return;
    }
    registerRawKeyboard(RIDEV_INPUTSINK, m_hWnd.get());
    ::WTSRegisterSessionNotification(m_hWnd.get(), NOTIFY_FOR_THIS_SESSION);
}

void CNewsWindow::close() noexcept {
    if (!m_hWnd) {
        return;
    }
    ::WTSUnRegisterSessionNotification(m_hWnd.get());
    registerRawKeyboard(RIDEV_REMOVE, nullptr);
    m_hWnd.reset();
    ::UnregisterClassW(kClass, keyboard::ownModule());  // the module with the procedure may go before the process
}

void CNewsWindow::_handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
        case WM_INPUT:
            if (isKey(lParam)) {
                m_listener.keyboardUsed();
            }
            break;
        case WM_HOTKEY:
            m_listener.registeredKeyPressed(static_cast<DWORD>(wParam));
            break;
        case WM_WTSSESSION_CHANGE:
            m_listener.keyboardChangedHands();
            break;
        case WM_POWERBROADCAST:
            if (wParam == PBT_APMRESUMEAUTOMATIC || wParam == PBT_APMRESUMESUSPEND) {
                m_listener.keyboardChangedHands();
            }
            break;
        default:
            break;
    }
}

LRESULT CALLBACK CNewsWindow::_wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* self = reinterpret_cast<CNewsWindow*>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (self != nullptr) {
        self->_handle(message, wParam, lParam);
    }
    return common::startsSystemLoop(message, wParam) ? 0 : ::DefWindowProcW(hWnd, message, wParam, lParam);
}

}  // namespace hotkey
