// The items of functions that are on or off: item 0 is "on", item 1 is "off".
#pragma once

#include <windows.h>

#include <optional>

namespace win {

inline constexpr LONG kItemOn = 0;
inline constexpr LONG kItemOff = 1;

[[nodiscard]] constexpr std::optional<LONG> toggleItem(std::optional<bool> bOn) {
    return bOn ? std::optional<LONG>(*bOn ? kItemOn : kItemOff) : std::nullopt;
}

// Nothing for an unknown item.
[[nodiscard]] constexpr std::optional<bool> toggleState(LONG lItem) {
    return lItem == kItemOn || lItem == kItemOff ? std::optional<bool>(lItem == kItemOn) : std::nullopt;
}

}  // namespace win
