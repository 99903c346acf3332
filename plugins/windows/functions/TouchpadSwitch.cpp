#include "functions/TouchpadSwitch.h"

#include <utility>

#include "functions/Toggle.h"

namespace win {

namespace {

constexpr int kLooks = 40;  // after the toggle, one every kLookMs: one second in total
constexpr DWORD kLookMs = 25;

// On the worker's thread: it waits until the state has followed, so that the next read is correct.
void switchTo(ITouchpad& rTouchpad, bool bOn) {
    if (rTouchpad.enabled() == bOn) {
        return;
    }
    rTouchpad.toggle();
    for (int i = 0; i < kLooks && rTouchpad.enabled() != bOn; ++i) {
        ::Sleep(kLookMs);
    }
}

}  // namespace

CTouchpadSwitch::CTouchpadSwitch(std::shared_ptr<ITouchpad> pTouchpad)
    : m_pTouchpad(std::move(pTouchpad)), m_enabled([pTouchpad = m_pTouchpad] { return pTouchpad->enabled(); }) {}

std::wstring CTouchpadSwitch::initialize() {
    if (!m_pTouchpad->present()) {
        return L"There is no precision touchpad.";
    }
    m_enabled.refreshAfterSleep();
    return m_enabled.waitForFirst(L"The system does not tell whether the touchpad is on.");
}

std::optional<ULONG> CTouchpadSwitch::items() {
    m_enabled.refresh();
    return FENWYN_TWO_ITEMS;
}

std::optional<LONG> CTouchpadSwitch::currentItem() {
    return toggleItem(m_enabled.fresh());
}

bool CTouchpadSwitch::select(LONG lItem) {
    const std::optional<bool> bOn = toggleState(lItem);
    return bOn && m_enabled.change([pTouchpad = m_pTouchpad, bWanted = *bOn] { switchTo(*pTouchpad, bWanted); }, *bOn);
}

}  // namespace win
