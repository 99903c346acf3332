// Shows others whether the modifier is latched.
#pragma once

namespace hotkey {

// Writes the volatile state value; while nothing was ever latched there is none. A failure is not reported: the value
// is for display only. Thread: any, may wait for the disk.
void publishLatch(bool bLatched) noexcept;

}  // namespace hotkey
