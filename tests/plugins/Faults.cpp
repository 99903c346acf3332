#include "Faults.h"

#include <cfloat>
#include <cstdlib>

namespace instr {

namespace {

// Volatile, so that the compiler does not see through the faults.
volatile LONG* volatile g_plNothing = nullptr;
volatile LONG g_lSink = 0;
LONG overflow(LONG lDepth);
LONG (*volatile g_pfOverflow)(LONG) = &overflow;

void violate() {
    *g_plNothing = 1;
}

LONG overflow(LONG lDepth) {
    volatile char frame[4096];
    frame[0] = static_cast<char>(lDepth);
    g_lSink = lDepth;
    return g_pfOverflow(lDepth + 1) + frame[0];
}

DWORD WINAPI keepHeap(void* /*unused*/) {
    ::HeapLock(::GetProcessHeap());
    return 0;
}

DWORD WINAPI violateThere(void* /*unused*/) {
    violate();
    return 0;
}

void runThread(LPTHREAD_START_ROUTINE pfThread, bool bWait) {
    const HANDLE hThread = ::CreateThread(nullptr, 0, pfThread, nullptr, 0, nullptr);
    if (bWait) {
        ::WaitForSingleObject(hThread, INFINITE);
    }
    ::CloseHandle(hThread);
}

void spoilState() {
    ::_controlfp(_RC_CHOP, _MCW_RC);
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_LOWEST);
    ::SetErrorMode(0);
    wchar_t folder[MAX_PATH];
    ::GetWindowsDirectoryW(folder, MAX_PATH);
    ::SetCurrentDirectoryW(folder);
}

}  // namespace

void commit(DWORD dwFault) {
    switch (static_cast<Fault>(dwFault)) {
        case AccessViolation:
            violate();
            break;
        case Throw:
            throw 1;
        case Abort:
            std::abort();
        case CallExit:
            std::exit(0);
        case EndProcess:
            ::ExitProcess(0);
        case KillProcess:
            ::TerminateProcess(::GetCurrentProcess(), 0);
            break;
        case StackOverflow:
            g_lSink = overflow(0);
            break;
        case Loop:
            for (;;) {
                g_lSink = g_lSink + 1;
            }
        case Wait:
            ::Sleep(INFINITE);
            break;
        case LoseHeapLock:
            runThread(&keepHeap, true);
            break;
        case OwnThread:
            runThread(&violateThere, false);
            break;
        case AskUser:
            ::MessageBoxW(nullptr, L"Is this a hang?", L"Fenwyn test", MB_OK);
            break;
        case Return5s:
            ::Sleep(5000);
            break;
        case SpoilState:
            spoilState();
            break;
        case NoFault:
        case FaultCount:
            break;
    }
}

}  // namespace instr
