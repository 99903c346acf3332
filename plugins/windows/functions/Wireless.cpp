#include "functions/Wireless.h"

#include <algorithm>
#include <utility>

namespace win {

namespace {

constexpr ULONG kAllOn = 12;
constexpr ULONG kAllOff = 13;
constexpr ULONG kCancel = 14;
constexpr std::size_t kSeveral = 2;

constexpr ULONG bit(ULONG uState) {
    return 1U << uState;
}

// Even states switch a radio off, odd ones on.
ULONG stateOf(const Radio& rRadio) {
    return 2 * static_cast<ULONG>(rRadio.kind) + (rRadio.bOn ? 0 : 1);
}

// Nothing: there is no radio.
std::optional<RadioList> read(IRadios& rRadios) {
    RadioList radios = rRadios.radios();
    return radios.empty() ? std::nullopt : std::optional<RadioList>(std::move(radios));
}

void change(IRadios& rRadios, const RadioList& rBefore, const RadioList& rAfter) {
    for (std::size_t i = 0; i < rBefore.size(); ++i) {
        if (rBefore[i].bOn != rAfter[i].bOn) {
            rRadios.set(rAfter[i].kind, rAfter[i].bOn);
        }
    }
}

}  // namespace

ULONG offeredStates(const RadioList& rRadios) {
    ULONG uStates = bit(kCancel);
    ULONG uAll = 0;
    std::size_t switchable = 0;
    for (const Radio& rRadio : rRadios) {
        if (rRadio.bSwitchable) {
            uStates |= bit(stateOf(rRadio));
            uAll |= bit(rRadio.bOn ? kAllOff : kAllOn);
            ++switchable;
        }
    }
    return switchable >= kSeveral ? uStates | uAll : uStates;
}

std::optional<RadioList> afterState(const RadioList& rRadios, LONG lState) {
    const auto uState = static_cast<ULONG>(lState);
    if (uState > kCancel || (offeredStates(rRadios) & bit(uState)) == 0) {
        return std::nullopt;
    }
    RadioList after = rRadios;
    for (Radio& rRadio : after) {
        const bool bAll = uState == kAllOn || uState == kAllOff;
        if (!rRadio.bSwitchable || (!bAll && uState != stateOf(rRadio))) {
            continue;
        }
        rRadio.bOn = bAll ? uState == kAllOn : !rRadio.bOn;
    }
    return after;
}

CWireless::CWireless(std::shared_ptr<IRadios> pRadios)
    : m_pRadios(std::move(pRadios)), m_state([pRadios = m_pRadios] { return read(*pRadios); }) {}

std::wstring CWireless::initialize() {
    m_state.refreshAfterSleep();
    return m_state.waitForFirst(L"There is no radio that the system lets programs switch.");
}

// If no radio can be switched now, the card shows a notice.
std::optional<ULONG> CWireless::items() {
    m_state.refresh();
    const std::optional<RadioList> radios = m_state.fresh();
    const bool bAny =
        radios && std::any_of(radios->begin(), radios->end(), [](const Radio& rRadio) { return rRadio.bSwitchable; });
    return bAny ? std::optional<ULONG>(offeredStates(*radios)) : std::nullopt;
}

bool CWireless::select(LONG lItem) {
    const std::optional<RadioList> before = m_state.known();
    const std::optional<RadioList> after = before ? afterState(*before, lItem) : std::nullopt;
    if (!after) {
        return false;
    }
    if (lItem == static_cast<LONG>(kCancel)) {
        return true;
    }
    return m_state.change([pRadios = m_pRadios, from = *before, to = *after] { change(*pRadios, from, to); }, *after);
}

}  // namespace win
