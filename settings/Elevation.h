// Changes that take administrator rights: this program once more, with these rights, carries them out and ends.
#pragma once

#include "Store.h"

namespace settings {

// The first argument of that process; the sum of the file and its path follow.
inline constexpr wchar_t kWriteArgument[] = L"/write";

// Asks the person for the rights and has the changes written. A system error code; ERROR_CANCELLED: refused.
[[nodiscard]] LSTATUS writeElevated(const Changes& changes);

// In the process with the rights: writes what the file at `path` asks for, if its SHA-256 is `sum`, so that nobody can
// exchange it after the question, and if everything in it is allowed and belongs to the machine; otherwise nothing. A
// system error code.
[[nodiscard]] LSTATUS carryOut(IStore& store, const std::wstring& sum, const std::wstring& path);

// In hexadecimal digits; empty if the system cannot.
[[nodiscard]] std::wstring sumOf(const std::wstring& text);

}  // namespace settings
