// Key events as a keyboard hook receives them, and the numbers that identify keys.
#pragma once

#include <windows.h>

#include <bitset>
#include <cstddef>

namespace keyboard {

// A key is identified by its slot: its set-1 scan code, plus 0x100 for an extended key. A key without a scan code has
// its virtual-key code plus 0x200. Slot 0 is "no such key".
inline constexpr std::size_t kExtendedSlot = 0x100;
inline constexpr std::size_t kVirtualKeySlot = 0x200;
inline constexpr std::size_t kKeySlots = 0x300;
using KeySet = std::bitset<kKeySlots>;

// 0 for what is no key's virtual-key code; 0xFF is the system's name for keys that the layout does not know.
[[nodiscard]] constexpr std::size_t slotOfVirtualKey(DWORD virtualKey) noexcept {
    return virtualKey == 0 || virtualKey >= 0xFF || virtualKey == VK_PACKET ? 0 : kVirtualKeySlot | virtualKey;
}

// The number under which a key is reported and listed: 0x3B for slot 0x3B, 0xE04B for slot 0x14B, 0xF0B7 for slot
// 0x2B7.
[[nodiscard]] constexpr DWORD codeOfSlot(std::size_t slot) noexcept {
    const DWORD low = static_cast<DWORD>(slot & 0xFF);
    if (slot < kExtendedSlot) {
        return low;
    }
    return (slot < kVirtualKeySlot ? 0xE000u : 0xF000u) | low;
}
// 0 for numbers that no key has.
[[nodiscard]] constexpr std::size_t slotOfCode(DWORD code) noexcept {
    const DWORD low = code & 0xFF;
    if (code == low || low == 0) {
        return low;
    }
    switch (code - low) {
        case 0xE000:
            return kExtendedSlot | low;
        case 0xF000:
            return kVirtualKeySlot | low;
        default:
            return 0;
    }
}

// A press this long after a key's last event is a new one, even if no release was seen: the slowest keyboards start to
// repeat after two seconds. In ms.
inline constexpr DWORD kRepeatGap = 2500;

struct KeyEvent {
    DWORD virtualKey = 0;
    std::size_t slot = 0;
    bool down = false;
    DWORD time = 0;  // ms, wraps around
};

// What the hook was told. Keys without a scan code get the layout's, if it has one for them.
[[nodiscard]] KeyEvent keyEventOf(const KBDLLHOOKSTRUCT& info) noexcept;

}  // namespace keyboard
