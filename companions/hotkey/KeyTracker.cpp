#include "KeyTracker.h"

#include <utility>

#include "ModifierUse.h"
#include "include/ZelHotkey.h"
#include "keyboard/OwnInput.h"

namespace hotkey {

void CKeyTracker::setSettings(const TrackerSettings& settings) noexcept {
    if (settings.modifierKey != m_settings.modifierKey) {
        const DWORD nWithheld = m_nWithheld;  // the user still holds the old one
        releaseAll();
        m_nWithheld = nWithheld;
    }
    m_settings = settings;
    if (!m_settings.sticky) {
        cancelLatch();
    }
}

bool CKeyTracker::handle(const keyboard::KeyEvent& event) noexcept {
    if (event.virtualKey == m_settings.modifierKey) {
        return _modifier(event);
    }
    if (m_nWithheld != 0 && event.virtualKey == m_nWithheld) {
        m_nWithheld = event.down ? m_nWithheld : 0;
        return true;
    }
    if (event.slot == 0 || event.slot >= keyboard::kKeySlots) {
        return false;
    }
    Key& key = m_keys[event.slot];
    if (event.down) {
        if (key.state != State::Up && event.time - key.lastEvent > keyboard::kRepeatGap) {
            _release(event.slot);
        }
        if (key.state == State::Up) {
            _press(key, event);
        }
        key.lastEvent = event.time;
        key.missing = false;
    }
    const bool bSwallow = key.state == State::Swallowed || key.state == State::Muted;
    if (!event.down) {
        _release(event.slot);
    }
    return bSwallow;
}

bool CKeyTracker::_modifier(const keyboard::KeyEvent& event) noexcept {
    if (event.down) {
        _modifierDown(event.time);
        return m_nWithheld == event.virtualKey;
    }
    _giveTapItsMeaning(event.time);
    _modifierUp();
    return std::exchange(m_nWithheld, 0) == event.virtualKey;
}

// Only a tap triggers the key's usual function; with a sticky modifier a tap already has a meaning.
void CKeyTracker::_giveTapItsMeaning(DWORD time) noexcept {
    if (!m_bModifierDown) {
        return;
    }
    const bool bTap = m_bTapAlone && !m_settings.sticky && time - m_nModifierPress <= kLongestTap;
    if (!bTap) {
        _mask();
    } else if (m_nWithheld != 0) {
        m_presser.tap(m_nWithheld);
    }
}

void CKeyTracker::_mask() noexcept {
    if (m_bModifierDown && !m_bMasked && modifierUse(m_settings.modifierKey) == ModifierUse::Masked) {
        m_bMasked = true;
        m_presser.tap(keyboard::kMeaninglessKey);
    }
}

void CKeyTracker::_modifierDown(DWORD time) noexcept {
    const DWORD nGap = time - m_nModifierTime;
    m_nModifierTime = time;
    m_bModifierMissing = false;
    if (m_bModifierDown) {
        if (nGap <= keyboard::kRepeatGap) {
            return;
        }
        m_bTapAlone = false;
        _modifierUp();
    }
    m_bModifierDown = true;
    m_bMasked = !m_bEnabled;  // a key that was passed on normally needs no mask
    m_nModifierPress = time;
    m_nWithheld = 0;
    if (!m_bEnabled) {
        return;
    }
    if (modifierUse(m_settings.modifierKey) == ModifierUse::Withheld) {
        m_nWithheld = m_settings.modifierKey;
    }
    const bool bWasActive = m_bActive;
    if (!bWasActive) {
        _deactivate();  // what a key without the modifier has chosen
        m_bActive = m_sink.make(ZEL_CODE_MODIFIER);
    }
    m_bTapAlone = !bWasActive;  // also right after such a key
}

void CKeyTracker::_modifierUp() noexcept {
    m_bModifierDown = false;
    m_bModifierMissing = false;
    if (m_bActive && m_settings.sticky && m_bTapAlone) {
        _setLatched(true);
        return;
    }
    _deactivate();
}

std::size_t CKeyTracker::_namedSlot(const keyboard::KeyEvent& event) const noexcept {
    const std::size_t byVirtualKey = keyboard::slotOfVirtualKey(event.virtualKey);
    const bool bNamed = m_settings.listed.test(event.slot) || m_settings.alone.test(event.slot);
    const bool bNamedSo = m_settings.listed.test(byVirtualKey) || m_settings.alone.test(byVirtualKey);
    return !bNamed && bNamedSo ? byVirtualKey : event.slot;
}

void CKeyTracker::_press(Key& key, const keyboard::KeyEvent& event) noexcept {
    ++m_nDown;
    const std::size_t named = _namedSlot(event);
    key = Key{State::Alone, false, event.virtualKey, event.time, ++m_nPresses, keyboard::codeOfSlot(named)};
    const bool bAlone = m_settings.alone.test(named);
    const bool bListed = m_settings.listed.test(named);
    if (bAlone && !bListed) {
        key.code |= ZEL_CODE_ALONE;  // its card comes with the modifier as well
    }
    if (!m_bActive) {
        if (bAlone && m_bEnabled) {
            _pressAlone(key);
        }
        return;
    }
    m_bTapAlone = false;
    const bool bReported = m_sink.make(key.code);
    if (bListed || bAlone) {
        key.state = bReported ? State::Swallowed : State::Muted;
        _mask();
    } else if (bReported) {
        key.state = State::Reported;
    }
}

void CKeyTracker::_pressAlone(Key& key) noexcept {
    key.code |= ZEL_CODE_ALONE;
    m_bAlone = m_bAlone || m_sink.promiseBreak();
    key.state = m_bAlone && m_sink.make(key.code) ? State::Swallowed : State::Muted;
}

void CKeyTracker::_release(std::size_t slot) noexcept {
    Key& key = m_keys[slot];
    if (key.state == State::Up) {
        return;
    }
    if (key.state == State::Reported || key.state == State::Swallowed) {
        m_sink.breakOf(key.code);
    }
    key = Key{};
    --m_nDown;
}

void CKeyTracker::_deactivate() noexcept {
    if (!m_bActive && !m_bAlone) {
        return;
    }
    for (std::size_t slot = _oldestDue(); slot != 0; slot = _oldestDue()) {
        Key& key = m_keys[slot];
        m_sink.breakOf(key.code);
        key.state = key.state == State::Swallowed ? State::Muted : State::Alone;
    }
    m_bActive = false;
    m_bAlone = false;
    m_bTapAlone = false;
    _setLatched(false);
    m_sink.breakOf(ZEL_CODE_MODIFIER);
}

CKeyTracker::Alone CKeyTracker::alone() const noexcept {
    if (!m_bAlone) {
        return Alone::None;
    }
    return _oldestDue() != 0 ? Alone::Held : Alone::Released;
}

void CKeyTracker::endAlone() noexcept {
    if (alone() == Alone::Released) {
        _deactivate();
    }
}

std::size_t CKeyTracker::_oldestDue() const noexcept {
    std::size_t oldest = 0;
    for (std::size_t slot = 1; slot < keyboard::kKeySlots; ++slot) {
        const Key& key = m_keys[slot];
        const bool bDue = key.state == State::Reported || key.state == State::Swallowed;
        // Differences survive the counter's wrap-around.
        if (bDue && (oldest == 0 || static_cast<int>(key.order - m_keys[oldest].order) < 0)) {
            oldest = slot;
        }
    }
    return oldest;
}

void CKeyTracker::cancelLatch() noexcept {
    if (!m_bLatched) {
        return;
    }
    if (!m_bModifierDown) {
        _deactivate();
        return;
    }
    _setLatched(false);  // while the key is held, the modifier stays active
}

void CKeyTracker::handleUnhooked(const keyboard::KeyEvent& event) noexcept {
    if (event.slot == 0 || event.slot >= keyboard::kKeySlots || m_keys[event.slot].state != State::Up) {
        return;
    }
    Key& key = m_keys[event.slot];
    _press(key, event);
    if (key.state == State::Swallowed || key.state == State::Muted) {
        key.state = key.state == State::Swallowed ? State::Reported : State::Alone;
    }
}

void CKeyTracker::releaseHidden() noexcept {
    for (std::size_t slot = 1; slot < keyboard::kKeySlots; ++slot) {
        if (m_keys[slot].state == State::Swallowed || m_keys[slot].state == State::Muted) {
            _release(slot);
        }
    }
    if (m_nWithheld != 0) {
        m_nWithheld = 0;
        m_bTapAlone = false;
        _modifierUp();
    }
}

void CKeyTracker::releaseAll() noexcept {
    _deactivate();
    m_keys.fill(Key{});
    m_nDown = 0;
    m_bModifierDown = false;
    m_bModifierMissing = false;
    m_nWithheld = 0;
}

void CKeyTracker::_setLatched(bool bLatched) noexcept {
    if (m_bLatched != bLatched) {
        m_bLatched = bLatched;
        m_sink.latchChanged(bLatched);
    }
}

bool CKeyTracker::_missedTwice(bool& missing, bool isDown) noexcept {
    const bool bTwice = missing && !isDown;
    missing = !isDown;
    return bTwice;
}

}  // namespace hotkey
