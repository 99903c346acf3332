// The simulated notebook's functions: the one table from which the plug-ins, the sample settings and the notebook's
// window are made. The build reads the names at the start of the rows; adding a function is adding a row.
#pragma once

#include <windows.h>

#include <array>
#include <string_view>

namespace sim {

// What the plug-in does with the function's items.
enum class Kind {
    Toggle,     // two items, 0 = on, 1 = off
    Action,     // item 0 is counted, item 1 is "cancel"
    Positions,  // SelectItem names a position among the items that exist
    Backlight,  // as Positions; the current item carries the timer's seconds in its high half
    Drive,      // item values; the last one is "cancel"
    Plans,      // item values with names of their own
    Radios,     // offered states follow the radios that are on
    Slider,     // a level, set by FocusItem
    Masks,      // two masks of arrangements
    Favourites  // entries with modes, the user's among them
};

struct Key {
    DWORD code = 0;  // PC set-1 scan code
    const wchar_t* name = nullptr;
};

inline constexpr std::size_t kMaxItemNames = 5;

struct Function {
    const wchar_t* name;
    const wchar_t* caption;
    std::array<Key, 2> keys;
    Kind kind;
    DWORD items;   // first value of GetDisplayItemInfo: a mask, the number of levels for a slider
    DWORD items2;  // second value
    DWORD firstItem;
    bool inSample;  // in the sample list unless everything is asked for
    std::array<const wchar_t*, kMaxItemNames> itemNames;

    [[nodiscard]] constexpr std::size_t keyCount() const noexcept { return keys[1].name == nullptr ? 1 : 2; }
};

// In the order of the keys, so that the strip lies as the keyboard does.
// clang-format off
inline constexpr Function kFunctions[] = {
    {L"Mute", L"Mute", {{{0x3B, L"F1"}}}, Kind::Toggle, 0x3, 0, 1, true, {L"muted", L"sound on"}},
    {L"Lock", L"Lock", {{{0x3C, L"F2"}}}, Kind::Action, 0x3, 0, 0, true, {L"lock"}},
    {L"PowerPlan", L"Power plan", {{{0x3D, L"F3"}}}, Kind::Plans, 0xF, 0, 1, true,
        {L"High performance", L"Balanced", L"Power saver", L"Custom"}},
    {L"Sleep", L"Sleep", {{{0x3E, L"F4"}}}, Kind::Action, 0x3, 0, 0, true, {L"sleep"}},
    {L"Output_2", L"Display output", {{{0x3F, L"F5"}}}, Kind::Favourites, 0, 0, 0, true, {}},
    {L"Brightness", L"Brightness", {{{0x40, L"F6"}, {0x41, L"F7"}}}, Kind::Slider, 10, 0, 7, true, {}},
    {L"Wireless", L"Wireless", {{{0x42, L"F8"}}}, Kind::Radios, 0x4000, 0, 0, true, {}},
    {L"Touchpad", L"Touchpad", {{{0x43, L"F9"}}}, Kind::Toggle, 0x3, 0, 0, true, {L"on", L"off"}},
    {L"CursorOverlay", L"Cursor keys", {{{0x44, L"F10"}}}, Kind::Toggle, 0x3, 0, 1, true, {L"on", L"off"}},
    {L"NumericOverlay", L"Number pad", {{{0x57, L"F11"}}}, Kind::Toggle, 0x3, 0, 1, true, {L"on", L"off"}},
    {L"Hibernate", L"Hibernate", {{{0x58, L"F12"}}}, Kind::Action, 0x3, 0, 0, true, {L"hibernate"}},
    {L"Zoom", L"Zoom", {{{0x39, L"Space"}}}, Kind::Positions, 0x7, 0, 0, true, {L"normal", L"larger", L"largest"}},
    {L"KBB", L"Keyboard light", {{{0x30, L"B"}}}, Kind::Backlight, 0x7, 0, 1, true, {L"timer", L"on", L"off"}},
    {L"ODD", L"Optical drive", {{{0x12, L"E"}}}, Kind::Drive, 0x1F, 0, 1, true,
        {L"disc ejected", L"on", L"off", L"quiet"}},
    {L"Output", L"Older output", {{{0x19, L"P"}}}, Kind::Masks, 0xF, 0x3, 0, false, {}},
};
// clang-format on

// Null when no row has that name. Exact match.
[[nodiscard]] constexpr const Function* findFunction(std::wstring_view name) noexcept {
    for (const Function& function : kFunctions) {
        if (name == function.name) {
            return &function;
        }
    }
    return nullptr;
}

namespace detail {
constexpr bool codesAreDistinct() {
    std::array<DWORD, 2 * std::size(kFunctions)> seen{};
    std::size_t count = 0;
    for (const Function& function : kFunctions) {
        for (std::size_t i = 0; i < function.keyCount(); ++i) {
            for (std::size_t k = 0; k < count; ++k) {
                if (seen[k] == function.keys[i].code) {
                    return false;
                }
            }
            seen[count++] = function.keys[i].code;
        }
    }
    return true;
}
static_assert(std::size(kFunctions) == 15, "one row for each function that Fenwyn knows");
static_assert(codesAreDistinct(), "every key calls one function");
}  // namespace detail

}  // namespace sim
