// Keys that the owner of a hook presses itself.
#pragma once

#include <windows.h>

namespace keyboard {

// No key of any keyboard and without a meaning to any program: shows the system that a key came between.
inline constexpr DWORD kMeaninglessKey = 0xE8;

// Presses and releases a key. This module's hook thread lets it pass without showing it to its client; it is safe
// inside the hook, and what is pressed there comes before the key that the hook is about. Thread: any.
void tapKey(DWORD virtualKey) noexcept;

// Whether this module pressed it.
[[nodiscard]] bool isOwnInput(const KBDLLHOOKSTRUCT& info) noexcept;

}  // namespace keyboard
