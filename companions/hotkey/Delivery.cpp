#include "Delivery.h"

#include <algorithm>
#include <utility>

#include "ConfigDigest.h"
#include "LatchState.h"
#include "common/ObjectSecurity.h"

namespace hotkey {
namespace {

constexpr ULONGLONG kEndRepeat = 1000;  // ms

common::UniqueHandle newEvent(bool bManualReset, const wchar_t* name = nullptr) noexcept {
    return common::UniqueHandle(::CreateEventW(common::OnlyForTheUser().get(), bManualReset, FALSE, name));
}

}  // namespace

CDelivery::CDelivery(CNotificationQueue& queue, Targets targets, std::uint64_t digest)
    : m_queue(queue),
      m_targets(std::move(targets)),
      m_nDigest(digest),
      m_hStop(newEvent(true)),
      m_hEnd(newEvent(true, ZEL_END_EVENT)) {
    if (m_hEnd) {
        ::ResetEvent(m_hEnd.get());  // a request to end from an earlier run
    }
}

bool CDelivery::ready() const noexcept {
    return m_hStop && m_queue.filledEvent() != nullptr && m_watch.event() != nullptr;
}

void CDelivery::run() noexcept {
    publishLatch(false);  // left over from a run that was cut off
    _armWatch();
    for (;;) {
        ULONGLONG now = ::GetTickCount64();
        // In order of urgency; the end event comes last, so that it can be omitted.
        const HANDLE handles[] = {m_hStop.get(), m_queue.filledEvent(), m_watch.event(), m_hEnd.get()};
        const DWORD nHandles = m_hEnd && m_nNextEnd == 0 ? 4 : 3;
        const DWORD reason = ::WaitForMultipleObjects(nHandles, handles, FALSE, _timeout(now));
        _deliverKeys();
        if (reason == WAIT_OBJECT_0 || reason == WAIT_FAILED || m_bAbandoned) {
            break;
        }
        if (reason == WAIT_OBJECT_0 + 2) {
            _armWatch();
        }
        now = ::GetTickCount64();
        _sendEnd(now);
        if (m_quiet.takeIfDue(now)) {
            _reportChange();
        }
    }
}

void CDelivery::_deliverKeys() noexcept {
    while (!m_bAbandoned) {
        const std::optional<Notification> next = m_queue.pop();
        if (const std::optional<bool> latch = m_queue.takeLatchChange()) {
            publishLatch(*latch);
            _sendConfig(*latch ? ZEL_CONFIG_LATCHED : ZEL_CONFIG_UNLATCHED);
        }
        if (const std::optional<DWORD> why = m_queue.takeHookNews()) {
            _sendConfig(*why);
        }
        if (!next) {
            return;
        }
        m_targets.hotkey(next->code, next->isBreak ? ZEL_BREAK : ZEL_MAKE);
    }
}

void CDelivery::_armWatch() noexcept {
    try {
        m_watch.arm();
    } catch (...) {
        // The keys that are watched already must do.
    }
    m_quiet.touch(::GetTickCount64());
}

void CDelivery::_reportChange() noexcept {
    try {
        const std::uint64_t nDigest = digestConfiguration();
        if (nDigest == m_nDigest) {
            return;
        }
        m_targets.configurationChanged();
        m_nDigest = nDigest;  // only now: a change that could not be applied remains a change
    } catch (...) {
        m_quiet.touch(::GetTickCount64());  // later
        return;
    }
    _sendConfig(ZEL_CONFIG_CHANGED);
}

void CDelivery::_sendEnd(ULONGLONG now) noexcept {
    if (!m_hEnd || now < m_nNextEnd) {
        return;
    }
    const bool bSet = ::WaitForSingleObject(m_hEnd.get(), 0) == WAIT_OBJECT_0;
    m_nNextEnd = bSet ? now + kEndRepeat : 0;
    if (bSet) {
        _sendConfig(ZEL_CONFIG_END);
    }
}

void CDelivery::_sendConfig(DWORD code) noexcept {
    if (!m_bAbandoned) {
        m_targets.config(code);
    }
}

DWORD CDelivery::_timeout(ULONGLONG now) const noexcept {
    const DWORD nQuiet = m_quiet.timeLeft(now);
    if (m_nNextEnd == 0) {
        return nQuiet;
    }
    const DWORD nEnd = now >= m_nNextEnd ? 0 : static_cast<DWORD>(m_nNextEnd - now);
    return std::min(nQuiet, nEnd);
}

}  // namespace hotkey
