#include "KeyNames.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "SettingsIds.h"
#include "Texts.h"
#include "ZelHotkey.h"
#include "keyboard/KeyEvent.h"

namespace settings {
namespace {

constexpr DWORD kExtendedKey = 1U << 24;

std::wstring number(DWORD code) {
    wchar_t digits[16];
    std::swprintf(digits, std::size(digits), L"0x%lX", code);
    return text(IDS_KEY_NUMBER, {digits});
}

std::wstring nameOfScanCode(DWORD scan, bool extended) {
    wchar_t name[64] = L"";
    ::GetKeyNameTextW(static_cast<LONG>((scan & 0xFF) << 16 | (extended ? kExtendedKey : 0)), name, 64);
    return name;
}

}  // namespace

std::wstring nameOfVirtualKey(DWORD virtualKey) {
    // The good modifiers: a keyboard layout may call both keys of a pair the same.
    constexpr std::pair<DWORD, UINT> kNames[] = {{VK_RCONTROL, IDS_KEY_RIGHT_CTRL},
                                                 {VK_RMENU, IDS_KEY_RIGHT_ALT},
                                                 {VK_RWIN, IDS_KEY_RIGHT_WINDOWS},
                                                 {VK_CAPITAL, IDS_KEY_CAPS_LOCK},
                                                 {VK_APPS, IDS_KEY_MENU}};
    for (const auto& [key, name] : kNames) {
        if (key == virtualKey) {
            return text(name);
        }
    }
    if (virtualKey >= VK_F13 && virtualKey <= VK_F24) {  // many layouts have no scan codes for these
        return L"F" + std::to_wstring(virtualKey - VK_F1 + 1);
    }
    const UINT scan = ::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC_EX);
    const std::wstring name = scan != 0 ? nameOfScanCode(scan, (scan & 0xFF00) != 0) : std::wstring();
    return name.empty() ? number(ZEL_CODE_VIRTUAL_KEY | virtualKey) : name;
}

std::wstring keyName(DWORD code) {
    const DWORD plain = code & ~ZEL_CODE_ALONE;
    const std::size_t slot = keyboard::slotOfCode(plain);
    if (slot >= keyboard::kVirtualKeySlot) {
        return nameOfVirtualKey(plain & 0xFF);
    }
    const std::wstring name = slot != 0 ? nameOfScanCode(plain, slot >= keyboard::kExtendedSlot) : std::wstring();
    return name.empty() ? number(plain) : name;
}

std::wstring keyWithModifier(DWORD code) {
    return (code & ZEL_CODE_ALONE) != 0 ? keyName(code) : text(IDS_KEY_WITH_FN, {keyName(code)});
}

bool isForTyping(DWORD virtualKey) noexcept {
    switch (virtualKey) {
        case VK_BACK:
        case VK_TAB:
        case VK_RETURN:
        case VK_ESCAPE:
        case VK_SPACE:
        case VK_PRIOR:
        case VK_NEXT:
        case VK_END:
        case VK_HOME:
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN:
        case VK_INSERT:
        case VK_DELETE:
        case VK_SHIFT:
        case VK_LSHIFT:
        case VK_RSHIFT:
        case VK_LCONTROL:
        case VK_LMENU:
        case VK_LWIN:
            return true;
        default:
            return ::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_CHAR) != 0;
    }
}

// "\\?\HID#VID_046D&PID_C31C#7&2a#{...}" is described in the registry under "HID\VID_046D&PID_C31C\7&2a".
std::wstring keyboardName(HANDLE device) {
    wchar_t path[256] = L"";
    UINT size = static_cast<UINT>(std::size(path));
    if (device == nullptr || ::GetRawInputDeviceInfoW(device, RIDI_DEVICENAME, path, &size) == static_cast<UINT>(-1)) {
        return {};
    }
    std::wstring name = path;
    name.erase(0, name.starts_with(L"\\\\?\\") ? 4 : 0);
    name.erase(std::min(name.find(L"#{"), name.size()));
    for (wchar_t& c : name) {
        c = c == L'#' ? L'\\' : c;
    }
    wchar_t words[256] = L"";
    DWORD bytes = sizeof words;
    if (::RegGetValueW(HKEY_LOCAL_MACHINE, (L"SYSTEM\\CurrentControlSet\\Enum\\" + name).c_str(), L"DeviceDesc",
                       RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, words, &bytes) != ERROR_SUCCESS) {
        return name;
    }
    const std::wstring description = words;  // "@keyboard.inf,%...%;HID Keyboard Device"
    return description.substr(description.rfind(L';') + 1);
}

}  // namespace settings
