// The module that this code is linked into.
#pragma once

#include <windows.h>

namespace hotkey {

// Without a reference of its own. Thread: any, but not while the loader is busy.
[[nodiscard]] HMODULE ownModule() noexcept;

}  // namespace hotkey
