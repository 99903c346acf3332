#include "keyboard/KeyEvent.h"

namespace keyboard {

KeyEvent keyEventOf(const KBDLLHOOKSTRUCT& info) noexcept {
    KeyEvent event{info.vkCode, info.scanCode & 0xFF, (info.flags & LLKHF_UP) == 0, info.time};
    bool bExtended = (info.flags & LLKHF_EXTENDED) != 0;
    if (info.vkCode == VK_PACKET) {
        event.slot = 0;  // a character, not a key
    } else if (event.slot == 0) {
        const UINT scan = ::MapVirtualKeyW(info.vkCode, MAPVK_VK_TO_VSC_EX);
        event.slot = scan & 0xFF;
        bExtended = bExtended || (scan & 0xFF00) != 0;
        if (event.slot == 0) {
            event.slot = slotOfVirtualKey(info.vkCode);
            return event;
        }
    }
    if (event.slot != 0 && bExtended) {
        event.slot |= kExtendedSlot;
    }
    return event;
}

}  // namespace keyboard
