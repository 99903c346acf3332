#include "SecondRoad.h"

namespace hotkey {
namespace {

// 0 when the layout has none.
DWORD virtualKeyOf(std::size_t slot) noexcept {
    if (slot >= keyboard::kVirtualKeySlot) {
        return static_cast<DWORD>(slot & 0xFF);
    }
    const UINT scan = static_cast<UINT>(slot & 0xFF) | (slot >= keyboard::kExtendedSlot ? 0xE000u : 0u);
    return ::MapVirtualKeyW(scan, MAPVK_VSC_TO_VK_EX) & 0xFF;
}

}  // namespace

void CSecondRoad::set(HWND hWnd, const keyboard::KeySet& slots) noexcept {
    std::array<std::size_t, kVirtualKeys> wanted{};
    for (std::size_t slot = 1; slot < keyboard::kKeySlots; ++slot) {
        const DWORD virtualKey = slots.test(slot) ? virtualKeyOf(slot) : 0;
        if (virtualKey != 0) {
            wanted[virtualKey] = slot;
        }
    }
    for (DWORD virtualKey = 1; virtualKey < kVirtualKeys; ++virtualKey) {
        Key& key = m_keys[virtualKey];
        if (key.slot != 0 && wanted[virtualKey] == 0) {
            ::UnregisterHotKey(hWnd, static_cast<int>(virtualKey));
            key.slot = 0;
        } else if (key.slot != 0 || (wanted[virtualKey] != 0 &&
                                     ::RegisterHotKey(hWnd, static_cast<int>(virtualKey), MOD_NOREPEAT, virtualKey))) {
            key.slot = wanted[virtualKey];
        }
    }
}

void CSecondRoad::hookSaw(const keyboard::KeyEvent& event, ULONGLONG now) noexcept {
    if (event.down && event.virtualKey < kVirtualKeys) {
        m_keys[event.virtualKey].nHookPress = now;
    }
}

keyboard::KeyEvent CSecondRoad::pressed(DWORD id, ULONGLONG now) const noexcept {
    if (id >= kVirtualKeys || m_keys[id].slot == 0 || now - m_keys[id].nHookPress < kSamePress) {
        return {};
    }
    const DWORD time = static_cast<DWORD>(now);
    if (m_keys[id].slot < keyboard::kVirtualKeySlot) {
        return {id, m_keys[id].slot, true, time};
    }
    return keyboard::keyEventOf({id, 0, 0, time, 0});  // under the slot that the hook would give it
}

}  // namespace hotkey
