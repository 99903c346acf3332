#include "functions/Mute.h"

#include <utility>

#include "functions/Toggle.h"

namespace win {

CMute::CMute(std::shared_ptr<IAudio> pAudio)
    : m_pAudio(std::move(pAudio)), m_first([pAudio = m_pAudio] { return pAudio->muted(); }) {}

std::wstring CMute::initialize() {
    return m_first.waitForFirst(L"There is no sound output device.");
}

std::optional<LONG> CMute::currentItem() {
    return m_first.answered() ? toggleItem(m_pAudio->muted()) : std::nullopt;
}

bool CMute::select(LONG lItem) {
    const std::optional<bool> bMuted = toggleState(lItem);
    return bMuted && m_first.answered() && m_pAudio->setMuted(*bMuted);
}

}  // namespace win
