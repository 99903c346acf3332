#include "PrintScreenHook.h"

#include "common/Caught.h"

namespace prtscreen {
namespace {

// How long the key waits for the callback, in ms: far below the 300 ms after which the system drops a hook.
constexpr DWORD kHoldBack = 100;
constexpr DWORD kStopTimeout = 500;  // ms, for each thread

common::UniqueHandle autoResetEvent() noexcept {
    return common::UniqueHandle(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
}

}  // namespace

CPrintScreenHook::CPrintScreenHook(PrtHookCallback callback) noexcept
    : m_callback(callback), m_hPressed(autoResetEvent()), m_hDone(autoResetEvent()) {}

HRESULT CPrintScreenHook::start() {
    if (!m_hPressed || !m_hDone) {
        return E_OUTOFMEMORY;
    }
    HRESULT status =
        common::statusOf([this] { return m_helper.start([self = shared_from_this()]() noexcept { self->_help(); }); });
    if (SUCCEEDED(status)) {
        status = m_hook.start(*this, shared_from_this());
    }
    if (FAILED(status)) {
        static_cast<void>(stop());
    }
    return status;
}

bool CPrintScreenHook::stop() noexcept {
    m_hook.requestStop();
    const bool bHookEnded = m_hook.wait(kStopTimeout);
    m_bStopping = true;
    ::SetEvent(m_hPressed.get());
    return m_helper.wait(kStopTimeout) && bHookEnded;
}

bool CPrintScreenHook::handleKey(const keyboard::KeyEvent& event) noexcept {
    if (event.virtualKey == VK_SNAPSHOT && m_filter.isPress(event.down, event.time)) {
        // Passing the key on takes the picture, so this one key may wait; all others are answered at once.
        ::ResetEvent(m_hDone.get());
        ::SetEvent(m_hPressed.get());
        ::WaitForSingleObject(m_hDone.get(), kHoldBack);
    }
    return false;
}

void CPrintScreenHook::_help() noexcept {
    for (;;) {
        ::WaitForSingleObject(m_hPressed.get(), INFINITE);
        if (m_bStopping) {
            return;
        }
        m_callback();
        ::SetEvent(m_hDone.get());
    }
}

}  // namespace prtscreen
