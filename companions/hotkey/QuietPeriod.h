// Waits for a series of changes to end.
#pragma once

#include <windows.h>

namespace hotkey {

// Times in ms of a monotonic clock.
class CQuietPeriod {
 public:
    static constexpr ULONGLONG kQuiet = 100;
    static constexpr ULONGLONG kLongest = 1000;  // an endless series is reported anyway

    void touch(ULONGLONG now) noexcept {
        m_nFirst = m_bPending ? m_nFirst : now;
        m_nLast = now;
        m_bPending = true;
    }
    // INFINITE if nothing is pending.
    [[nodiscard]] DWORD timeLeft(ULONGLONG now) const noexcept {
        if (!m_bPending) {
            return INFINITE;
        }
        const ULONGLONG due = m_nLast + kQuiet < m_nFirst + kLongest ? m_nLast + kQuiet : m_nFirst + kLongest;
        return now >= due ? 0 : static_cast<DWORD>(due - now);
    }
    // True once per series, when it is over.
    [[nodiscard]] bool takeIfDue(ULONGLONG now) noexcept {
        if (timeLeft(now) != 0) {
            return false;
        }
        m_bPending = false;
        return true;
    }

 private:
    ULONGLONG m_nFirst = 0;
    ULONGLONG m_nLast = 0;
    bool m_bPending = false;
};

}  // namespace hotkey
