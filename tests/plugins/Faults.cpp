#include "Faults.h"

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

DWORD WINAPI violateThere(void* /*unused*/) {
    violate();
    return 0;
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
        case NoFault:
        case FaultCount:
            break;
    }
}

}  // namespace instr
