#include "functions/Brightness.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace win {

namespace {

constexpr int kPercentPerLevel = 100 / kBrightnessLevels;

}  // namespace

LONG levelOf(BYTE nPercent) {
    return std::min<LONG>((nPercent + kPercentPerLevel / 2) / kPercentPerLevel, kBrightnessLevels);
}

BYTE percentOf(LONG lLevel, const std::vector<BYTE>& rLevels) {
    const int nWanted = static_cast<int>(lLevel) * kPercentPerLevel;
    return *std::min_element(rLevels.begin(), rLevels.end(), [nWanted](BYTE nOne, BYTE nOther) {
        const int nOneAway = std::abs(nOne - nWanted);
        const int nOtherAway = std::abs(nOther - nWanted);
        return nOneAway != nOtherAway ? nOneAway < nOtherAway : nOne > nOther;
    });
}

CBrightness::CBrightness(std::shared_ptr<IBacklight> pBacklight)
    : m_pBacklight(std::move(pBacklight)), m_state([pBacklight = m_pBacklight] { return pBacklight->read(); }) {}

std::wstring CBrightness::initialize() {
    m_state.refreshAfterSleep();
    return m_state.waitForFirst(
        L"There is no built-in screen whose brightness the system can set, and no other that you allow.");
}

// Asked whenever the card opens, so that changes made elsewhere are read then.
std::optional<ULONG> CBrightness::items() {
    m_state.refresh();
    return static_cast<ULONG>(kBrightnessLevels);
}

std::optional<LONG> CBrightness::currentItem() {
    const std::optional<Backlight> screen = m_state.fresh();
    return screen ? std::optional<LONG>(levelOf(screen->nPercent)) : std::nullopt;
}

bool CBrightness::select(LONG lItem) {
    std::optional<Backlight> screen = m_state.known();
    if (!screen || lItem < 0 || lItem > kBrightnessLevels) {
        return false;
    }
    screen->nPercent = percentOf(lItem, screen->levels);
    return m_state.change([pBacklight = m_pBacklight, nPercent = screen->nPercent] { pBacklight->set(nPercent); },
                          std::move(*screen));
}

}  // namespace win
