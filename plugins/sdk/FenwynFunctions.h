// The contract of FenwynPlugin.h, function by function, as one checked table for C++: the exports that a function's
// plug-in must have, the valid values of GetDisplayItemInfo, and what the current item counts. The program makes its
// cards from it, PluginCheck its verdict, the simulated notebook its plug-ins. A new function begins with a row here.
#ifndef FENWYN_FUNCTIONS_H
#define FENWYN_FUNCTIONS_H

#include <array>
#include <cstddef>
#include <string_view>

#include "FenwynPlugin.h"

namespace fenwyn {

// The first value of GetDisplayItemInfo (and the second one, where it matters).
enum class InfoRule {
    Exact,     // must be `info`
    Mask,      // bits of `info`, at least one
    Levels,    // a number of levels
    TwoMasks,  // bits of `info` and of `info2`
    Entries    // not asked: the entries are described one by one
};

// What GetCurrentItem counts.
enum class CurrentRule {
    NotAsked,
    State,        // 0 .. states - 1
    LowHalf,      // the same for the low 16 bits
    BitOf,        // the number of a bit that info has
    Level,        // 0 .. number of levels
    Arrangement,  // the number of a bit that one of the two masks has
    Entry         // the index of an entry
};

inline constexpr std::size_t kMaxExports = 7;

struct Function {
    const wchar_t* name;                           // as in the function list, where letter case does not matter
    std::array<const char*, kMaxExports> exports;  // the rest is null
    InfoRule infoRule;
    DWORD info;
    DWORD info2;
    CurrentRule currentRule;
    LONG states;

