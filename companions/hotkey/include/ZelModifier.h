// The key that the setting ZEL_VALUE_MODIFIER_KEY means: for the library, and for programs that show it to the user.
#pragma once

#include <windows.h>

// `configured`: the stored number, 0 if there is none. Returns a virtual-key code. The keyboard distinguishes the two
// sides of Shift, Ctrl and Alt, so the code for either side stands for the right one.
[[nodiscard]] constexpr DWORD zelModifierKey(DWORD configured) noexcept {
    switch (configured) {
        case VK_SHIFT:
            return VK_RSHIFT;
        case VK_CONTROL:
            return VK_RCONTROL;
        case VK_MENU:
            return VK_RMENU;
        default:
            return configured == 0 || configured > 0xFE ? DWORD{VK_RCONTROL} : configured;
    }
}
