// Whether somebody tries keys out, so that they must not act.
#pragma once

#include <windows.h>

#include "common/Handle.h"
#include "include/ZelHotkey.h"

namespace hotkey {

// Thread: any. Asks the system each time: the event goes without a word when its owner ends.
[[nodiscard]] inline bool keysAreTried() noexcept {
    const common::UniqueHandle trial(::OpenEventW(SYNCHRONIZE, FALSE, ZEL_KEY_TRIAL_EVENT));
    return static_cast<bool>(trial);
}

}  // namespace hotkey
