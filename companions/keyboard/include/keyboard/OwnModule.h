// The module that this code is linked into.
#pragma once

#include <windows.h>

namespace keyboard {

// Without a reference of its own. Thread: any, but not while the loader is busy.
[[nodiscard]] HMODULE ownModule() noexcept;

}  // namespace keyboard
