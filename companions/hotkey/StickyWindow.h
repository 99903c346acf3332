// The hidden window through which other programs release a latched modifier.
#pragma once

#include <windows.h>

#include <functional>

#include "common/Handle.h"

namespace hotkey {

// Belongs to the thread that opened it, which must dispatch messages and close it.
class CStickyWindow {
 public:
    // `onCancel` runs on the owning thread for each cancel message.
    explicit CStickyWindow(std::function<void()> onCancel);
    ~CStickyWindow() { close(); }
    CStickyWindow(const CStickyWindow&) = delete;
    CStickyWindow& operator=(const CStickyWindow&) = delete;

    // Does nothing if it is open. Without the window only the cancel message is missed, so failure is not reported.
    void open() noexcept;
    void close() noexcept;

 private:
    static void _unregister() noexcept;
    static LRESULT CALLBACK _wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::function<void()> m_onCancel;
    common::UniqueWindow m_hWnd;
    UINT m_nCancelMessage = 0;
};

}  // namespace hotkey
