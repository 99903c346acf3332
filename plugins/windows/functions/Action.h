// The items of functions without a state: item 0 does it, item 1 cancels.
#pragma once

#include <windows.h>

namespace win {

inline constexpr LONG kItemDo = 0;
inline constexpr LONG kItemCancel = 1;

}  // namespace win
