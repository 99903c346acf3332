#include "HotkeySession.h"

#include "ConfigDigest.h"
#include "HotkeySettings.h"
#include "common/Caught.h"

namespace hotkey {
namespace {

constexpr ULONGLONG kStopTimeout = 1000;  // ms, for both threads together

DWORD timeLeft(ULONGLONG deadline) noexcept {
    const ULONGLONG now = ::GetTickCount64();
    return now >= deadline ? 0 : static_cast<DWORD>(deadline - now);
}

}  // namespace

// The digest is computed before the settings are read: a change in between is reported rather than missed.
CHotkeySession::CHotkeySession(ZelHotkeyCallback hotkeyCallback, ZelConfigCallback configCallback)
    : m_watcher(m_queue),
      m_delivery(m_queue, {hotkeyCallback, configCallback, [this] { _readSettings(); }}, digestConfiguration()) {}

void CHotkeySession::_readSettings() {
    m_watcher.setSettings(readTrackerSettings());
    m_hook.wake();
}

HRESULT CHotkeySession::start() {
    if (!m_delivery.ready()) {
        return E_OUTOFMEMORY;
    }
    _readSettings();
    HRESULT status = m_hook.start(m_watcher, shared_from_this());
    if (SUCCEEDED(status)) {
        status = common::statusOf([this] {
            return m_deliveryThread.start([self = shared_from_this()]() noexcept { self->m_delivery.run(); });
        });
    }
    if (FAILED(status)) {
        m_hook.requestStop();
        static_cast<void>(m_hook.wait(kStopTimeout));
    }
    return status;
}

HRESULT CHotkeySession::stop() noexcept {
    const ULONGLONG deadline = ::GetTickCount64() + kStopTimeout;
    // The hook ends first: its end queues the missing breaks.
    m_hook.requestStop();
    const bool bHookEnded = m_hook.wait(timeLeft(deadline));
    m_delivery.requestStop();
    const bool bDelivered = m_deliveryThread.wait(timeLeft(deadline));
    m_delivery.abandon();
    return bHookEnded && bDelivered ? S_OK : HRESULT_FROM_WIN32(ERROR_TIMEOUT);
}

}  // namespace hotkey
