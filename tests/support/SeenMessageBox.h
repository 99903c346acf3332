// A real message box, as the user sees it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>

namespace support {

struct SeenMessageBox {
    std::wstring title;
    std::wstring text;
    HICON icon = nullptr;
    int focusedButton = 0;
};

inline std::wstring windowText(HWND hWnd) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(hWnd)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(::GetWindowTextW(hWnd, text.data(), static_cast<int>(text.size()))));
    return text;
}

// The icon has different numbers on different systems.
inline HICON iconOf(HWND hBox) {
    HWND hChild = nullptr;
    do {
        hChild = ::FindWindowExW(hBox, hChild, L"Static", nullptr);
    } while (hChild != nullptr && (::GetWindowLongW(hChild, GWL_STYLE) & SS_TYPEMASK) != SS_ICON);
    return reinterpret_cast<HICON>(::SendMessageW(hChild, STM_GETICON, 0, 0));
}

inline int focusedButton(HWND hBox) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(hBox, nullptr), &info);
    return ::GetDlgCtrlID(info.hwndFocus);
}

// Runs `show`, which shows a message box and returns when it is answered, in a thread of its own, and answers with
// that button. Empty if no box came within five seconds.
inline SeenMessageBox answerMessageBox(const std::function<void()>& show, int button) {
    constexpr int kMessage = 0xFFFF;  // the text of every message box
    constexpr int kTries = 500;
    const std::jthread shower(show);
    HWND hBox = nullptr;
    for (int i = 0; i < kTries && hBox == nullptr; ++i, ::Sleep(10)) {
        const auto takeIfBox = [](HWND hWnd, LPARAM found) -> BOOL {
            DWORD process = 0;
            ::GetWindowThreadProcessId(hWnd, &process);
            if (process == ::GetCurrentProcessId() && ::IsWindowVisible(hWnd) != FALSE &&
                ::GetDlgItem(hWnd, kMessage) != nullptr) {
                *reinterpret_cast<HWND*>(found) = hWnd;
            }
            return TRUE;
        };
        ::EnumWindows(takeIfBox, reinterpret_cast<LPARAM>(&hBox));
    }
    if (hBox == nullptr) {
        return {};
    }
    const SeenMessageBox seen{windowText(hBox), windowText(::GetDlgItem(hBox, kMessage)), iconOf(hBox),
                              focusedButton(hBox)};
    ::SendMessageW(hBox, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return seen;
}

}  // namespace support
