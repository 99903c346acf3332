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
