#include "KeyWatcher.h"

#include <utility>

#include "keyboard/Lock.h"
#include "keyboard/OwnInput.h"

namespace hotkey {
namespace {

constexpr DWORD kLostKeyCheck = 100;  // ms; a key counts as lost at the second check

bool isDownNow(DWORD virtualKey) noexcept {
    return ::GetAsyncKeyState(static_cast<int>(virtualKey)) < 0;
}

// While the secure desktop or another session has the keyboard, releases do not come here.
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
    m_tracker.checkLostKeys(&isDownNow);
}

DWORD CKeyWatcher::tickInterval() const noexcept {
    return m_tracker.anythingDown() ? kLostKeyCheck : INFINITE;
}

void CKeyWatcher::tap(DWORD virtualKey) noexcept {
    keyboard::tapKey(virtualKey);
}

void CKeyWatcher::handleEnd() noexcept {
    m_tracker.releaseAll();
    m_stickyWindow.close();
}

}  // namespace hotkey
