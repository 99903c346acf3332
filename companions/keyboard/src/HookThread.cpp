#include "keyboard/HookThread.h"

#include <atomic>
#include <utility>

#include "common/Caught.h"
#include "keyboard/OwnInput.h"
#include "keyboard/OwnModule.h"

namespace keyboard {
namespace {

std::atomic<IHookClient*> s_pClient{nullptr};

constexpr DWORD kInstallTimeout = 5000;

common::UniqueHandle autoResetEvent() noexcept {
    return common::UniqueHandle(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
}

void drainMessages() noexcept {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::DispatchMessageW(&message);
    }
}

// Time left until the next tick; the deadline is relative to `lastTick`.
DWORD timeToTick(DWORD interval, ULONGLONG lastTick) noexcept {
    if (interval == INFINITE) {
        return INFINITE;
    }
    const ULONGLONG passed = ::GetTickCount64() - lastTick;
    return passed >= interval ? 0 : interval - static_cast<DWORD>(passed);
}

}  // namespace

CHookThread::CHookThread() noexcept
    : m_hReady(autoResetEvent()), m_hWake(autoResetEvent()), m_hStop(autoResetEvent()) {}

HRESULT CHookThread::start(IHookClient& client, std::shared_ptr<void> keepAlive) {
    if (!m_hReady || !m_hWake || !m_hStop) {
        return E_OUTOFMEMORY;
    }
    IHookClient* expected = nullptr;
    if (!s_pClient.compare_exchange_strong(expected, &client)) {
        return E_UNEXPECTED;
    }
    const HRESULT status = common::statusOf(
        [&] { return m_thread.start([this, &client, alive = std::move(keepAlive)]() noexcept { _run(client); }); });
    if (FAILED(status)) {
        s_pClient = nullptr;
        return status;
    }
    if (::WaitForSingleObject(m_hReady.get(), kInstallTimeout) != WAIT_OBJECT_0) {
        requestStop();
        return HRESULT_FROM_WIN32(ERROR_TIMEOUT);
    }
    return m_installStatus;
}

void CHookThread::_run(IHookClient& client) noexcept {
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_HIGHEST);
    drainMessages();  // creates the thread's message queue; without it the hook would miss a key before the first wait
    {
        const common::UniqueHook hook(::SetWindowsHookExW(WH_KEYBOARD_LL, &CHookThread::_hookProc, ownModule(), 0));
        const bool bInstalled = static_cast<bool>(hook);
        m_installStatus = bInstalled ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
        if (bInstalled) {
            client.handleWake();
        }
        ::SetEvent(m_hReady.get());
        if (bInstalled) {
            _loop(client);
        }
    }
    client.handleEnd();
    s_pClient = nullptr;
}

void CHookThread::_loop(IHookClient& client) noexcept {
    const HANDLE events[] = {m_hStop.get(), m_hWake.get()};
    ULONGLONG lastTick = ::GetTickCount64();
    bool bTicking = false;
    for (;;) {
        const DWORD interval = client.tickInterval();
        if (bTicking != (interval != INFINITE)) {
            bTicking = !bTicking;
            lastTick = ::GetTickCount64();
        }
        const DWORD timeout = timeToTick(interval, lastTick);
        const DWORD reason = ::MsgWaitForMultipleObjectsEx(2, events, timeout, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (reason == WAIT_OBJECT_0 || reason == WAIT_FAILED) {
            return;
        }
        if (reason == WAIT_OBJECT_0 + 1) {
            client.handleWake();
        }
        drainMessages();  // calls the hook
        if (bTicking && timeToTick(interval, lastTick) == 0) {
            lastTick = ::GetTickCount64();
            client.handleTick();
        }
    }
}

LRESULT CALLBACK CHookThread::_hookProc(int code, WPARAM wParam, LPARAM lParam) noexcept {
    IHookClient* const pClient = s_pClient.load(std::memory_order_acquire);
    if (code == HC_ACTION && pClient != nullptr) {
        const KBDLLHOOKSTRUCT& info = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam);
        if (!isOwnInput(info) && pClient->handleKey(keyEventOf(info))) {
            return 1;
        }
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace keyboard
