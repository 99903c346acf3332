// The simulated notebook's functions: the table for the sample settings and the notebook's window. Its rows are in
// Functions.inc; a new function needs only a new row there, and its words.
#pragma once

#include <windows.h>

#include <array>
#include <string_view>

#include "FenwynFunctions.h"

namespace sim {

// What the plug-in does with the function's items.
enum class Kind {
    Toggle,     // two items, 0 = on, 1 = off
    Action,     // item 0 is counted, item 1 is "cancel"
    Positions,  // SelectItem names a position among the items that exist
    Backlight,  // like Positions; the current item contains the timer's seconds in its high half
    Drive,      // item values; the last one is "cancel"
    Plans,      // item values with their own names
    Radios,     // the offered states depend on the radios that are on
    Slider,     // a level, set by FocusItem
    Masks,      // two masks of arrangements
    Favourites  // entries with modes, including the user's
};

struct Key {
    DWORD code;  // PC set-1 scan code; 0: there is none
    const wchar_t* name;
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

    [[nodiscard]] constexpr std::size_t keyCount() const noexcept { return keys[1].code == 0 ? 1 : 2; }
};

#define FUNCTION(name, caption, code, key, code2, key2, kind, items, items2, first, sample, ...)          \
    {L"" #name,   L"" caption,  {{{code, L"" key}, {code2, L"" key2}}}, Kind::kind, items, items2, first, \
     sample != 0, {__VA_ARGS__}},
#define WORD_ROW(english, german)
inline constexpr Function kFunctions[] = {
#include "Functions.inc"
};
#undef WORD_ROW
#undef FUNCTION

// Null if no row has that name. Exact match.
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

constexpr bool functionsAreThoseOfTheContract() {
    for (const Function& function : kFunctions) {
        const fenwyn::Function* const contract = fenwyn::findFunction(function.name);
        if (contract == nullptr || std::wstring_view(contract->name) != function.name) {
            return false;
        }
        const bool masked = function.kind != Kind::Slider && function.kind != Kind::Favourites;
        if (masked && ((function.items & ~contract->info) != 0 || (function.items2 & ~contract->info2) != 0)) {
            return false;
        }
    }
    return std::size(kFunctions) == std::size(fenwyn::kFunctions);
}
static_assert(functionsAreThoseOfTheContract(), "one row for each function that Fenwyn knows");
static_assert(codesAreDistinct(), "every key calls one function");
}  // namespace detail

}  // namespace sim
