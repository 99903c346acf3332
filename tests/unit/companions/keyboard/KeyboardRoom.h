// Real key events inside one process: injected keys, and a focused window that records which of them arrived.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "common/Handle.h"

namespace companions {

// Dispatches this thread's messages until `condition` holds. False after five seconds.
inline bool waitUntil(const std::function<bool()>& condition, DWORD milliseconds = 5000) {
    const ULONGLONG deadline = ::GetTickCount64() + milliseconds;
    for (;;) {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::DispatchMessageW(&message);
        }
        if (condition()) {
            return true;
        }
        if (::GetTickCount64() >= deadline) {
            return false;
        }
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

// As the keyboard sends it: with its scan code and, for keys such as right Ctrl and the arrows, the extended flag. The
// time is the event's own time stamp, in ms of the system's tick count; 0 = now.
inline void sendKey(WORD virtualKey, bool bDown, DWORD time = 0) {
    const UINT scan = ::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC_EX);
    const bool bExtended = (scan & 0xFF00) != 0 || virtualKey == VK_RCONTROL || virtualKey == VK_LEFT;
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(scan & 0xFF);
    input.ki.dwFlags = (bDown ? 0u : KEYEVENTF_KEYUP) | (bExtended ? KEYEVENTF_EXTENDEDKEY : 0u);
    input.ki.time = time;
    ::SendInput(1, &input, sizeof(input));
}
// The deadline on a slow machine.
inline void tapQuickly(WORD virtualKey) {
    const DWORD now = ::GetTickCount();
    sendKey(virtualKey, true, now);
    sendKey(virtualKey, false, now + 1);
}
inline void pressKey(WORD virtualKey) {
    sendKey(virtualKey, true);
    sendKey(virtualKey, false);
}

// One for the whole process, because creating and losing a focused window takes seconds without a window manager.
class CFocusWindow {
 public:
    static CFocusWindow& instance() {
        static auto& window = *new CFocusWindow;  // the system destroys it with the process
        return window;
    }
    CFocusWindow(const CFocusWindow&) = delete;
    CFocusWindow& operator=(const CFocusWindow&) = delete;

    // Takes the focus, releases keys that an earlier test left down, and discards what arrived until then.
    bool prepare() {
        ::SetForegroundWindow(m_hWnd);
        for (WORD key = VK_BACK; key < 0xFF; ++key) {
            const bool bEitherSide = key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU;
            if (!bEitherSide && ::GetAsyncKeyState(key) < 0) {
                sendKey(key, false);
            }
        }
        const bool bReady = waitUntil([this] { return ::GetFocus() == m_hWnd; }) && settle();
        m_vecKeys.clear();
        return bReady;
    }
    // Virtual-key codes that arrived; negative for releases.
    [[nodiscard]] const std::vector<int>& keys() const { return m_vecKeys; }
    // Sends a key that nobody listens to and waits for it: every earlier key has then arrived, or never will.
    bool settle() {
        pressKey(VK_SCROLL);
        if (!waitUntil([this] { return !m_vecKeys.empty() && m_vecKeys.back() == -VK_SCROLL; })) {
            return false;
        }
        m_vecKeys.resize(m_vecKeys.size() - 2);
        return true;
    }

 private:
    CFocusWindow() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &_wndProc;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"CompanionsTestFocus";
        ::RegisterClassW(&windowClass);
        m_hWnd = ::CreateWindowExW(WS_EX_TOPMOST, windowClass.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                   nullptr, nullptr, windowClass.hInstance, nullptr);
        ::SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }

    static LRESULT CALLBACK _wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<CFocusWindow*>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
        const bool bDown = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
        if (self != nullptr && (bDown || message == WM_KEYUP || message == WM_SYSKEYUP)) {
            const int key = static_cast<int>(wParam);
            self->m_vecKeys.push_back(bDown ? key : -key);
            return 0;
        }
        return ::DefWindowProcW(hWnd, message, wParam, lParam);
    }

    HWND m_hWnd = nullptr;
    std::vector<int> m_vecKeys;
};

// A library of the build. `file` is the builder's path; the emulator shows the builder's root as drive Z.
inline common::UniqueModule loadBuilt(const char* file) {
    std::wstring path(file, file + std::char_traits<char>::length(file));
    for (wchar_t& unit : path) {
        unit = unit == L'/' ? L'\\' : unit;
    }
    return common::UniqueModule(::LoadLibraryW((path.front() == L'\\' ? L"Z:" + path : path).c_str()));
}

template <typename Function>
Function exportOf(const common::UniqueModule& module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module.get(), name)));
}

}  // namespace companions
