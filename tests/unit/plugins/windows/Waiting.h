// Waiting for the effects of a worker.
#pragma once

#include <windows.h>

#include <functional>

namespace win {

inline constexpr DWORD kDeadlineMs = 10000;

// Whether the condition holds before the deadline.
inline bool soon(const std::function<bool()>& condition) {
    for (const ULONGLONG end = ::GetTickCount64() + kDeadlineMs; ::GetTickCount64() < end; ::Sleep(1)) {
        if (condition()) {
            return true;
        }
    }
    return condition();
}

// Whether one of several tries succeeds: for what is in time unless the machine is busy.
inline bool someTime(const std::function<bool(int)>& attempt) {
    constexpr int kTries = 20;
    for (int nTry = 0; nTry < kTries; ++nTry) {
        if (attempt(nTry)) {
            return true;
        }
    }
    return false;
}

}  // namespace win
