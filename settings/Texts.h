// The program's texts in the language of the user interface.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

namespace settings {

// A text of the string table; empty if there is none.
[[nodiscard]] std::wstring text(UINT id);

// The same with "%1", "%2", ... replaced by the arguments in their order.
[[nodiscard]] std::wstring text(UINT id, std::initializer_list<std::wstring> arguments);

// The system's message for an error code, or the number if it has none.
[[nodiscard]] std::wstring systemErrorText(DWORD error);

}  // namespace settings
