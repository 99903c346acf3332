// The entries of the simulated display output: built-in arrangements, the user's favourites, and the two entries that
// open the display-configuration program, in this order.
#pragma once

#include <string>
#include <vector>

#include "FenwynPlugin.h"

namespace sim {

struct OutputEntry {
    LONG mode = 0;
    ULONG flags = 0;    // FENWYN_ENTRY_...
    std::wstring text;  // the favourite's name, or the name of the arrangement in the notebook's window
    std::vector<FenwynDisplayRecord> displays;
};

[[nodiscard]] std::vector<OutputEntry> outputEntries();

// Whether an entry is an arrangement of screens, which can be current.
[[nodiscard]] bool isArrangement(const OutputEntry& entry);

// The current entry: the stored one, or the built-in screen if that is no longer an arrangement.
[[nodiscard]] LONG currentOutputEntry(const std::vector<OutputEntry>& entries);

}  // namespace sim
