// Keys, states and results in words.
#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "FenwynFunctions.h"
#include "plugins/sdk/check/Report.h"

namespace machine {

// "right Ctrl": the key of that virtual-key code.
[[nodiscard]] std::wstring modifierName(DWORD virtualKey);

// "F6 (0x40), F7 (0x41), volume mute alone (0x1E020)", as the keyboard layout calls them; "no key" for none.
[[nodiscard]] std::wstring keyNames(std::span<const DWORD> codes);

// The present state of the function. Empty when it has none to ask for.
[[nodiscard]] std::wstring stateText(const fenwyn::Function& function, const check::Answers& answers);

// The state that `item` stands for: "muted", "level 7 of 10", "item 3".
[[nodiscard]] std::wstring itemText(const fenwyn::Function& function, const check::Answers& answers, LONG item);

// "0.42 ms".
[[nodiscard]] std::wstring milliseconds(double duration);

}  // namespace machine
