#include "Words.h"

#include <array>
#include <cstdio>
#include <iterator>

#include "ZelHotkey.h"

namespace machine {

namespace {

using fenwyn::CurrentRule;

// What the numbers of GetCurrentItem mean.
struct States {
    const wchar_t* function;
    std::array<const wchar_t*, 5> names;
};
constexpr States kStates[] = {
    {L"Mute", {L"muted", L"sound on"}},
    {L"Touchpad", {L"on", L"off"}},
    {L"Zoom", {L"normal", L"larger", L"largest"}},
    {L"CursorOverlay", {L"on", L"off"}},
    {L"NumericOverlay", {L"on", L"off"}},
    {L"ODD", {L"ejected", L"on", L"off", L"quiet", L"unknown"}},
    {L"KBB", {L"timer", L"on", L"off"}},
};

// By FenwynOutputMode.
constexpr const wchar_t* kModes[] = {
    L"built-in screen only",  L"external screen only", L"projector only",        L"the same on all screens",
    L"extended to the right", L"extended to the left", L"extended above",        L"extended below",
    L"several displays",      L"display settings",     L"save this arrangement",
};

constexpr LONG kExtendedFlag = 1 << 24;

// Empty when the layout has no name for it.
std::wstring nameOfScanCode(DWORD scanCode, bool extended) {
    wchar_t name[64];
    const LONG message = static_cast<LONG>(scanCode << 16) | (extended ? kExtendedFlag : 0);
    return {name, static_cast<std::size_t>(GetKeyNameTextW(message, name, static_cast<int>(std::size(name))))};
}

// Keys that a layout does not name, by both of their codes.
struct UnnamedKey {
    DWORD virtualKey;
    DWORD scanCode;  // extended
    const wchar_t* name;
};
constexpr UnnamedKey kUnnamedKeys[] = {
    {VK_SLEEP, 0x5F, L"sleep"},
    {VK_VOLUME_MUTE, 0x20, L"volume mute"},
    {VK_VOLUME_DOWN, 0x2E, L"volume down"},
    {VK_VOLUME_UP, 0x30, L"volume up"},
    {VK_MEDIA_NEXT_TRACK, 0x19, L"next track"},
    {VK_MEDIA_PREV_TRACK, 0x10, L"previous track"},
    {VK_MEDIA_STOP, 0x24, L"stop playing"},
    {VK_MEDIA_PLAY_PAUSE, 0x22, L"play or pause"},
    {VK_LAUNCH_MAIL, 0x6C, L"mail"},
    {VK_LAUNCH_MEDIA_SELECT, 0x6D, L"media player"},
    {VK_LAUNCH_APP1, 0x6B, L"application 1"},
    {VK_LAUNCH_APP2, 0x21, L"application 2"},
    {VK_BROWSER_BACK, 0x6A, L"browser back"},
    {VK_BROWSER_FORWARD, 0x69, L"browser forward"},
    {VK_BROWSER_REFRESH, 0x67, L"browser refresh"},
    {VK_BROWSER_STOP, 0x68, L"browser stop"},
    {VK_BROWSER_SEARCH, 0x65, L"browser search"},
    {VK_BROWSER_FAVORITES, 0x66, L"browser favourites"},
    {VK_BROWSER_HOME, 0x32, L"browser home"},
};

// Not every system tells the right one of two keys from the left one.
struct ModifierKey {
    DWORD virtualKey;
    const wchar_t* name;
};
constexpr ModifierKey kModifierKeys[] = {
    {VK_RCONTROL, L"right Ctrl"},    {VK_LCONTROL, L"left Ctrl"},    {VK_RSHIFT, L"right Shift"},
    {VK_LSHIFT, L"left Shift"},      {VK_RMENU, L"right Alt"},       {VK_LMENU, L"left Alt"},
    {VK_RWIN, L"right Windows key"}, {VK_LWIN, L"left Windows key"}, {VK_CAPITAL, L"Caps Lock"},
    {VK_SCROLL, L"Scroll Lock"},     {VK_APPS, L"menu key"},
};

bool isFunctionKey(DWORD virtualKey) {
    return virtualKey >= VK_F1 && virtualKey <= VK_F24;
}

std::wstring nameOfVirtualKey(DWORD virtualKey) {
    if (isFunctionKey(virtualKey)) {
        return L"F" + std::to_wstring(virtualKey - VK_F1 + 1);
    }
    for (const UnnamedKey& key : kUnnamedKeys) {
        if (key.virtualKey == virtualKey) {
            return key.name;
        }
    }
    const UINT scanCode = MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC_EX);
    const std::wstring name =
        scanCode != 0 ? nameOfScanCode(scanCode & 0xFF, (scanCode & 0xFF00) == ZEL_CODE_EXTENDED) : std::wstring();
    return name.empty() ? L"virtual key " + check::hex(virtualKey) : name;
}

std::wstring nameOfExtended(DWORD scanCode) {
    for (const UnnamedKey& key : kUnnamedKeys) {
        if (key.scanCode == scanCode) {
            return key.name;
        }
    }
    return nameOfScanCode(scanCode, true);
}

// Empty when it has none. `code` is without ZEL_CODE_ALONE.
std::wstring nameOfPlainCode(DWORD code) {
    switch (code & ~0xFFU) {
        case 0:
            return nameOfScanCode(code, false);
        case ZEL_CODE_EXTENDED:
            return nameOfExtended(code & 0xFF);
        case ZEL_CODE_VIRTUAL_KEY:
            return nameOfVirtualKey(code & 0xFF);
        default:
            return {};
    }
}

std::wstring nameOfCode(DWORD code) {
    const std::wstring name = nameOfPlainCode(code & ~ZEL_CODE_ALONE);
    const std::wstring alone = (code & ZEL_CODE_ALONE) != 0 ? L" alone" : L"";
    return name.empty() ? check::hex(code) + alone : name + alone + L" (" + check::hex(code) + L")";
}

std::wstring entryText(const check::Answers& answers, LONG item) {
    const std::wstring number = L"entry " + std::to_wstring(item);
    if (item < 0 || static_cast<std::size_t>(item) >= answers.entries.size()) {
        return number;
    }
    const check::OutputEntry& entry = answers.entries.at(static_cast<std::size_t>(item));
    if (!entry.text.empty()) {
        return number + L", \"" + entry.text + L"\"";
    }
    const bool known = entry.mode >= 0 && static_cast<std::size_t>(entry.mode) < std::size(kModes);
    return known ? number + L", " + kModes[entry.mode] : number;
}

std::wstring levelText(const check::Answers& answers, LONG item) {
    const std::wstring of = L" of " + std::to_wstring(answers.info);
    return answers.dual ? L"levels " + std::to_wstring(item & 0xFF) + L" and " + std::to_wstring(item >> 8 & 0xFF) + of
                        : L"level " + std::to_wstring(item) + of;
}

const wchar_t* stateName(const fenwyn::Function& function, LONG state) {
    for (const States& row : kStates) {
        if (fenwyn::equalNames(row.function, function.name) && state >= 0 &&
            static_cast<std::size_t>(state) < row.names.size()) {
            return row.names.at(static_cast<std::size_t>(state));
        }
    }
    return nullptr;
}

}  // namespace

