#include "functions/Overlay.h"

#include <utility>

#include "functions/Toggle.h"

namespace win {

COverlay::COverlay(std::unique_ptr<IOverlay> pOverlay) : m_pOverlay(std::move(pOverlay)) {}

// Every machine has a keyboard, or can get one at any time.
std::wstring COverlay::initialize() {
    return {};
}

std::optional<LONG> COverlay::currentItem() {
    return toggleItem(m_pOverlay->isOn());
}

bool COverlay::select(LONG lItem) {
    const std::optional<bool> bOn = toggleState(lItem);
    return bOn && m_pOverlay->turn(*bOn);
}

}  // namespace win
