// Decides when a thread hangs. Pure: time and signs of life come from outside.
#pragma once

#include <windows.h>

namespace faults {

struct Patience {
    DWORD noticeMs = 3000;  // without a sign of life: the user is told; 0: never, and nothing is ended
    DWORD endMs = 20000;    // and the program ends itself
};

class CHangJudge {
 public:
    enum class Verdict {
        Nothing,
        Notice,  // it hangs: once
        Over,    // it has come back after a notice
        End,     // it has not come back
        Rest,    // nothing is to be watched until the next call
    };

    struct Look {
        DWORD elapsedMs = 0;   // since the last look
        LONG signs = 0;        // the counter of its signs of life
        bool inCall = false;   // it is within a plug-in
        bool answers = false;  // it has ever answered outside of calls: its message loop runs
    };

    // Between two looks, not more than twice this time counts: the machine may have been asleep, or the whole process
    // stopped.
    static constexpr DWORD kLookMs = 250;
    // After a call, the program itself may need a moment before it answers again.
    static constexpr DWORD kAfterCallMs = 10000;
    // As long as there is no call and it answers, it is watched for this time.
    static constexpr DWORD kCalmMs = 2000;

    [[nodiscard]] Verdict look(const Look& now, const Patience& patience) noexcept;
    [[nodiscard]] bool hangs() const noexcept { return m_bNoticed; }

 private:
    LONG m_lSigns = 0;
    DWORD m_dwSilentMs = 0;
    DWORD m_dwCalmMs = 0;
    bool m_bNoticed = false;
};

}  // namespace faults
