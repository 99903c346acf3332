// Publishes whether the modifier is latched.
#pragma once

namespace hotkey {

// Writes the volatile state value, which does not exist until the first latch. A failure is not reported, because the
// value is for display only. Thread: any, may wait for the disk.
void publishLatch(bool bLatched) noexcept;

}  // namespace hotkey
