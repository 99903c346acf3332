// A low-level keyboard hook on a thread of its own.
#pragma once

#include <windows.h>

#include <memory>

#include "common/Handle.h"
#include "keyboard/KeyEvent.h"
#include "keyboard/LibraryThread.h"

namespace keyboard {

// All calls come on the hook's thread.
class IHookClient {
 public:
    virtual ~IHookClient() = default;
    // Inside the hook: the whole desktop waits for the result, and the system drops a slow hook. True swallows.
    [[nodiscard]] virtual bool handleKey(const KeyEvent& event) noexcept = 0;
    // The hook was called, for whatever reason and whoever pressed the key.
    virtual void handleCall() noexcept {}
    // Before CHookThread::start() returns. What can wait, like windows that only the client needs, belongs to the first
    // handleWake(): a thread's first window takes longer than all the rest.
    virtual void handleStart() noexcept {}
    // After CHookThread::wake(), and once before the first key.
    virtual void handleWake() noexcept {}
    // timeToTick() ms from now, which is asked after everything that happens; INFINITE: never.
    virtual void handleTick() noexcept {}
    [[nodiscard]] virtual DWORD timeToTick() const noexcept { return INFINITE; }
    // Whether the hook is to be installed anew; asked after everything that happens. handleNewHook() follows when that
    // has succeeded.
    [[nodiscard]] virtual bool wantsNewHook() noexcept { return false; }
    virtual void handleNewHook() noexcept {}
    // The hook has been removed; the last call.
    virtual void handleEnd() noexcept {}
};

// At most one per module at a time, because a low-level hook's procedure has no context argument.
class CHookThread {
 public:
    CHookThread() noexcept;

    // Returns once the hook is installed, or with the error. `client` must live until the thread has ended, which
    // `keepAlive` (held by the thread) can ensure. E_UNEXPECTED while this module has another hook.
    [[nodiscard]] HRESULT start(IHookClient& client, std::shared_ptr<void> keepAlive);
    void wake() noexcept { ::SetEvent(m_hWake.get()); }
    void requestStop() noexcept { ::SetEvent(m_hStop.get()); }
    [[nodiscard]] bool wait(DWORD milliseconds) const noexcept { return m_thread.wait(milliseconds); }

 private:
    void _run(IHookClient& client) noexcept;
    [[nodiscard]] static common::UniqueHook _install() noexcept;
    static void _renew(IHookClient& client, common::UniqueHook& hook) noexcept;
    void _loop(IHookClient& client, common::UniqueHook& hook) noexcept;
    static LRESULT CALLBACK _hookProc(int code, WPARAM wParam, LPARAM lParam) noexcept;

    CLibraryThread m_thread;
    common::UniqueHandle m_hReady;
    common::UniqueHandle m_hWake;
    common::UniqueHandle m_hStop;
    HRESULT m_installStatus = E_PENDING;
};

}  // namespace keyboard
