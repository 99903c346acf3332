// How the displays form the desktop, and how to change that.
#include <algorithm>
#include <iterator>

#include "Displays.h"

namespace setup {
namespace {

struct TopologyRow {
    LONG arrangement;
    UINT32 topology;
};

constexpr TopologyRow kTopologies[] = {
    {FENWYN_MODE_INTERNAL, SDC_TOPOLOGY_INTERNAL},   {FENWYN_MODE_EXTERNAL, SDC_TOPOLOGY_EXTERNAL},
    {FENWYN_MODE_PROJECTOR, SDC_TOPOLOGY_EXTERNAL},  {FENWYN_MODE_CLONE, SDC_TOPOLOGY_CLONE},
    {FENWYN_MODE_EXTEND_RIGHT, SDC_TOPOLOGY_EXTEND}, {FENWYN_MODE_EXTEND_LEFT, SDC_TOPOLOGY_EXTEND},
    {FENWYN_MODE_EXTEND_ABOVE, SDC_TOPOLOGY_EXTEND}, {FENWYN_MODE_EXTEND_BELOW, SDC_TOPOLOGY_EXTEND},
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

// The system collects the new places one by one and applies them together.
LONG moveDisplays(std::span<const Display> displays, std::span<const POINT> places) {
    for (std::size_t i = 0; i < places.size(); ++i) {
        DEVMODEW mode{};
        mode.dmSize = sizeof(mode);
        mode.dmFields = DM_POSITION;
        mode.dmPosition = {places[i].x, places[i].y};
        if (::ChangeDisplaySettingsExW(displays[i].device.c_str(), &mode, nullptr, CDS_UPDATEREGISTRY | CDS_NORESET,
                                       nullptr) != DISP_CHANGE_SUCCESSFUL) {
            return ERROR_BAD_CONFIGURATION;
        }
    }
    const LONG result = ::ChangeDisplaySettingsExW(nullptr, nullptr, nullptr, 0, nullptr);
    return result == DISP_CHANGE_SUCCESSFUL ? ERROR_SUCCESS : ERROR_BAD_CONFIGURATION;
}

}  // namespace

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

std::optional<UINT32> topologyOf(LONG arrangement) {
    for (const TopologyRow& row : kTopologies) {
        if (row.arrangement == arrangement) {
            return row.topology;
        }
    }
    return std::nullopt;
}

LONG applyArrangement(LONG arrangement) {
    const std::optional<UINT32> topology = topologyOf(arrangement);
    if (!topology) {
        return ERROR_NOT_SUPPORTED;
    }
    const LONG error = ::SetDisplayConfig(0, nullptr, 0, nullptr, SDC_APPLY | *topology);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    const std::vector<Display> displays = attachedDisplays();
    const std::vector<POINT> places = placesFor(arrangement, displays);
    return places.size() < 2 ? ERROR_SUCCESS : moveDisplays(displays, places);
}

}  // namespace setup
