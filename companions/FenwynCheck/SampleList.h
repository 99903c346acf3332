// The function list that FenwynCheck writes for a real machine: the maker-neutral family, on the function keys.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "common/SettingsRecipe.h"

namespace machine {

struct SampleFunction {
    const wchar_t* name;
    std::vector<DWORD> codes;  // empty: never in the list
};

// In the order of the strip, which is that of the keys.
[[nodiscard]] std::span<const SampleFunction> sampleFunctions();

// Those of `names` that the list can have, in its own spelling and order, each once.
[[nodiscard]] std::vector<std::wstring> listedNames(std::span<const std::wstring> names);

// All that the list can have.
[[nodiscard]] std::vector<std::wstring> listableNames();

[[nodiscard]] std::wstring samplePlugin(const std::wstring& folder, const std::wstring& function);

// The settings that make Fenwyn show `names`, in the order of the strip; names that the family does not have are left
// out. `folder` is where Fenwyn stands, without a backslash at its end. Captions are in the language of `language`.
[[nodiscard]] std::vector<common::Setting> sampleSettings(const std::wstring& folder,
                                                          std::span<const std::wstring> names, LANGID language);

// "Mute;Lock;" as names.
[[nodiscard]] std::vector<std::wstring> namesOf(const std::wstring& list);

}  // namespace machine
