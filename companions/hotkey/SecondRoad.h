// The keys that act without the modifier, registered with the system: the road on which they come when the hook is not
// called for them. While it is, it swallows them, and nothing comes on this road.
#pragma once

#include <windows.h>

#include <array>

#include "keyboard/KeyEvent.h"

namespace hotkey {

// Lives on the thread of its window. What another program has registered before, or the layout has no virtual key for,
// goes without.
class CSecondRoad {
 public:
    // Registers these slots with the window, and no others.
    void set(HWND hWnd, const keyboard::KeySet& slots) noexcept;
    // The hook was called for a press of the key.
    void hookSaw(const keyboard::KeyEvent& event, ULONGLONG now) noexcept;
    // What a press that came on this road is for the tracker; slot 0 when it is none, or the hook saw it already.
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