    [[nodiscard]] constexpr bool hasExport(std::string_view wanted) const noexcept {
        for (const char* const present : exports) {
            if (present != nullptr && wanted == present) {
                return true;
            }
        }
        return false;
    }
    // Whether SelectItem gets a position among the items that exist, while GetCurrentItem counts all states.
    [[nodiscard]] constexpr bool choosesPositions() const noexcept {
        return infoRule == InfoRule::Mask && (currentRule == CurrentRule::State || currentRule == CurrentRule::LowHalf);
    }
};

// Exports of most functions, and of those without a state, which are never asked for it.
#define FENWYN_EXPORTS_BASIC FENWYN_INITIALIZE, FENWYN_GET_DISPLAY_ITEM_INFO, FENWYN_FINALIZE
#define FENWYN_EXPORTS_ACTION FENWYN_EXPORTS_BASIC, FENWYN_SELECT_ITEM
#define FENWYN_EXPORTS_STATE FENWYN_EXPORTS_ACTION, FENWYN_GET_CURRENT_ITEM

// clang-format off
inline constexpr Function kFunctions[] = {
    {L"Mute", {FENWYN_EXPORTS_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::State, 2},
    {L"Lock", {FENWYN_EXPORTS_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::NotAsked, 0},
    {L"PowerPlan", {FENWYN_EXPORTS_STATE, FENWYN_GET_CUSTOM_ITEM_TEXT}, InfoRule::Mask, 0xF, 0, CurrentRule::BitOf, 4},
    {L"Sleep", {FENWYN_EXPORTS_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::NotAsked, 0},
    {L"Hibernate", {FENWYN_EXPORTS_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::NotAsked, 0},
    {L"Output", {FENWYN_EXPORTS_STATE}, InfoRule::TwoMasks, 0x7FFFF, 0x83FFFFFF, CurrentRule::Arrangement, 0},
    {L"Output_2",
        {FENWYN_FNF5_INITIALIZE, FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT, FENWYN_FNF5_GET_DISPLAY_ITEM_INFO,
         FENWYN_FNF5_SET_CURRENT_FOR_PANIC, FENWYN_GET_CURRENT_ITEM, FENWYN_SELECT_ITEM, FENWYN_FINALIZE},
        InfoRule::Entries, 0, 0, CurrentRule::Entry, 0},
    {L"Brightness", {FENWYN_EXPORTS_BASIC, FENWYN_GET_CURRENT_ITEM, FENWYN_FOCUS_ITEM, FENWYN_IS_DUAL_BRT_CTRL},
        InfoRule::Levels, 0, 0, CurrentRule::Level, 0},
    {L"Wireless", {FENWYN_EXPORTS_ACTION}, InfoRule::Mask, 0x7FFF, 0, CurrentRule::NotAsked, 0},
    {L"Touchpad", {FENWYN_EXPORTS_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::State, 2},
    {L"Zoom", {FENWYN_EXPORTS_STATE}, InfoRule::Mask, 0x7, 0, CurrentRule::State, 3},
    {L"CursorOverlay", {FENWYN_EXPORTS_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::State, 2},
    {L"NumericOverlay", {FENWYN_EXPORTS_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, CurrentRule::State, 2},
    {L"ODD", {FENWYN_EXPORTS_STATE}, InfoRule::Mask, 0x1F, 0, CurrentRule::BitOf, 5},
    {L"KBB", {FENWYN_EXPORTS_STATE}, InfoRule::Mask, 0x7, 0, CurrentRule::LowHalf, 3},
};
// clang-format on

#undef FENWYN_EXPORTS_STATE
#undef FENWYN_EXPORTS_ACTION
#undef FENWYN_EXPORTS_BASIC

// Whether the names are equal, ignoring the case of the letters A to Z.
[[nodiscard]] constexpr bool equalNames(std::wstring_view left, std::wstring_view right) noexcept {
    constexpr auto folded = [](wchar_t c) {
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    };
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (folded(left[i]) != folded(right[i])) {
            return false;
        }
    }
    return true;
}

// Null if there is no function of that name.
[[nodiscard]] constexpr const Function* findFunction(std::wstring_view name) noexcept {
    for (const Function& function : kFunctions) {
        if (equalNames(name, function.name)) {
            return &function;
        }
    }
    return nullptr;
}

namespace detail {

constexpr bool namesAreUnique() {
    for (const Function& function : kFunctions) {
        if (findFunction(function.name) != &function) {
            return false;
        }
    }
    return true;
}

constexpr int bitCount(DWORD mask) {
    int count = 0;
    for (; mask != 0; mask &= mask - 1) {
        ++count;
    }
    return count;
}

constexpr bool masksFitRules() {
    for (const Function& function : kFunctions) {
        const bool masked = function.infoRule == InfoRule::Exact || function.infoRule == InfoRule::Mask ||
                            function.infoRule == InfoRule::TwoMasks;
        if (masked != (function.info != 0) || (function.info2 != 0) != (function.infoRule == InfoRule::TwoMasks) ||
            (function.states != 0 && function.states != bitCount(function.info))) {
            return false;
        }
    }
    return true;
}

constexpr bool exportsFitRules() {
    for (const Function& function : kFunctions) {
        const bool entries = function.infoRule == InfoRule::Entries;
        if (!function.hasExport(FENWYN_FINALIZE) ||
            !function.hasExport(entries ? FENWYN_FNF5_INITIALIZE : FENWYN_INITIALIZE) ||
            !function.hasExport(entries ? FENWYN_FNF5_GET_DISPLAY_ITEM_INFO : FENWYN_GET_DISPLAY_ITEM_INFO) ||
            function.hasExport(FENWYN_GET_CURRENT_ITEM) == (function.currentRule == CurrentRule::NotAsked) ||
            function.hasExport(FENWYN_FOCUS_ITEM) != (function.infoRule == InfoRule::Levels) ||
            function.hasExport(FENWYN_SELECT_ITEM) == (function.infoRule == InfoRule::Levels)) {
            return false;
        }
    }
    return true;
}

static_assert(namesAreUnique(), "every function has its own name");
static_assert(masksFitRules(), "masks where the rule has them, and a state for every bit");
static_assert(exportsFitRules(), "the exports are those that the rules call");

}  // namespace detail

}  // namespace fenwyn

#endif
