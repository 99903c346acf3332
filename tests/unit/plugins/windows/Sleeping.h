// The end of the machine's sleep, as a function's hidden window hears of it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <array>

namespace win {

inline constexpr wchar_t kSleepWindowClass[] = L"FenwynSleepWnd";
inline constexpr std::array<WPARAM, 2> kResumes{PBT_APMRESUMEAUTOMATIC, PBT_APMRESUMESUSPEND};

// Of this process; null if there is none.
inline HWND sleepWindow() {
    for (HWND hWnd = nullptr; (hWnd = ::FindWindowExW(nullptr, hWnd, kSleepWindowClass, nullptr)) != nullptr;) {
        DWORD dwProcess = 0;
        ::GetWindowThreadProcessId(hWnd, &dwProcess);
        if (dwProcess == ::GetCurrentProcessId()) {
            return hWnd;
        }
    }
    return nullptr;
}

// What the system sends to every top-level window.
inline void wakeUp(WPARAM news) {
    ASSERT_NE(sleepWindow(), nullptr);
    ::SendMessageW(sleepWindow(), WM_POWERBROADCAST, news, 0);
}

}  // namespace win
