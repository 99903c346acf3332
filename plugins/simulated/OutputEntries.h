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

// Whether an entry can be chosen on its card: an arrangement of screens that the display-configuration program has
// nothing to do with.
[[nodiscard]] bool canBeChosen(const OutputEntry& entry);

// The current entry: the stored one, or the built-in screen if that is no longer an arrangement.
[[nodiscard]] LONG currentOutputEntry(const std::vector<OutputEntry>& entries);

// A display as it is used now.
struct MachineDisplay {
    std::wstring name;
    FenwynDisplayRecord record;
    bool builtIn = false;
    POINT place{};  // its upper left corner on the desktop, in pixels
};

// The displays of the current entry, where its arrangement puts them.
[[nodiscard]] std::vector<MachineDisplay> presentDisplays();

// Makes the machine's own arrangement of that mode current. False when it has none.
[[nodiscard]] bool setArrangement(LONG mode);

}  // namespace sim