std::wstring modifierName(DWORD virtualKey) {
    for (const ModifierKey& key : kModifierKeys) {
        if (key.virtualKey == virtualKey) {
            return key.name;
        }
    }
    return nameOfVirtualKey(virtualKey);
}

std::wstring keyNames(std::span<const DWORD> codes) {
    std::wstring names;
    for (const DWORD code : codes) {
        names += (names.empty() ? L"" : L", ") + nameOfCode(code);
    }
    return names.empty() ? L"no key" : names;
}

std::wstring itemText(const fenwyn::Function& function, const check::Answers& answers, LONG item) {
    if (function.currentRule == CurrentRule::Entry) {
        return entryText(answers, item);
    }
    if (function.currentRule == CurrentRule::Level) {
        return levelText(answers, item);
    }
    const bool plan = function.hasExport(FENWYN_GET_CUSTOM_ITEM_TEXT) && item >= 0 &&
                      static_cast<std::size_t>(item) < answers.planNames.size();
    if (plan && !answers.planNames.at(static_cast<std::size_t>(item)).empty()) {
        return L"\"" + answers.planNames.at(static_cast<std::size_t>(item)) + L"\"";
    }
    const wchar_t* const name =
        stateName(function, function.currentRule == CurrentRule::LowHalf ? item & 0xFFFF : item);
    return name != nullptr ? name : L"item " + std::to_wstring(item);
}

std::wstring stateText(const fenwyn::Function& function, const check::Answers& answers) {
    return answers.current ? itemText(function, answers, *answers.current) : std::wstring();
}

std::wstring milliseconds(double duration) {
    wchar_t text[32];
    std::swprintf(text, std::size(text), L"%.2f ms", duration);
    return text;
}

}  // namespace machine
