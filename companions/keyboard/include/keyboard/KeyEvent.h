// Key events as a keyboard hook receives them, and the numbers that identify keys.
#pragma once

#include <windows.h>

#include <bitset>
#include <cstddef>

namespace keyboard {

// A key is identified by its slot: its set-1 scan code, plus 0x100 for an extended key. Slot 0 is "no such key".
inline constexpr std::size_t kKeySlots = 0x200;
using KeySet = std::bitset<kKeySlots>;

// The number that is reported and listed for a key: 0x3B for slot 0x3B, 0xE04B for slot 0x14B.
[[nodiscard]] constexpr DWORD codeOfSlot(std::size_t slot) noexcept {
    return slot < 0x100 ? static_cast<DWORD>(slot) : 0xE000u | static_cast<DWORD>(slot & 0xFF);
}
// 0 for numbers that no key has.
[[nodiscard]] constexpr std::size_t slotOfCode(DWORD code) noexcept {
    if (code <= 0xFF) {
        return code;
    }
    return (code & 0xFFFFFF00u) == 0xE000u && code != 0xE000u ? 0x100u | (code & 0xFF) : 0;
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

// The hook's data. Injected keys without a scan code get the layout's.
[[nodiscard]] KeyEvent keyEventOf(const KBDLLHOOKSTRUCT& info) noexcept;

}  // namespace keyboard
