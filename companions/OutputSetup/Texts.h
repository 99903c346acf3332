// The program's texts in the language of the user interface.
#pragma once

#include <windows.h>

#include <string>

namespace setup {

// A text of the string table; empty if there is none.
[[nodiscard]] std::wstring text(UINT id);

// The same with its "%1" replaced.
[[nodiscard]] std::wstring text(UINT id, const std::wstring& argument);

// The system's message for an error code, or the number if it has none.
[[nodiscard]] std::wstring systemErrorText(DWORD error);

// The displayed name of an arrangement (FENWYN_MODE_...).
[[nodiscard]] std::wstring modeText(LONG mode);

}  // namespace setup
