#include "keyboard/OwnInput.h"

namespace keyboard {
namespace {

// Its address is a number that no other module uses.
const char s_mark = 0;

ULONG_PTR mark() noexcept {
    return reinterpret_cast<ULONG_PTR>(&s_mark);
}

INPUT inputOf(DWORD virtualKey, DWORD flags) noexcept {
    const UINT scan = ::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC_EX);
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(virtualKey);
    input.ki.wScan = static_cast<WORD>(scan & 0xFF);
    input.ki.dwFlags = flags | ((scan & 0xFF00) != 0 ? DWORD{KEYEVENTF_EXTENDEDKEY} : 0);
    input.ki.dwExtraInfo = mark();
    return input;
}

}  // namespace

void tapKey(DWORD virtualKey) noexcept {
    INPUT inputs[] = {inputOf(virtualKey, 0), inputOf(virtualKey, KEYEVENTF_KEYUP)};
    ::SendInput(2, inputs, sizeof(INPUT));
}

bool isOwnInput(const KBDLLHOOKSTRUCT& info) noexcept {
    return info.dwExtraInfo == mark();
}

}  // namespace keyboard
