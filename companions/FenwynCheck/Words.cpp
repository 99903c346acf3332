#include "Words.h"

#include <array>
#include <cstdio>
#include <iterator>

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

constexpr DWORD kExtendedCode = 0xE000;
constexpr LONG kExtendedFlag = 1 << 24;

// Empty when the layout has no name for it.
std::wstring nameOfScanCode(DWORD scanCode, bool extended) {
    wchar_t name[64];
    const LONG message = static_cast<LONG>(scanCode << 16) | (extended ? kExtendedFlag : 0);
    return {name, static_cast<std::size_t>(GetKeyNameTextW(message, name, static_cast<int>(std::size(name))))};
}

std::wstring nameOfCode(DWORD code) {
    const bool extended = (code & 0xFF00) == kExtendedCode;
    const bool plain = code <= 0xFF || (extended && code <= 0xFFFF);
    const std::wstring name = plain ? nameOfScanCode(code & 0xFF, extended) : std::wstring();
    return name.empty() ? check::hex(code) : name + L" (" + check::hex(code) + L")";
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
    const UINT scanCode = MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC_EX);
    const std::wstring name = nameOfScanCode(scanCode & 0xFF, (scanCode & 0xFF00) == kExtendedCode);
    return name.empty() ? L"virtual key " + check::hex(virtualKey) : name;
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
