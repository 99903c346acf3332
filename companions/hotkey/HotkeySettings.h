// What the configuration says about keys.
#pragma once

#include "KeyTracker.h"

namespace hotkey {

// Reads the modifier, its stickiness and the codes of the function list. What is missing or unreadable counts as not
// given. Throws std::bad_alloc only. Thread: any.
[[nodiscard]] TrackerSettings readTrackerSettings();

}  // namespace hotkey
