// Bounded reads from the registry: whatever is stored there, a read is cheap and never throws.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/Handle.h"

namespace hotkey {

// Larger values are treated as unreadable.
inline constexpr DWORD kMaxValueBytes = 1024 * 1024;

// Null if the key does not exist or may not be read.
[[nodiscard]] common::UniqueRegKey openKey(HKEY root, const wchar_t* path, REGSAM access = KEY_READ) noexcept;

// The bytes of a value of any type; nothing if it is missing or too large.
[[nodiscard]] std::optional<std::vector<BYTE>> readBytes(HKEY key, const wchar_t* name);
// As NUL-terminated text: ends at the first stored NUL.
[[nodiscard]] std::optional<std::wstring> readText(HKEY key, const wchar_t* name);
// As little-endian 32-bit numbers; a remainder below four bytes is dropped.
[[nodiscard]] std::optional<std::vector<DWORD>> readNumbers(HKEY key, const wchar_t* name);
// The first number, or `fallback`.
[[nodiscard]] DWORD readNumber(HKEY key, const wchar_t* name, DWORD fallback);

}  // namespace hotkey
