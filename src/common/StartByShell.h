// Starts what a user has chosen for a key: a program, a file or an address.
#pragma once

#include <windows.h>

#include <string>

namespace common {

// Addresses and extended paths may be longer than MAX_PATH. However, some shells copy the text together with words of
// their own into a buffer of 1024 characters, and crash when it overflows.
inline constexpr std::size_t kMostFileChars = 960;

// Starts `file` as a double click on it would. ERROR_SUCCESS if it was started, otherwise the shell's error (1..32);
// for a text that is too long, which is logged, SE_ERR_FNF. The shell may dispatch messages meanwhile.
[[nodiscard]] DWORD startByShell(const std::wstring& file, const std::wstring& param);

}  // namespace common
