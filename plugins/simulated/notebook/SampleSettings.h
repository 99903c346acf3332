// The settings that make Fenwyn show the simulated notebook's functions: card configuration, function list and install
// path, made from the table of functions.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "Functions.h"
#include "common/SettingsRecipe.h"

namespace sim {

// What stands on a function's card, below its key in the function list.
inline constexpr wchar_t kCaptionValue[] = L"Caption";

// `folder` is that of this program and Fenwyn, without a trailing backslash; the plug-ins are in its "plugins". `all`
// adds the functions that are not in the sample list. The captions are in the
// language that comes nearest to `language`.
[[nodiscard]] std::vector<common::Setting> sampleSettings(const std::wstring& folder, bool all, LANGID language);

// Writes them below `root` (normally HKEY_LOCAL_MACHINE). Returns a system error code; ERROR_ACCESS_DENIED without the
// right to write there.
[[nodiscard]] LSTATUS registerSample(HKEY root, const std::wstring& folder, bool all, LANGID language);

// Whether there is a function list below `root`, and whether it is the sample's in one of the languages, with or
// without the functions that are not in the sample list. Settings beside the list say nothing about it.
enum class ListState { None, Sample, WholeSample, Other };
[[nodiscard]] ListState listState(HKEY root, const std::wstring& folder);

// Makes the function list that is below `root` name `function`, carried out by the plug-in `library` (a path). A
// caption and keys are written, as the sample has them, only if the function has no keys; the rest of the list stays as
// it is. ERROR_FILE_NOT_FOUND if there is no list.
[[nodiscard]] LSTATUS offerFunction(HKEY root, const Function& function, const std::wstring& library, LANGID language);

// Removes each value that is unchanged since registerSample wrote it, and the keys that became empty. What others wrote
// or changed is kept. If there is nothing to remove, this is a success.
[[nodiscard]] LSTATUS unregisterSample(HKEY root, const std::wstring& folder);

}  // namespace sim
