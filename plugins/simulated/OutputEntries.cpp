#include "OutputEntries.h"

#include "OutputFavourites.h"
#include "State.h"
#include "Words.h"

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

constexpr wchar_t kOwnConnector[] = L"LCD";

std::vector<FenwynDisplayRecord> recordsOf(unsigned screens) {
    std::vector<FenwynDisplayRecord> records;
    if ((screens & kBuiltIn) != 0) {
        records.push_back(favourites::displayRecord(kOwnConnector, 0, 1920, 1080));
    }
    if ((screens & kExternal) != 0) {
        records.push_back(favourites::displayRecord(L"HDMI 1", 1, 2560, 1440));
    }
    return records;
}

OutputEntry entryOf(const BuiltIn& row) {
    return {row.mode, row.flags, word(row.text), recordsOf(row.screens)};
}

// Where the next display goes, seen from the one before: a share of the size of the one before, for the sides on which
// the desktop goes on behind it, or of its own, for those on which it goes on before it.
struct Side {
    LONG mode;
    LONG x;
    LONG y;
};
constexpr Side kSides[] = {{FENWYN_MODE_EXTEND_RIGHT, 1, 0},
                           {FENWYN_MODE_EXTEND_LEFT, -1, 0},
                           {FENWYN_MODE_EXTEND_ABOVE, 0, -1},
                           {FENWYN_MODE_EXTEND_BELOW, 0, 1},
                           {FENWYN_MODE_SEVERAL, 1, 0}};

// The same place for every mode without a side.
POINT nextPlace(LONG mode, const MachineDisplay& before, const FenwynDisplayRecord& record) {
    for (const Side& side : kSides) {
        if (side.mode == mode) {
            const FenwynDisplayRecord& step = side.x + side.y > 0 ? before.record : record;
            return {before.place.x + side.x * static_cast<LONG>(step.uWidth),
                    before.place.y + side.y * static_cast<LONG>(step.uHeight)};
        }
    }
    return before.place;
}

// A new machine has one favourite. It is stored, so that the display-configuration program shows it too.
std::vector<favourites::Favourite> machineFavourites() {
    if (favourites::exist()) {
        return favourites::load();
    }
    std::vector<favourites::Favourite> delivered{{word(L"Desk"),
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

bool canBeChosen(const OutputEntry& entry) {
    return entry.mode <= FENWYN_MODE_SEVERAL && (entry.flags & FENWYN_ENTRY_NEEDS_SETUP) == 0;
}

LONG currentOutputEntry(const std::vector<OutputEntry>& entries) {
    const DWORD stored = readNumber(L"Output_2", L"Item", 0);
    return stored < entries.size() && entries[stored].mode <= FENWYN_MODE_SEVERAL ? static_cast<LONG>(stored) : 0;
}

std::vector<MachineDisplay> presentDisplays() {
    const std::vector<OutputEntry> entries = outputEntries();
    const OutputEntry& entry = entries[static_cast<std::size_t>(currentOutputEntry(entries))];
    std::vector<MachineDisplay> displays;
    // An entry that needs setup lists no displays on its card; the desktop uses both.
    for (const FenwynDisplayRecord& record :
         entry.displays.empty() ? recordsOf(kBuiltIn | kExternal) : std::vector(entry.displays)) {
        const bool own = std::wstring_view(record.szConnector) == kOwnConnector;
        const POINT place = displays.empty() ? POINT{0, 0} : nextPlace(entry.mode, displays.back(), record);
        displays.push_back({word(own ? L"Built-in screen" : L"Monitor"), record, own, place});
    }
    return displays;
}

bool setArrangement(LONG mode) {
    const LONG wanted = mode == FENWYN_MODE_PROJECTOR ? LONG{FENWYN_MODE_EXTERNAL} : mode;
    for (DWORD i = 0; i < std::size(kArrangements); ++i) {
        if (kArrangements[i].mode == wanted) {
            return writeNumber(L"Output_2", L"Item", i);
        }
    }
    return false;
}

}  // namespace sim
