#include "OutputEntries.h"

#include "OutputFavourites.h"
#include "State.h"

namespace sim {

namespace {

// Which of the machine's two screens an arrangement uses.
enum Screens : unsigned { kNoScreens = 0, kBuiltIn = 1, kExternal = 2 };

struct BuiltIn {
    LONG mode;
    ULONG flags;
    unsigned screens;
    const wchar_t* text;
};

constexpr BuiltIn kArrangements[] = {
    {FENWYN_MODE_INTERNAL, FENWYN_ENTRY_SHOW_RESOLUTION, kBuiltIn, L"this screen only"},
    {FENWYN_MODE_CLONE, 0, kBuiltIn | kExternal, L"same on both"},
    {FENWYN_MODE_EXTEND_RIGHT, FENWYN_ENTRY_SHOW_RESOLUTION, kBuiltIn | kExternal, L"extended"},
    {FENWYN_MODE_EXTERNAL, FENWYN_ENTRY_SHOW_RESOLUTION, kExternal, L"second screen only"},
    {FENWYN_MODE_EXTEND_ABOVE, FENWYN_ENTRY_NEEDS_SETUP, kNoScreens, L"extended upwards"},
};

constexpr BuiltIn kPrograms[] = {
    {FENWYN_MODE_CONFIGURE, 0, kNoScreens, L"configure"},
    {FENWYN_MODE_SAVE, 0, kNoScreens, L"save"},
};

OutputEntry entryOf(const BuiltIn& row) {
    OutputEntry entry{row.mode, row.flags, row.text, {}};
    if ((row.screens & kBuiltIn) != 0) {
        entry.displays.push_back(favourites::displayRecord(L"LCD", 0, 1920, 1080));
    }
    if ((row.screens & kExternal) != 0) {
        entry.displays.push_back(favourites::displayRecord(L"HDMI 1", 1, 2560, 1440));
    }
    return entry;
}

// A new machine has one favourite. It is stored, so that the display-configuration program shows it too.
std::vector<favourites::Favourite> machineFavourites() {
    if (favourites::exist()) {
        return favourites::load();
    }
    std::vector<favourites::Favourite> delivered{{L"Desk",
                                                  FENWYN_MODE_EXTEND_RIGHT,
                                                  {favourites::displayRecord(L"LCD", 0, 1920, 1080),
                                                   favourites::displayRecord(L"DisplayPort 1", 1, 2560, 1440)}}};
    static_cast<void>(favourites::store(delivered));  // it is offered even if the registry refuses
    return delivered;
}

}  // namespace

std::vector<OutputEntry> outputEntries() {
    std::vector<OutputEntry> entries;
    for (const BuiltIn& row : kArrangements) {
        entries.push_back(entryOf(row));
    }
    for (favourites::Favourite& favourite : machineFavourites()) {
        entries.push_back({favourite.mode, FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_SHOW_RESOLUTION,
                           std::move(favourite.text), std::move(favourite.displays)});
    }
    for (const BuiltIn& row : kPrograms) {
        entries.push_back(entryOf(row));
    }
    return entries;
}

bool isArrangement(const OutputEntry& entry) {
    return entry.mode <= FENWYN_MODE_SEVERAL && (entry.flags & FENWYN_ENTRY_NEEDS_SETUP) == 0;
}

LONG currentOutputEntry(const std::vector<OutputEntry>& entries) {
    const DWORD stored = readNumber(L"Output_2", L"Item", 0);
    return stored < entries.size() && isArrangement(entries[stored]) ? static_cast<LONG>(stored) : 0;
}

}  // namespace sim
