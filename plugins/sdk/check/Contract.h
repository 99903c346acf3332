// What the contract asks of each function's plug-in, as a table.
#pragma once

#include <windows.h>

#include <array>
#include <string_view>

#include "FenwynPlugin.h"

namespace check {

enum class InfoRule {
    Exact,    // must be `info`
    Mask,     // bits of `info`, at least one
    Levels,   // a number of levels
    TwoMasks  // bits of `info` and of `info2`
};

enum class ItemRule {
    NotAsked,
    Below,       // 0 .. item - 1
    LowHalf,     // the same for the low 16 bits
    BitOf,       // the number of a bit that info has
    Level,       // 0 .. number of levels
    Arrangement  // the number of a bit that one of the two masks has
};

inline constexpr std::size_t kMaxExports = 7;

struct Rule {
    const wchar_t* function;
    std::array<const char*, kMaxExports> exports;
    InfoRule infoRule;
    DWORD info;
    DWORD info2;
    ItemRule itemRule;
    LONG items;
};

// Exports of most functions, and those without a state, which are never asked for it.
#define CHECK_BASIC FENWYN_INITIALIZE, FENWYN_GET_DISPLAY_ITEM_INFO, FENWYN_FINALIZE
#define CHECK_ACTION CHECK_BASIC, FENWYN_SELECT_ITEM
#define CHECK_STATE CHECK_ACTION, FENWYN_GET_CURRENT_ITEM

// clang-format off
inline constexpr Rule kRules[] = {
    {L"Mute", {CHECK_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::Below, 2},
    {L"Lock", {CHECK_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::NotAsked, 0},
    {L"PowerPlan", {CHECK_STATE, FENWYN_GET_CUSTOM_ITEM_TEXT}, InfoRule::Mask, 0xF, 0, ItemRule::BitOf, 0},
    {L"Sleep", {CHECK_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::NotAsked, 0},
    {L"Hibernate", {CHECK_ACTION}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::NotAsked, 0},
    {L"Output", {CHECK_STATE}, InfoRule::TwoMasks, 0x7FFFF, 0x83FFFFFF, ItemRule::Arrangement, 0},
    {L"Brightness", {CHECK_BASIC, FENWYN_GET_CURRENT_ITEM, FENWYN_FOCUS_ITEM, FENWYN_IS_DUAL_BRT_CTRL},
        InfoRule::Levels, 0, 0, ItemRule::Level, 0},
    {L"Wireless", {CHECK_ACTION}, InfoRule::Mask, 0x7FFF, 0, ItemRule::NotAsked, 0},
    {L"Touchpad", {CHECK_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::Below, 2},
    {L"Zoom", {CHECK_STATE}, InfoRule::Mask, 0x7, 0, ItemRule::Below, 3},
    {L"CursorOverlay", {CHECK_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::Below, 2},
    {L"NumericOverlay", {CHECK_STATE}, InfoRule::Exact, FENWYN_TWO_ITEMS, 0, ItemRule::Below, 2},
    {L"ODD", {CHECK_STATE}, InfoRule::Mask, 0x1F, 0, ItemRule::BitOf, 0},
    {L"KBB", {CHECK_STATE}, InfoRule::Mask, 0x7, 0, ItemRule::LowHalf, 3},
};
// clang-format on

#undef CHECK_STATE
#undef CHECK_ACTION
#undef CHECK_BASIC

inline constexpr wchar_t kOutputWithFavourites[] = L"Output_2";
inline constexpr std::array<const char*, kMaxExports> kOutputExports{FENWYN_FNF5_INITIALIZE,
                                                                     FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT,
                                                                     FENWYN_FNF5_GET_DISPLAY_ITEM_INFO,
                                                                     FENWYN_FNF5_SET_CURRENT_FOR_PANIC,
                                                                     FENWYN_GET_CURRENT_ITEM,
                                                                     FENWYN_SELECT_ITEM,
                                                                     FENWYN_FINALIZE};

inline constexpr std::wstring_view kConnectorWords[] = {L"LCD", L"RGB", L"DVI", L"HDMI", L"DisplayPort"};

inline constexpr UINT kLongestReason = 400;  // characters of GetUnsupportedReason
inline constexpr DWORD kSlowCall = 50;       // ms that a person begins to feel

}  // namespace check
