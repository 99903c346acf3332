// Keys that the owner of a hook sends itself.
#pragma once

#include <windows.h>

namespace keyboard {

// Not on any keyboard and without meaning to any program: it shows the system that a key came in between.
inline constexpr DWORD kMeaninglessKey = 0xE8;

// Presses and releases a key. This module's hook thread passes it on without showing it to its client. Safe inside the
// hook, where it precedes the key that is being handled. Thread: any.
void tapKey(DWORD virtualKey) noexcept;

// Whether this module sent it.
[[nodiscard]] bool isOwnInput(const KBDLLHOOKSTRUCT& info) noexcept;

}  // namespace keyboard
