// A point in time at which something is to be done.
#pragma once

#include <windows.h>

namespace hotkey {

// Times in ms of a clock that never goes back.
class CAlarm {
 public:
    void set(ULONGLONG time) noexcept { m_nTime = time; }
    void cancel() noexcept { m_nTime = kNever; }
    [[nodiscard]] bool isSet() const noexcept { return m_nTime != kNever; }
    // True once for each time that was set, when it has come.
    [[nodiscard]] bool takeIfDue(ULONGLONG now) noexcept {
        if (now < m_nTime) {
            return false;
        }
        cancel();
        return true;
    }
    // ms; INFINITE when none is set.
    [[nodiscard]] DWORD timeLeft(ULONGLONG now) const noexcept {
        if (!isSet()) {
            return INFINITE;
        }
        return now >= m_nTime ? 0 : static_cast<DWORD>(m_nTime - now);
    }

 private:
    static constexpr ULONGLONG kNever = ~ULONGLONG{0};
    ULONGLONG m_nTime = kNever;
};

}  // namespace hotkey
