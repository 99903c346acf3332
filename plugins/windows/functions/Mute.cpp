#include "functions/Mute.h"

#include <utility>

#include "functions/Toggle.h"

namespace win {

CMute::CMute(std::unique_ptr<IAudio> pAudio) : m_pAudio(std::move(pAudio)) {}

std::wstring CMute::initialize() {
    return m_pAudio->muted() ? L"" : L"There is no sound output device.";
}

std::optional<LONG> CMute::currentItem() {
    return toggleItem(m_pAudio->muted());
}

bool CMute::select(LONG lItem) {
    const std::optional<bool> bMuted = toggleState(lItem);
    return bMuted && m_pAudio->setMuted(*bMuted);
}

}  // namespace win
