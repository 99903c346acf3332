// The simulated machine's behaviour: one operation per query of the contract, for every kind of function. The plug-ins
// wrap them into exports, the notebook's window shows their results.
#pragma once

#include <windows.h>

#include <string>

#include "Functions.h"

namespace sim {

struct ItemInfo {
    DWORD info = 0;
    DWORD info2 = 0;
};

// Both values of GetDisplayItemInfo. False: the machine cannot tell (the wireless error mode).
[[nodiscard]] bool itemInfo(const Function& function, ItemInfo& info);

// The current item as GetCurrentItem packs it.
[[nodiscard]] LONG currentItem(const Function& function);

// The user's choice as SelectItem gets it. False if the function has no such item; nothing changes then.
[[nodiscard]] bool selectItem(const Function& function, LONG item);

// Brightness: sets the level of the screen, or of both. kNoChoice is a success; false for levels out of range.
inline constexpr LONG kNoChoice = -1;
[[nodiscard]] bool focusItem(const Function& function, LONG level);
[[nodiscard]] bool dualControl(const Function& function);

// Name of a power plan.
[[nodiscard]] std::wstring planName(const Function& function, DWORD plan);

// The state in words, for people, in the language of the user interface.
[[nodiscard]] std::wstring stateText(const Function& function);

}  // namespace sim
