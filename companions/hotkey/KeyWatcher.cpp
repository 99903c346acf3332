#include "KeyWatcher.h"

#include <algorithm>
#include <utility>

#include "KeyTrial.h"
#include "include/ZelHotkey.h"
#include "keyboard/Lock.h"
#include "keyboard/OwnInput.h"

namespace hotkey {
namespace {

bool isDownNow(DWORD virtualKey) noexcept {
    return ::GetAsyncKeyState(static_cast<int>(virtualKey)) < 0;
}

DWORD lastInputTime() noexcept {
    LASTINPUTINFO info{sizeof(info), 0};
    return ::GetLastInputInfo(&info) ? info.dwTime : ::GetTickCount();
}

// While the secure desktop or another session has the keyboard, releases do not arrive here.
bool keyboardIsElsewhere() noexcept {
    const HDESK hDesktop = ::OpenInputDesktop(0, FALSE, DESKTOP_READOBJECTS);
    if (hDesktop == nullptr) {
        return ::GetLastError() == ERROR_ACCESS_DENIED;
    }
    ::CloseDesktop(hDesktop);
    return false;
}

}  // namespace

CKeyWatcher::CKeyWatcher(INotificationSink& sink)
    : m_sink(sink),
      m_tracker(sink, *this),
      m_stickyWindow([this]() noexcept { m_tracker.cancelLatch(); }),
      m_newsWindow(*this) {}

void CKeyWatcher::setSettings(const TrackerSettings& settings) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    m_pending = settings;
}

void CKeyWatcher::handleCall() noexcept {
    m_watchdog.hookCalled(::GetTickCount64());
}

bool CKeyWatcher::handleKey(const keyboard::KeyEvent& event) noexcept {
    if (m_bEnabled.load(std::memory_order_relaxed)) {
        m_tracker.enable();
    }
    m_rhythm.keyCame(event.slot == m_nLastSlot && event.down);
    m_nLastSlot = event.down ? event.slot : 0;
    m_secondRoad.hookSaw(event, ::GetTickCount64());
    const CKeyTracker::Alone before = m_tracker.alone();
    const bool bTried = event.down && _mayAct(event) && keysAreTried();
    if (bTried) {
        m_tracker.releaseAll();
    }
    const bool bSwallow = !bTried && m_tracker.handle(event);
    _setAlarms(before);
    return bSwallow;
}

// Ordinary typing is not to cost a call of the system for each key.
bool CKeyWatcher::_mayAct(const keyboard::KeyEvent& event) const noexcept {
    return event.virtualKey == m_nModifier || m_tracker.anythingDown() || m_alone.any();
}

// By our own clock: what a key says of its time is its sender's.
void CKeyWatcher::_setAlarms(CKeyTracker::Alone before) noexcept {
    const ULONGLONG now = ::GetTickCount64();
    if (!m_tracker.anythingDown()) {
        m_look.cancel();
    } else if (!m_look.isSet() || m_look.timeLeft(now) > m_rhythm.interval()) {
        m_look.set(now + m_rhythm.interval());
    }
    const CKeyTracker::Alone alone = m_tracker.alone();
    if (alone != CKeyTracker::Alone::Released) {
        m_aloneEnd.cancel();
    } else if (before != alone) {
        m_aloneEnd.set(now + m_nReleaseDelay);
    }
}

void CKeyWatcher::handleStart() noexcept {
    _takePending();
}

void CKeyWatcher::handleWake() noexcept {
    m_newsWindow.open();
    _takePending();
    if (m_bEnabled.load(std::memory_order_relaxed)) {
        m_tracker.enable();
        m_secondRoad.set(m_newsWindow.handle(), m_alone);
    }
}

void CKeyWatcher::_takePending() noexcept {
    std::optional<TrackerSettings> settings;
    {
        const keyboard::CExclusiveLock lock(m_lock);
        settings = std::exchange(m_pending, std::nullopt);
    }
    if (settings) {
        _takeSettings(*settings);
    }
}

void CKeyWatcher::_takeSettings(const TrackerSettings& settings) noexcept {
    m_nModifier = settings.modifierKey;
    m_nReleaseDelay = settings.releaseDelay;
    m_alone = settings.alone;
    m_tracker.setSettings(settings);
    if (settings.sticky) {
        m_stickyWindow.open();
    } else {
        m_stickyWindow.close();
    }
}

void CKeyWatcher::keyboardUsed() noexcept {
    m_watchdog.keyboardUsed(::GetTickCount64());
}

void CKeyWatcher::registeredKeyPressed(DWORD id) noexcept {
    const ULONGLONG now = ::GetTickCount64();
    const keyboard::KeyEvent event = m_secondRoad.pressed(id, now);
    if (event.slot == 0 || keysAreTried()) {
        return;
    }
    m_watchdog.keyboardUsed(now);
    m_rhythm.keyCame(false);
    const CKeyTracker::Alone before = m_tracker.alone();
    m_tracker.handleUnhooked(event);
    _setAlarms(before);
}

void CKeyWatcher::keyboardChangedHands() noexcept {
    m_nWhyNewHook = ZEL_CONFIG_HOOK_RENEWED;
    m_tracker.releaseAll();
}

bool CKeyWatcher::wantsNewHook() noexcept {
    return m_nWhyNewHook != 0;
}

void CKeyWatcher::handleNewHook() noexcept {
    m_sink.hookRenewed(std::exchange(m_nWhyNewHook, 0));
}

void CKeyWatcher::handleTick() noexcept {
    const ULONGLONG now = ::GetTickCount64();
    if (m_aloneEnd.takeIfDue(now)) {
        m_tracker.endAlone();
    }
    // Whoever tries keys out hides them from this hook.
    if (m_watchdog.takeIfLost(now, lastInputTime()) && !keysAreTried()) {
        m_nWhyNewHook = ZEL_CONFIG_HOOK_LOST;
        const CKeyTracker::Alone before = m_tracker.alone();
        m_tracker.releaseHidden();
        _setAlarms(before);
    }
    if (m_look.takeIfDue(now)) {
        const CKeyTracker::Alone before = m_tracker.alone();
        _lookForLostKeys();
        _setAlarms(before);
    }
}

void CKeyWatcher::_lookForLostKeys() noexcept {
    if (keyboardIsElsewhere()) {
        m_tracker.releaseAll();
        return;
    }
    bool bMissing = false;
    m_tracker.checkLostKeys([&bMissing](DWORD virtualKey) noexcept {
        const bool bDown = isDownNow(virtualKey);
        bMissing = bMissing || !bDown;
        return bDown;
    });
    m_rhythm.looked(bMissing);
}

DWORD CKeyWatcher::timeToTick() const noexcept {
    const ULONGLONG now = ::GetTickCount64();
    return std::min({m_look.timeLeft(now), m_aloneEnd.timeLeft(now), m_watchdog.timeLeft(now)});
}

void CKeyWatcher::tap(DWORD virtualKey) noexcept {
    keyboard::tapKey(virtualKey);
}

void CKeyWatcher::handleEnd() noexcept {
    m_tracker.releaseAll();
    m_secondRoad.set(m_newsWindow.handle(), {});
    m_newsWindow.close();
    m_stickyWindow.close();
}

}  // namespace hotkey
