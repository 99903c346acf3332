// How a key can be the modifier and still keep its usual function when it is only tapped.
#pragma once

#include <windows.h>

namespace hotkey {

enum class ModifierUse {
    // It has no effect of its own: the system sees it as always.
    Passes,
    // It acts when it is released without another key in between (a menu opens): the system sees it, and is sent a key
    // in between if the real one was swallowed.
    Masked,
    // It acts as soon as it is pressed or whenever it is released: the system sees it only after a tap.
    Withheld
};

[[nodiscard]] constexpr ModifierUse modifierUse(DWORD virtualKey) noexcept {
    switch (virtualKey) {
        case VK_LMENU:
        case VK_RMENU:
        case VK_LWIN:
        case VK_RWIN:
            return ModifierUse::Masked;
        case VK_CAPITAL:
        case VK_APPS:
            return ModifierUse::Withheld;
        default:
            return virtualKey >= VK_F13 && virtualKey <= VK_F24 ? ModifierUse::Withheld : ModifierUse::Passes;
    }
}

}  // namespace hotkey
