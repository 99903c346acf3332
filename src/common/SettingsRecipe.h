// Registry values that belong together, such as a sample function list: written, recognised and removed as one.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace common {

struct Setting {
    std::wstring key;  // below the root
    std::wstring name;
    DWORD type;
    std::vector<BYTE> data;
    bool keepExisting = false;  // a value that is there already is the user's and stays
};

// REG_SZ.
[[nodiscard]] Setting textSetting(std::wstring key, std::wstring name, const std::wstring& text);
// REG_DWORD.
[[nodiscard]] Setting numberSetting(std::wstring key, std::wstring name, DWORD number);
// REG_QWORD.
[[nodiscard]] Setting longNumberSetting(std::wstring key, std::wstring name, ULONGLONG number);
// REG_BINARY: 32-bit numbers, low byte first.
[[nodiscard]] Setting numbersSetting(std::wstring key, std::wstring name, std::span<const DWORD> numbers);

// Writes them below `root`, in their order. A system error code; what was written before the failure stays.
[[nodiscard]] LSTATUS writeSettings(HKEY root, std::span<const Setting> settings);

// Whether each of them is there as writeSettings writes it; those that keep what exists do not count.
[[nodiscard]] bool settingsAreThere(HKEY root, std::span<const Setting> settings);

// Removes each value that still is as writeSettings wrote it, and the keys on its path that became empty, except the
// first part of the path. What others wrote or changed stays. The first error; nothing to remove is a success.
[[nodiscard]] LSTATUS removeSettings(HKEY root, std::span<const Setting> settings);

}  // namespace common
