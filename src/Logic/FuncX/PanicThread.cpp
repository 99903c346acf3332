#include "Logic/FuncX/PanicThread.h"

#include <mutex>
#include <utility>
#include <vector>

#include "Logic/Faults/PluginCall.h"
#include "common/ObjectSecurity.h"
#include "common/Status.h"

namespace {

constexpr wchar_t kEventName[] = L"FnF5Panic";

// The threads of this process that wait for the event; the lock also protects all their m_bHeld. Only the
// user-interface thread changes the list.
std::mutex s_waitingLock;
std::vector<CPanicThread*> s_vecWaiting;

// The one whose function's key was pressed last; null if it no longer exists. User-interface thread only.
CPanicThread* s_pArmed = nullptr;

// Where the calling panic thread notes that it is in a plug-in; null on every other thread.
thread_local std::atomic<bool>* t_pInPlugin = nullptr;

void noteInPlugin(bool bInPlugin) noexcept {
    if (t_pInPlugin != nullptr) {
        *t_pInPlugin = bInPlugin;
    }
}

// Reserved in advance, so that a running thread is always in the list, even when memory runs out.
bool hasRoomForOneMore() noexcept {
    try {
        const std::lock_guard lock(s_waitingLock);
        s_vecWaiting.reserve(s_vecWaiting.size() + 1);
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace

CPanicThread::PluginCall::PluginCall() noexcept {
    noteInPlugin(true);
}

CPanicThread::PluginCall::~PluginCall() {
    noteInPlugin(false);
}

CPanicThread::~CPanicThread() {
    if (m_hPanicThread) {
        end();
    }
}

void CPanicThread::start() {
    if (m_hPanicThread) {
        return;
    }
    if (!hasRoomForOneMore()) {
        return;
    }
    m_bExitPanicThread = false;
    m_bInPlugin = false;
    m_hOwnEvent.reset(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    // Created here, so that a function that is destroyed at once finds it.
    m_hEvent.reset(::CreateEventExW(common::OnlyForTheUser().get(), kEventName, 0, SYNCHRONIZE));
    m_hPanicThread.reset(::CreateThread(nullptr, 0, &CPanicThread::threadProcedure, this, 0, nullptr));
    if (m_hPanicThread) {
        const std::lock_guard lock(s_waitingLock);
        s_vecWaiting.push_back(this);
    }
}

CPanicThread::EndResult CPanicThread::end() {
    m_bExitPanicThread = true;
    const common::UniqueHandle hEvent(::OpenEventW(EVENT_MODIFY_STATE, FALSE, kEventName));
    EndResult result{static_cast<bool>(hEvent), true};
    if (!m_hPanicThread) {
        return result;
    }
    // The event wakes any one of its waiters. If another function waits too, setting the event could make that one
    // panic, so the thread is ended by its own event then.
    const bool bSet = hEvent && s_vecWaiting.size() == 1;
    if (bSet) {
        ::SetEvent(hEvent.get());
    }
    ::SetEvent(m_hOwnEvent.get());
    result.bInTime = ::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs) != WAIT_TIMEOUT;
    if (!result.bInTime) {
        _cutOff();
    }
    if (bSet) {
        ::ResetEvent(hEvent.get());  // in case no thread has taken it
    }
    _forget();
    m_hPanicThread.reset();
    m_hEvent.reset();
    m_hOwnEvent.reset();
    return result;
}

// From here on no other thread wakes this one.
void CPanicThread::_forget() {
    const std::lock_guard lock(s_waitingLock);
    std::erase(s_vecWaiting, this);
    m_bHeld = false;
    if (s_pArmed == this) {
        s_pArmed = nullptr;
    }
}

void CPanicThread::arm(HWND hWnd, UINT_PTR uTimerId, TIMERPROC pfTimer) {
    s_pArmed = this;
    ::SetTimer(hWnd, uTimerId, kHeldKeyMs, pfTimer);
}

void CPanicThread::signalHeldKey(HWND hWnd, UINT_PTR uTimerId) noexcept {
    ::KillTimer(hWnd, uTimerId);
    if (s_pArmed == nullptr) {
        return;  // its function has ended meanwhile, and no other is meant
    }
    const std::lock_guard lock(s_waitingLock);
    s_pArmed->m_bHeld = true;
    const common::UniqueHandle hEvent(::OpenEventW(EVENT_MODIFY_STATE, FALSE, kEventName));
    if (hEvent) {
        ::SetEvent(hEvent.get());
    }
}

DWORD WINAPI CPanicThread::threadProcedure(void* pArgument) noexcept {
    if (pArgument == nullptr) {
        LOG_STATUS(0);
        return 0;
    }
    return static_cast<CPanicThread*>(pArgument)->_run();
}

DWORD CPanicThread::_run() {
    t_pInPlugin = &m_bInPlugin;
    if (!m_hEvent) {
        LOG_ASSERT(L"hevtFnF5Panic");
        LOG_STATUS(E_POINTER);
        return static_cast<DWORD>(E_POINTER);
    }
    const HRESULT status = common::statusOf([this] { return m_rAction.preparePanic(); });
    if (FAILED(status)) {
        LOG_STATUS(status);
    } else {
        _waitForPanic();
    }
    m_hEvent.reset();
    return 0;
}

void CPanicThread::_waitForPanic() {
    const HANDLE handles[] = {m_hEvent.get(), m_hOwnEvent.get()};
    for (;;) {
        const DWORD dwWait = ::WaitForMultipleObjects(ARRAYSIZE(handles), handles, FALSE, INFINITE);
        if (dwWait == WAIT_FAILED) {
            const DWORD dwError = ::GetLastError();
            LOG_ASSERT(L"!\"Wait for FnF5 panic event failed!\"");
            LOG_LINE(::dbglog::Level::Error, L"Get last error:%d.", dwError);
            return;
        }
        const bool bMeant = dwWait != WAIT_OBJECT_0 || _isMeant();
        if (m_rules.bLogEvents && bMeant && (dwWait == WAIT_OBJECT_0 || !m_bExitPanicThread)) {
            LOG_INFO(L"FnF5 panic event is triggered.");
        }
        if (m_bExitPanicThread) {
            return;
        }
        if (bMeant) {
            _panicOnce();
        }
    }
}

// Whether the event that has woken this thread is for its function. If it is for others, their own events are set; that
// covers everything the event can still stand for.
bool CPanicThread::_isMeant() {
    const std::lock_guard lock(s_waitingLock);
    const bool bOwn = std::exchange(m_bHeld, false);
    bool bOthers = false;
    for (CPanicThread* const pOther : s_vecWaiting) {
        if (std::exchange(pOther->m_bHeld, false)) {
            ::SetEvent(pOther->m_hOwnEvent.get());
            bOthers = true;
        }
    }
    if (bOwn || bOthers) {
        ::ResetEvent(m_hEvent.get());
    }
    return bOwn || !bOthers;
}

void CPanicThread::_panicOnce() {
    const HRESULT status = common::statusOf([this] { return m_rAction.panic(); });
    if (SUCCEEDED(status)) {
        return;
    }
    if (m_rules.pszFailureText != nullptr) {
        LOG_ASSERT(m_rules.pszFailureText);
    }
    LOG_STATUS(E_FAIL);
}

// A plug-in that does not return must not keep the program from ending. The thread is terminated only inside the
// plug-in, where it holds no lock of ours; its reference to the library is never released, so what the plug-in left
// unfinished stays mapped.
void CPanicThread::_cutOff() const {
    ::SuspendThread(m_hPanicThread.get());
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    ::GetThreadContext(m_hPanicThread.get(), &context);  // returns once the thread has stopped
    if (!m_bInPlugin) {
        ::ResumeThread(m_hPanicThread.get());
        if (::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs) != WAIT_TIMEOUT) {
            return;
        }
    }
    const DWORD dwThread = ::GetThreadId(m_hPanicThread.get());
    ::TerminateThread(m_hPanicThread.get(), 0);
    faults::forgetCallsOf(dwThread);
    ::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs);
}
