#include "Faults.h"

#include <objbase.h>

#include <cstdlib>

namespace instr {

namespace {

constexpr SIZE_T kLeakedBytes = 300;

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

DWORD WINAPI violateThere(void* /*unused*/) {
    violate();
    return 0;
}

DWORD WINAPI lockHeap(void* pLocked) {
    ::HeapLock(::GetProcessHeap());
    ::SetEvent(pLocked);
    ::Sleep(INFINITE);
    return 0;
}

void loseHeap() {
    const HANDLE hLocked = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const HANDLE hThread = ::CreateThread(nullptr, 0, &lockHeap, hLocked, 0, nullptr);
    ::WaitForSingleObject(hLocked, INFINITE);
    ::TerminateThread(hThread, 0);
}

void changeCaller() {
    ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
    ::SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, nullptr);
    ::SetErrorMode(SEM_NOALIGNMENTFAULTEXCEPT);
    ::SetCurrentDirectoryW(L"C:\\");
    static_cast<void>(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    using SetContext = HANDLE(WINAPI*)(HANDLE);
    const auto setContext = reinterpret_cast<SetContext>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "SetThreadDpiAwarenessContext")));
    if (setContext != nullptr) {
        setContext(reinterpret_cast<HANDLE>(-1));  // unaware
    }
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
        case OwnThread:
            ::CloseHandle(::CreateThread(nullptr, 0, &violateThere, nullptr, 0, nullptr));
            break;
        case AskUser:
            ::MessageBoxW(nullptr, L"Is this a hang?", L"Fenwyn test", MB_OK);
            break;
        case Return5s:
            ::Sleep(5000);
            break;
        case LeakGdiObject:
            ::CreateSolidBrush(RGB(1, 2, 3));
            break;
        case LeakHandle:
            ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
            break;
        case LeakUserObject:
            ::CreateMenu();
            break;
        case LeakMemory:
            ::FillMemory(::HeapAlloc(::GetProcessHeap(), HEAP_GENERATE_EXCEPTIONS, kLeakedBytes), kLeakedBytes, 1);
            break;
        case ChangeCaller:
            changeCaller();
            break;
        case LoseHeap:
            loseHeap();
            break;
        case LockHeap:
            ::HeapLock(::GetProcessHeap());
            ::Sleep(INFINITE);
            break;
        case NoFault:
        case FaultCount:
            break;
    }
}

}  // namespace instr
