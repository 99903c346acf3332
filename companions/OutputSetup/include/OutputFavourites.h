// Reads and writes the user's favourites of the display output, for the program that manages them and for the plug-ins
// that offer them. The registry layout is in OutputSetup.h. Nothing is cached; thread: any.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "OutputSetup.h"

namespace favourites {

inline constexpr std::size_t kMost = OUTPUT_SETUP_FAVOURITES;
inline constexpr std::size_t kMostTextChars = OUTPUT_SETUP_FAVOURITE_TEXT_CHARS;
inline constexpr std::size_t kMostDisplays = OUTPUT_SETUP_FAVOURITE_DISPLAYS;

// Which monitor a record of a favourite is about, and where its upper left corner lies on the desktop.
struct Position {
    std::wstring path;  // of the monitor's device
    POINT corner{};
};

struct Favourite {
    std::wstring text;
    LONG mode = FENWYN_MODE_INTERNAL;
    std::vector<FenwynDisplayRecord> displays;
    // One for each record; empty if positions were not stored, and then only the mode says what to set up.
    std::vector<Position> positions{};
};

// The connector name is cut to fit.
[[nodiscard]] FenwynDisplayRecord displayRecord(const std::wstring& connector, ULONG index, ULONG width, ULONG height);

// False until a list, even an empty one, is stored for the first time.
[[nodiscard]] bool exist();

// In the order in which they are offered. Invalid entries are omitted.
[[nodiscard]] std::vector<Favourite> load();

// Replaces all favourites; those beyond kMost are dropped. To add one: load, append, store. Returns a system error
// code. After a failure, or an end of the process meanwhile, each number has its old favourite or its new one.
[[nodiscard]] LSTATUS store(const std::vector<Favourite>& favourites);

}  // namespace favourites
