// Registers the keys that act without the modifier with the system, so that they arrive even if the hook is not called
// for them. While the hook works, it swallows them, and no registered key arrives.
#pragma once

#include <windows.h>

#include <array>

#include "keyboard/KeyEvent.h"

namespace hotkey {

// Belongs to the thread of its window. A key that another program has registered, or that has no virtual key in the
// layout, is not registered.
class CSecondRoad {
 public:
    // Registers these slots with the window, and no others.
    void set(HWND hWnd, const keyboard::KeySet& slots) noexcept;
    // The hook was called for a press of the key.
    void hookSaw(const keyboard::KeyEvent& event, ULONGLONG now) noexcept;
    // The event of a registered key for the tracker; slot 0 if it is none, or if the hook has seen it already.
    [[nodiscard]] keyboard::KeyEvent pressed(DWORD id, ULONGLONG now) const noexcept;

 private:
    static constexpr std::size_t kVirtualKeys = 0x100;
    // The same press may come on both roads when the hook was late for the system, though not for us. In ms.
    static constexpr ULONGLONG kSamePress = 500;

    struct Key {
        std::size_t slot = 0;      // 0: not registered
        ULONGLONG nHookPress = 0;  // when the hook was last called for a press; 0: never
    };
    std::array<Key, kVirtualKeys> m_keys{};
};

}  // namespace hotkey
