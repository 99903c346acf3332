// The settings that make Fenwyn show the simulated notebook's functions: card configuration, function list and install
// path, made from the table of functions.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace sim {

struct Setting {
    std::wstring key;  // below the root
    std::wstring name;
    DWORD type;
    std::vector<BYTE> data;
    bool keepExisting = false;  // a value that is there already is the user's and stays
};

// `folder` is where this program and Fenwyn stand, without a backslash at its end; the plug-ins are in its "plugins".
// `all` adds the functions that are not in the sample list.
[[nodiscard]] std::vector<Setting> sampleSettings(const std::wstring& folder, bool all);

// Writes them below `root` (HKEY_LOCAL_MACHINE in earnest). A system error code; ERROR_ACCESS_DENIED without the right
// to write there.
[[nodiscard]] LSTATUS registerSample(HKEY root, const std::wstring& folder, bool all);

// Whether there is a function list below `root`, and whether it is the sample's (with or without the functions that are
// not in the sample list).
enum class ListState { None, Sample, Other };
[[nodiscard]] ListState listState(HKEY root, const std::wstring& folder);

// Removes each value that still is as registerSample wrote it, and the keys that became empty. What others wrote or
// changed stays. Nothing to remove is a success.
[[nodiscard]] LSTATUS unregisterSample(HKEY root, const std::wstring& folder);

}  // namespace sim
