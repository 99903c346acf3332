#include "KeyTracker.h"

namespace hotkey {

void CKeyTracker::setSettings(const TrackerSettings& settings) noexcept {
    if (settings.modifierKey != m_settings.modifierKey) {
        releaseAll();
    }
    m_settings = settings;
    if (!m_settings.sticky) {
        cancelLatch();
    }
}

bool CKeyTracker::handle(const keyboard::KeyEvent& event) noexcept {
    if (event.virtualKey == m_settings.modifierKey) {
        if (event.down) {
            _modifierDown(event.time);
        } else {
            _modifierUp();
        }
        return false;
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
    if (!m_bEnabled) {
        return;
    }
    m_bTapAlone = !m_bActive;
    if (!m_bActive) {
        m_bActive = m_sink.make(0);
    }
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

void CKeyTracker::_press(Key& key, const keyboard::KeyEvent& event) noexcept {
    ++m_nDown;
    key = Key{State::Alone, false, event.virtualKey, event.time, ++m_nPresses};
    if (!m_bActive) {
        return;
    }
    m_bTapAlone = false;
    const bool bReported = m_sink.make(keyboard::codeOfSlot(event.slot));
    if (m_settings.listed.test(event.slot)) {
        key.state = bReported ? State::Swallowed : State::Muted;
    } else if (bReported) {
        key.state = State::Reported;
    }
}

void CKeyTracker::_release(std::size_t slot) noexcept {
    Key& key = m_keys[slot];
    if (key.state == State::Up) {
        return;
    }
    if (key.state == State::Reported || key.state == State::Swallowed) {
        m_sink.breakOf(keyboard::codeOfSlot(slot));
    }
    key = Key{};
    --m_nDown;
}

void CKeyTracker::_deactivate() noexcept {
    if (!m_bActive) {
        return;
    }
    for (std::size_t slot = _oldestDue(); slot != 0; slot = _oldestDue()) {
        Key& key = m_keys[slot];
        m_sink.breakOf(keyboard::codeOfSlot(slot));
        key.state = key.state == State::Swallowed ? State::Muted : State::Alone;
    }
    m_bActive = false;
    m_bTapAlone = false;
    _setLatched(false);
    m_sink.breakOf(0);
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
    _setLatched(false);  // the hand on the key keeps the modifier active until it goes up
}

void CKeyTracker::releaseAll() noexcept {
    _deactivate();
    m_keys.fill(Key{});
    m_nDown = 0;
    m_bModifierDown = false;
    m_bModifierMissing = false;
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
