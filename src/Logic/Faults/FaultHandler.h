// What the program does when it is about to end by a fault: it notes the plug-in that is to blame, writes the last line
// of the log, and starts its successor.
#pragma once

#include <windows.h>

#include "Logic/Faults/CallSection.h"

namespace faults {

// Who takes over from a process that ended by a fault; replaced in tests.
struct Successor {
    // Asks another thread to start it, and returns at once. It ends this process once it has looked at it; `bGoOn`:
    // then it takes its place.
    void (*call)(bool bGoOn) noexcept;
    // Whether that thread gets to it within this time. It never does without the lock of the process heap.
    bool (*comes)(DWORD dwMilliseconds) noexcept;
};

// Installs the handlers for exceptions, std::terminate, abort() and exit(), and starts the thread that does the work
// for whatever thread fails: it has its own stack, and holds no lock. Once, before the first plug-in is loaded. False:
// there is no such thread, so that faults end the process as they would without all this.
[[nodiscard]] bool installFaultHandlers(const Successor& successor) noexcept;

// To be called after a library was loaded, which may have put its own handlers in their place.
void renewFaultHandlers() noexcept;

// Ends the process: the fault is noted, the keeper's thread writes the line and starts the successor. Any thread; does
// not return. `pPointers` may be null. Without installed handlers it ends the process at once.
[[noreturn]] void endByFault(Reason reason, DWORD dwCode, EXCEPTION_POINTERS* pPointers) noexcept;

// The same for a call that does not return, called by the keeper itself.
[[noreturn]] void endByHang(const CallEntry& rCall) noexcept;

// An exception has left a plug-in. Returns only if there are no installed handlers.
void exceptionLeftPlugin(EXCEPTION_POINTERS& rPointers) noexcept;

// From now on a fault ends the process for good: no successor goes on in its place.
void endIsNear() noexcept;
// The orderly end: whatever happens from now on is nobody's fault.
void endIsReached() noexcept;

// The keeper's thread sleeps until this event is set.
[[nodiscard]] HANDLE faultEvent() noexcept;
// The keeper's work once it is set; does not return.
[[noreturn]] void handleFault() noexcept;

// "an access violation (0xC0000005)", in English, for the log and the registry. Into at most `cchText` characters.
void describeFault(Reason reason, DWORD dwCode, wchar_t* pszText, std::size_t cchText) noexcept;

}  // namespace faults
