#include "StickyWindow.h"

#include <utility>

#include "common/SystemLoops.h"
#include "include/ZelHotkey.h"
#include "keyboard/OwnModule.h"

namespace hotkey {

CStickyWindow::CStickyWindow(std::function<void()> onCancel) : m_onCancel(std::move(onCancel)) {}

void CStickyWindow::open() noexcept {
    if (m_hWnd) {
        return;
    }
    m_nCancelMessage = ::RegisterWindowMessageW(ZEL_STICKY_CANCEL_MESSAGE);
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &CStickyWindow::_wndProc;
    windowClass.hInstance = keyboard::ownModule();
    windowClass.lpszClassName = ZEL_STICKY_WINDOW_CLASS;
    ::RegisterClassW(&windowClass);
    // Top-level, because a search does not find message-only windows; never visible, and not in the task list.
    m_hWnd.reset(::CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, ZEL_STICKY_WINDOW_CLASS,
                                   ZEL_STICKY_WINDOW_TITLE, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                   keyboard::ownModule(), this));
    if (!m_hWnd) {
        _unregister();
    }
}

void CStickyWindow::close() noexcept {
    if (m_hWnd) {
        m_hWnd.reset();
        _unregister();
    }
}

// The module that contains the window procedure may be unloaded before the process ends.
void CStickyWindow::_unregister() noexcept {
    ::UnregisterClassW(ZEL_STICKY_WINDOW_CLASS, keyboard::ownModule());
}

LRESULT CALLBACK CStickyWindow::_wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    const auto* self = reinterpret_cast<const CStickyWindow*>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (self != nullptr && message != 0 && message == self->m_nCancelMessage) {
        self->m_onCancel();
        return 0;
    }
    return common::startsSystemLoop(message, wParam) ? 0 : ::DefWindowProcW(hWnd, message, wParam, lParam);
}

}  // namespace hotkey
