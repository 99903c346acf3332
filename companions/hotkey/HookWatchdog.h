// Finds out that the system has dropped the keyboard hook, which it does without a word to one that was slow.
#pragma once

#include <windows.h>

#include <algorithm>

#include "Alarm.h"

namespace hotkey {

// It sleeps until there is news of a key from another side; then the hook has a moment to have been called for it too.
// Times in ms of the system's tick count.
class CHookWatchdog {
 public:
    // The hook may be called that much later than the other side, or earlier.
    static constexpr ULONGLONG kLater = 300;
    static constexpr ULONGLONG kEarlier = 50;
    // Before a hook that was installed anew is given up in its turn. The pause doubles for as long as no hook is
    // called: where none may see the keys, as in a window with more rights, new ones do not help.
    static constexpr ULONGLONG kFirstPause = 500;
    static constexpr ULONGLONG kLongestPause = 60000;

    // The hook was called.
    void hookCalled(ULONGLONG now) noexcept {
        m_nLastCall = now;
        m_nPause = kFirstPause;
        m_nNotBefore = 0;
        m_alarm.cancel();
    }
    // A key was used, says the other side.
    void keyboardUsed(ULONGLONG now) noexcept {
        if (!m_alarm.isSet() && now > m_nLastCall + kEarlier) {
            m_alarm.set(std::max(now + kLater, m_nNotBefore));
        }
    }
    // ms; INFINITE while there is nothing to look at.
    [[nodiscard]] DWORD timeLeft(ULONGLONG now) const noexcept { return m_alarm.timeLeft(now); }
    // Whether the time has come to install the hook anew. `lastInput`: when the system last had input, as the low half
    // of its tick count.
    [[nodiscard]] bool takeIfLost(ULONGLONG now, DWORD lastInput) noexcept {
        if (!m_alarm.takeIfDue(now)) {
            return false;
        }
        // Differences survive the wrap-around.
        if (static_cast<int>(lastInput - static_cast<DWORD>(m_nLastCall)) <= 0) {
            return false;
        }
        m_nNotBefore = now + m_nPause;
        m_nPause = std::min(m_nPause * 2, kLongestPause);
        return true;
    }

 private:
    CAlarm m_alarm;
    ULONGLONG m_nLastCall = 0;
    ULONGLONG m_nNotBefore = 0;
    ULONGLONG m_nPause = kFirstPause;
};

}  // namespace hotkey
