#include "KeyWatcher.h"

#include <utility>

#include "keyboard/Lock.h"
#include "keyboard/OwnInput.h"

namespace hotkey {
namespace {

bool isDownNow(DWORD virtualKey) noexcept {
    return ::GetAsyncKeyState(static_cast<int>(virtualKey)) < 0;
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
    : m_tracker(sink, *this), m_stickyWindow([this]() noexcept { m_tracker.cancelLatch(); }) {}

void CKeyWatcher::setSettings(const TrackerSettings& settings) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    m_pending = settings;
}

bool CKeyWatcher::handleKey(const keyboard::KeyEvent& event) noexcept {
    if (m_bEnabled.load(std::memory_order_relaxed)) {
        m_tracker.enable();
    }
    m_rhythm.keyCame(event.slot == m_nLastSlot && event.down);
    m_nLastSlot = event.down ? event.slot : 0;
    return m_tracker.handle(event);
}

void CKeyWatcher::handleWake() noexcept {
    std::optional<TrackerSettings> settings;
    {
        const keyboard::CExclusiveLock lock(m_lock);
        settings = std::exchange(m_pending, std::nullopt);
    }
    if (!settings) {
        return;
    }
    m_tracker.setSettings(*settings);
    if (settings->sticky) {
        m_stickyWindow.open();
    } else {
        m_stickyWindow.close();
    }
}

void CKeyWatcher::handleTick() noexcept {
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

DWORD CKeyWatcher::tickInterval() const noexcept {
    return m_tracker.anythingDown() ? m_rhythm.interval() : INFINITE;
}

void CKeyWatcher::tap(DWORD virtualKey) noexcept {
    keyboard::tapKey(virtualKey);
}

void CKeyWatcher::handleEnd() noexcept {
    m_tracker.releaseAll();
    m_stickyWindow.close();
}

}  // namespace hotkey
