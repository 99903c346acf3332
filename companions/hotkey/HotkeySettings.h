// The key settings of the configuration.
#pragma once

#include "KeyTracker.h"

namespace hotkey {

// Reads the modifier, its stickiness and the codes of the function list. Missing or unreadable values have their
// defaults. Throws std::bad_alloc only. Thread: any.
[[nodiscard]] TrackerSettings readTrackerSettings();

// Adds a code of the function list. One that no key can send, and the modifier's own, changes nothing: neither is ever
// swallowed.
void addCode(DWORD code, TrackerSettings& settings);

}  // namespace hotkey
