// Checks a plug-in against the contract: loads it, makes its queries in Fenwyn's order, and unloads it. The machine is
// not changed: neither SelectItem nor FocusItem nor the panic export is called, unless an item is given.
#pragma once

#include <optional>
#include <string>

#include "Report.h"

namespace check {

// `function`: the function's name as in the function list; letter case does not matter. `item`: passed to SelectItem
// (FocusItem for Brightness) if given.
[[nodiscard]] CReport checkPlugin(const std::wstring& path, const std::wstring& function,
                                  std::optional<long> item = std::nullopt);

// The names that Fenwyn knows, separated by blanks.
[[nodiscard]] std::wstring knownFunctions();

}  // namespace check
