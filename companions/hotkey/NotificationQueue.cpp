#include "NotificationQueue.h"

#include <utility>

#include "keyboard/Lock.h"

namespace hotkey {

CNotificationQueue::CNotificationQueue() noexcept : m_hFilled(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

bool CNotificationQueue::make(DWORD code) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    if (m_nCount + m_nOpen + 2 > kCapacity) {
        return false;
    }
    ++m_nOpen;
    _store({code, false});
    return true;
}

bool CNotificationQueue::promiseBreak() noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    if (m_nCount + m_nOpen + 1 > kCapacity) {
        return false;
    }
    ++m_nOpen;
    return true;
}

void CNotificationQueue::breakOf(DWORD code) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    if (m_nOpen == 0 || m_nCount == kCapacity) {
        return;
    }
    --m_nOpen;
    _store({code, true});
}

void CNotificationQueue::latchChanged(bool bLatched) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    m_bLatched = bLatched;
    m_bLatchNews = true;
    ::SetEvent(m_hFilled.get());
}

void CNotificationQueue::hookRenewed(DWORD why) noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    m_hookNews = why;
    ::SetEvent(m_hFilled.get());
}

std::optional<DWORD> CNotificationQueue::takeHookNews() noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    return std::exchange(m_hookNews, std::nullopt);
}

void CNotificationQueue::_store(const Notification& notification) noexcept {
    m_ring[(m_nFirst + m_nCount) % kCapacity] = notification;
    ++m_nCount;
    ::SetEvent(m_hFilled.get());
}

std::optional<Notification> CNotificationQueue::pop() noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    if (m_nCount == 0) {
        return std::nullopt;
    }
    const Notification first = m_ring[m_nFirst];
    m_nFirst = (m_nFirst + 1) % kCapacity;
    --m_nCount;
    return first;
}

std::optional<bool> CNotificationQueue::takeLatchChange() noexcept {
    const keyboard::CExclusiveLock lock(m_lock);
    if (!m_bLatchNews) {
        return std::nullopt;
    }
    m_bLatchNews = false;
    return m_bLatched;
}

}  // namespace hotkey
