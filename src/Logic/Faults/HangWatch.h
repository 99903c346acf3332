// The keeper's thread: it watches the user-interface thread while plug-ins are called, and does what is left to do when
// the process ends by a fault. It takes no lock that another thread can hold, and uses no heap.
#pragma once

#include <windows.h>

#include "Logic/Faults/CallSection.h"
#include "Logic/Faults/HangJudge.h"

namespace faults {

// What the keeper tells others to do; both return at once.
struct KeeperActions {
    void (*ping)() noexcept;                                       // posts a message that calls noteAnswer()
    void (*hangs)(const CallEntry&, const PluginEntry&) noexcept;  // the thread hangs in, or after, this call
    void (*over)() noexcept;                                       // it has come back
};

// Once, on the thread that is to be watched, after installFaultHandlers(). False: nothing is watched.
[[nodiscard]] bool startKeeper(const KeeperActions& actions) noexcept;

// Any thread.
void setPatience(const Patience& patience) noexcept;
// A call has begun on the watched thread, or it has been given something to do.
void wakeHangWatch() noexcept;
// The watched thread has handled the ping.
void noteAnswer() noexcept;
// Whether the watched thread hangs, as far as is known. Any thread.
[[nodiscard]] bool cardsHang() noexcept;

}  // namespace faults
