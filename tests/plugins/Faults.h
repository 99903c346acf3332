// What a plug-in can do to its host. Tests choose one for an export: "<Export>.Fault" in the registry.
#pragma once

#include <windows.h>

namespace instr {

enum Fault : DWORD {
    NoFault,
    AccessViolation,
    Throw,  // a C++ exception that leaves the export
    Abort,
    CallExit,     // exit()
    EndProcess,   // ExitProcess()
    KillProcess,  // TerminateProcess()
    StackOverflow,
    Loop,       // never returns, and uses the processor
    Wait,       // never returns, and waits
    OwnThread,  // returns, and a thread of its own has an access violation
    AskUser,    // shows a message box, "Fenwyn test", until it is closed
    Return5s,   // waits for five seconds
    LeakGdiObject,
    LeakHandle,
    LeakUserObject,
    LeakMemory,    // 300 bytes
    ChangeCaller,  // leaves everything changed that a call must leave as it was
    LoseHeap,      // a thread of its own is terminated while it holds the lock of the process heap; returns
    LockHeap,      // holds that lock itself, and waits
    FaultCount
};

// Does it; returns for the faults that return.
void commit(DWORD dwFault);

}  // namespace instr
