#include "Logic/Faults/HangJudge.h"

#include <algorithm>
#include <utility>

namespace faults {

CHangJudge::Verdict CHangJudge::look(const Look& now, const Patience& patience) noexcept {
    const DWORD dwElapsed = std::min(now.elapsedMs, 2 * kLookMs);
    if (std::exchange(m_lSigns, now.signs) != now.signs) {
        m_dwSilentMs = 0;
        m_dwCalmMs = now.inCall ? 0 : m_dwCalmMs + dwElapsed;
        if (std::exchange(m_bNoticed, false)) {
            m_dwCalmMs = 0;
            return Verdict::Over;
        }
        if (m_dwCalmMs >= kCalmMs) {
            m_dwCalmMs = 0;
            return Verdict::Rest;
        }
        return Verdict::Nothing;
    }
    m_dwCalmMs = 0;
    // While it is starting, it does not handle messages yet.
    if (patience.noticeMs == 0 || (!now.inCall && !now.answers && !m_bNoticed)) {
        return Verdict::Nothing;
    }
    m_dwSilentMs += dwElapsed;
    if (!m_bNoticed) {
        const DWORD dwLimit = now.inCall ? patience.noticeMs : std::max(patience.noticeMs, kAfterCallMs);
        m_bNoticed = m_dwSilentMs >= dwLimit;
        return m_bNoticed ? Verdict::Notice : Verdict::Nothing;
    }
    return m_dwSilentMs >= patience.endMs ? Verdict::End : Verdict::Nothing;
}

}  // namespace faults
