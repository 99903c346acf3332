#include "Logic/FuncX/PanicThread.h"

#include "common/Status.h"

namespace {

constexpr wchar_t kEventName[] = L"FnF5Panic";

// How many threads of this process wait for the event. Only the user-interface thread counts.
int s_nWaiting = 0;

// Where the panic thread that asks notes that it is in a plug-in; null on every other thread.
thread_local std::atomic<bool>* t_pInPlugin = nullptr;

void noteInPlugin(bool bInPlugin) noexcept {
    if (t_pInPlugin != nullptr) {
        *t_pInPlugin = bInPlugin;
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
    m_bExitPanicThread = false;
    m_bInPlugin = false;
    m_hEndEvent.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    // Made here, so that a function that is dropped at once finds it.
    m_hEvent.reset(::CreateEventExW(nullptr, kEventName, 0, SYNCHRONIZE));
    m_hPanicThread.reset(::CreateThread(nullptr, 0, &CPanicThread::threadProcedure, this, 0, nullptr));
    s_nWaiting += m_hPanicThread ? 1 : 0;
}

CPanicThread::EndResult CPanicThread::end() {
    m_bExitPanicThread = true;
    const common::UniqueHandle hEvent(::OpenEventW(EVENT_MODIFY_STATE, FALSE, kEventName));
    EndResult result{static_cast<bool>(hEvent), true};
    if (!m_hPanicThread) {
        return result;
    }
    // The event wakes any one of its waiters. Where another function waits too, setting it could make that one panic:
    // the thread's own event ends it then.
    const bool bSet = hEvent && s_nWaiting == 1;
    if (bSet) {
        ::SetEvent(hEvent.get());
    }
    ::SetEvent(m_hEndEvent.get());
    result.bInTime = ::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs) != WAIT_TIMEOUT;
    if (!result.bInTime) {
        _cutOff();
    }
    if (bSet) {
        ::ResetEvent(hEvent.get());  // nobody may have taken it
    }
    m_hPanicThread.reset();
    m_hEvent.reset();
    m_hEndEvent.reset();
    --s_nWaiting;
    return result;
}

void CPanicThread::signalHeldKey(HWND hWnd, UINT_PTR uTimerId) {
    ::KillTimer(hWnd, uTimerId);
    const common::UniqueHandle hEvent(::OpenEventW(EVENT_MODIFY_STATE, FALSE, kEventName));
    if (hEvent) {
        ::SetEvent(hEvent.get());
    }
}

DWORD WINAPI CPanicThread::threadProcedure(void* pArgument) {
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
    const HRESULT hr = m_rAction.preparePanic();
    if (FAILED(hr)) {
        LOG_STATUS(hr);
    } else {
        _waitForPanic();
    }
    m_hEvent.reset();
    return 0;
}

void CPanicThread::_waitForPanic() {
    const HANDLE handles[] = {m_hEvent.get(), m_hEndEvent.get()};
    for (;;) {
        const DWORD dwWait = ::WaitForMultipleObjects(ARRAYSIZE(handles), handles, FALSE, INFINITE);
        if (dwWait == WAIT_FAILED) {
            const DWORD dwError = ::GetLastError();
            LOG_ASSERT(L"!\"Wait for FnF5 panic event failed!\"");
            LOG_LINE(::dbglog::Level::Error, L"Get last error:%d.", dwError);
            return;
        }
        if (m_rules.bLogEvents && dwWait == WAIT_OBJECT_0) {
            LOG_INFO(L"FnF5 panic event is triggered.");
        }
        if (m_bExitPanicThread) {
            return;
        }
        _panicOnce();
    }
}

void CPanicThread::_panicOnce() {
    const HRESULT hr = m_rAction.panic();
    if (SUCCEEDED(hr)) {
        return;
    }
    if (m_rules.pszFailureText != nullptr) {
        LOG_ASSERT(m_rules.pszFailureText);
    }
    LOG_STATUS(E_FAIL);
}

// A plug-in that does not come back must not keep the program from ending. The thread is ended only inside the plug-in,
// where it holds no lock of ours; its reference to the library is never given back, so what the plug-in left half done
// stays mapped.
void CPanicThread::_cutOff() const {
    ::SuspendThread(m_hPanicThread.get());
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    ::GetThreadContext(m_hPanicThread.get(), &context);  // returns once the thread stands still
    if (!m_bInPlugin) {
        ::ResumeThread(m_hPanicThread.get());
        if (::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs) != WAIT_TIMEOUT) {
            return;
        }
    }
    ::TerminateThread(m_hPanicThread.get(), 0);
    ::WaitForSingleObject(m_hPanicThread.get(), m_rules.dwEndWaitMs);
}
