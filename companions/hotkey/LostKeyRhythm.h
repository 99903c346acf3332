// When to look for keys whose release was not seen. No thread wakes up ten times a second because a key is held.
#pragma once

#include <windows.h>

#include <algorithm>

namespace hotkey {

class CLostKeyRhythm {
 public:
    static constexpr DWORD kFirst = 100;  // ms
    static constexpr DWORD kLast = 1600;

    // A key came; `bRepeat`: the one that came last, again. A repeat tells that the key is down, which is no reason to
    // ask sooner.
    void keyCame(bool bRepeat) noexcept {
        if (!bRepeat) {
            m_interval = kFirst;
        }
    }
    // The keys were looked at; `bMissing`: one was found up that should be down, and the second look decides.
    void looked(bool bMissing) noexcept { m_interval = bMissing ? kFirst : std::min(m_interval * 2, kLast); }

    // ms until the next look.
    [[nodiscard]] DWORD interval() const noexcept { return m_interval; }

 private:
    DWORD m_interval = kFirst;
};

}  // namespace hotkey
