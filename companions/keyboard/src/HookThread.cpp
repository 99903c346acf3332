#include "keyboard/HookThread.h"

#include <atomic>
#include <utility>

#include "common/Caught.h"
#include "common/SystemLoops.h"
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
        if (!common::startsLoopOfInputMethod(message)) {
            ::DispatchMessageW(&message);
        }
    }
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
        common::UniqueHook hook = _install();
        const bool bInstalled = static_cast<bool>(hook);
        m_installStatus = bInstalled ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
        if (bInstalled) {
            client.handleStart();
        }
        ::SetEvent(m_hReady.get());
        if (bInstalled) {
            client.handleWake();
            _loop(client, hook);
        }
    }
    client.handleEnd();
    s_pClient = nullptr;
}

common::UniqueHook CHookThread::_install() noexcept {
    return common::UniqueHook(::SetWindowsHookExW(WH_KEYBOARD_LL, &CHookThread::_hookProc, ownModule(), 0));
}

// The old hook goes when the new one is there: no key comes between, because hooks are called in this thread's own
// message loop. One that the system has dropped already goes as well.
void CHookThread::_renew(IHookClient& client, common::UniqueHook& hook) noexcept {
    common::UniqueHook renewed = _install();
    if (renewed) {
        hook = std::move(renewed);
        client.handleNewHook();
    }
}

void CHookThread::_loop(IHookClient& client, common::UniqueHook& hook) noexcept {
    const HANDLE events[] = {m_hStop.get(), m_hWake.get()};
    for (;;) {
        const DWORD reason =
            ::MsgWaitForMultipleObjectsEx(2, events, client.timeToTick(), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (reason == WAIT_OBJECT_0 || reason == WAIT_FAILED) {
            return;
        }
        if (reason == WAIT_OBJECT_0 + 1) {
            client.handleWake();
        }
        drainMessages();  // calls the hook
        if (client.timeToTick() == 0) {
            client.handleTick();
        }
        if (client.wantsNewHook()) {
            _renew(client, hook);
        }
    }
}

LRESULT CALLBACK CHookThread::_hookProc(int code, WPARAM wParam, LPARAM lParam) noexcept {
    IHookClient* const pClient = s_pClient.load(std::memory_order_acquire);
    if (code == HC_ACTION && pClient != nullptr) {
        const KBDLLHOOKSTRUCT& info = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam);
        pClient->handleCall();
        if (!isOwnInput(info) && pClient->handleKey(keyEventOf(info))) {
            return 1;
        }
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace keyboard
