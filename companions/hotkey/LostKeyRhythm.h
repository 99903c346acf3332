// When to check for keys whose release was not seen. A held key must not wake a thread ten times a second.
#pragma once

#include <windows.h>

#include <algorithm>

namespace hotkey {

class CLostKeyRhythm {
 public:
    static constexpr DWORD kFirst = 100;  // ms
    static constexpr DWORD kLast = 1600;

    // A key event; `bRepeat`: the last key again. A repeat shows that the key is down, so there is no reason to check
    // sooner.
    void keyCame(bool bRepeat) noexcept {
        if (!bRepeat) {
            m_interval = kFirst;
        }
    }
    // The keys were checked; `bMissing`: one was up that should be down, and the second check decides.
    void looked(bool bMissing) noexcept { m_interval = bMissing ? kFirst : std::min(m_interval * 2, kLast); }

    // ms until the next check.
    [[nodiscard]] DWORD interval() const noexcept { return m_interval; }

 private:
    DWORD m_interval = kFirst;
};

}  // namespace hotkey
