#include "OutputArrangement.h"

#include <algorithm>
#include <iterator>

namespace displays {
namespace {

struct TechnologyRow {
    DWORD technology;
    Connection connection;
};

// The words that the display preview of the strip looks for.
constexpr Connection kBuiltIn{L"LCD", true};
constexpr Connection kUnknownExternal{L"RGB", false};
constexpr TechnologyRow kTechnologies[] = {
    {static_cast<DWORD>(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_INTERNAL), kBuiltIn},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_LVDS, kBuiltIn},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DISPLAYPORT_EMBEDDED, kBuiltIn},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_UDI_EMBEDDED, kBuiltIn},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_HD15, {L"RGB", false}},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DVI, {L"DVI", false}},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_HDMI, {L"HDMI", false}},
    {DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DISPLAYPORT_EXTERNAL, {L"DisplayPort", false}},
};

// A side of the notebook's own screen: whether another display lies completely beyond it, and the step there in units
// of a display's size. To the left and above, a display moves by its own size; to the right and below, by that of the
// previous one.
struct Side {
    LONG arrangement;
    bool (*beyond)(const RECT& own, const RECT& other);
    int x;
    int y;
};

constexpr Side kSides[] = {
    {FENWYN_MODE_EXTEND_RIGHT, [](const RECT& own, const RECT& other) { return other.left >= own.right; }, 1, 0},
    {FENWYN_MODE_EXTEND_LEFT, [](const RECT& own, const RECT& other) { return other.right <= own.left; }, -1, 0},
    {FENWYN_MODE_EXTEND_ABOVE, [](const RECT& own, const RECT& other) { return other.bottom <= own.top; }, 0, -1},
    {FENWYN_MODE_EXTEND_BELOW, [](const RECT& own, const RECT& other) { return other.top >= own.bottom; }, 0, 1},
};

SIZE sizeOf(const Display& display) {
    return {display.place.right - display.place.left, display.place.bottom - display.place.top};
}

bool samePlace(const Display& first, const Display& second) {
    return first.place.left == second.place.left && first.place.top == second.place.top;
}

std::size_t ownScreen(std::span<const Display> displays) {
    const auto found = std::find_if(displays.begin(), displays.end(), [](const Display& d) { return d.builtIn; });
    return found == displays.end() ? 0 : static_cast<std::size_t>(found - displays.begin());
}

bool allBeyond(const Side& side, std::span<const Display> displays, std::size_t own) {
    for (std::size_t i = 0; i < displays.size(); ++i) {
        if (i != own && !side.beyond(displays[own].place, displays[i].place)) {
            return false;
        }
    }
    return true;
}

// In a row along the side, the own screen at the origin.
std::vector<POINT> placesAlong(const Side& side, std::span<const Display> displays, std::size_t own) {
    std::vector<POINT> places(displays.size());
    SIZE reach = side.x + side.y > 0 ? sizeOf(displays[own]) : SIZE{0, 0};
    for (std::size_t i = 0; i < displays.size(); ++i) {
        if (i == own) {
            continue;
        }
        const SIZE size = sizeOf(displays[i]);
        if (side.x + side.y < 0) {
            reach = {reach.cx + size.cx, reach.cy + size.cy};
        }
        places[i] = {side.x * reach.cx, side.y * reach.cy};
        if (side.x + side.y > 0) {
            reach = {reach.cx + size.cx, reach.cy + size.cy};
        }
    }
    return places;
}

}  // namespace

Connection connectionOf(DWORD technology, bool first) {
    for (const TechnologyRow& row : kTechnologies) {
        if (row.technology == technology) {
            return row.connection;
        }
    }
    return first ? kBuiltIn : kUnknownExternal;
}

void nameConnector(std::span<const Display> displays, Display& display, Connection connection) {
    const std::wstring word = connection.word;
    const auto ofItsKind = std::count_if(displays.begin(), displays.end(),
                                         [&](const Display& other) { return other.connector.starts_with(word); });
    display.builtIn = connection.builtIn;
    display.connector = connection.builtIn && ofItsKind == 0 ? word : word + L" " + std::to_wstring(ofItsKind + 1);
}

LONG arrangementOf(std::span<const Display> displays) {
    if (displays.size() < 2) {
        return displays.empty() || displays.front().builtIn ? FENWYN_MODE_INTERNAL : FENWYN_MODE_EXTERNAL;
    }
    if (std::all_of(displays.begin(), displays.end(),
                    [&](const Display& other) { return samePlace(displays.front(), other); })) {
        return FENWYN_MODE_CLONE;
    }
    for (const Side& side : kSides) {
        if (allBeyond(side, displays, ownScreen(displays))) {
            return side.arrangement;
        }
    }
    return FENWYN_MODE_SEVERAL;
}

std::vector<POINT> placesFor(LONG arrangement, std::span<const Display> displays) {
    const auto side = std::find_if(std::begin(kSides), std::end(kSides),
                                   [&](const Side& row) { return row.arrangement == arrangement; });
    if (side == std::end(kSides) || displays.empty()) {
        return {};
    }
    std::vector<POINT> places = placesAlong(*side, displays, ownScreen(displays));
    const auto first = std::find_if(displays.begin(), displays.end(), [](const Display& display) {
        return display.place.left == 0 && display.place.top == 0;
    });
    const POINT origin = places[first == displays.end() ? 0 : static_cast<std::size_t>(first - displays.begin())];
    for (POINT& place : places) {
        place = {place.x - origin.x, place.y - origin.y};
    }
    return places;
}

favourites::Favourite favouriteOf(std::wstring text, std::span<const Display> displays) {
    favourites::Favourite favourite{std::move(text), arrangementOf(displays), {}, {}};
    ULONG index = 0;
    for (const Display& display : displays) {
        favourite.displays.push_back(favourites::displayRecord(
            display.connector, index++, static_cast<ULONG>(display.place.right - display.place.left),
            static_cast<ULONG>(display.place.bottom - display.place.top)));
        favourite.positions.push_back({display.path, {display.place.left, display.place.top}});
    }
    // A monitor without a path could not be found again.
    if (std::any_of(displays.begin(), displays.end(), [](const Display& display) { return display.path.empty(); })) {
        favourite.positions.clear();
    }
    return favourite;
}

}  // namespace displays
