// What the system tells of the keyboard beside the hook.
#pragma once

#include <windows.h>

#include "common/Handle.h"

namespace hotkey {

class INewsListener {
 public:
    virtual ~INewsListener() = default;
    // A key was pressed or released, in whatever program.
    virtual void keyboardUsed() noexcept = 0;
    // A key was pressed that was registered with the window; `id` as it was registered.
    virtual void registeredKeyPressed(DWORD id) noexcept = 0;
    // The session was locked, unlocked, connected or disconnected, or the machine woke up.
    virtual void keyboardChangedHands() noexcept = 0;
};

// A hidden window. Belongs to the thread that opened it, which must dispatch messages and close it; the listener is
// called there.
class CNewsWindow {
 public:
    explicit CNewsWindow(INewsListener& listener) noexcept : m_listener(listener) {}
    ~CNewsWindow() { close(); }
    CNewsWindow(const CNewsWindow&) = delete;
    CNewsWindow& operator=(const CNewsWindow&) = delete;

    // Does nothing when it is open. What the system refuses is not heard of; the hook works without.
    void open() noexcept;
    void close() noexcept;
    // Null while it is not open.
    [[nodiscard]] HWND handle() const noexcept { return m_hWnd.get(); }

 private:
    void _handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    static LRESULT CALLBACK _wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    INewsListener& m_listener;
    common::UniqueWindow m_hWnd;
};

}  // namespace hotkey
