#include <algorithm>
#include <iterator>
#include <tuple>

#include "system/WindowsDisplays.h"

namespace win {

namespace {

struct TopologyRow {
    Topology topology;
    UINT32 uFlag;
};

constexpr TopologyRow kTopologies[] = {{Topology::Internal, SDC_TOPOLOGY_INTERNAL},
                                       {Topology::Clone, SDC_TOPOLOGY_CLONE},
                                       {Topology::Extend, SDC_TOPOLOGY_EXTEND},
                                       {Topology::External, SDC_TOPOLOGY_EXTERNAL}};

// The system refuses a topology that it may change: the two are never asked for together.
constexpr UINT32 kApplyTopology = SDC_APPLY;
constexpr UINT32 kApplyPaths = SDC_APPLY | SDC_USE_SUPPLIED_DISPLAY_CONFIG | SDC_SAVE_TO_DATABASE | SDC_ALLOW_CHANGES;
static_assert((kApplyTopology & SDC_ALLOW_CHANGES) == 0);
static_assert((kApplyPaths & (SDC_TOPOLOGY_INTERNAL | SDC_TOPOLOGY_CLONE | SDC_TOPOLOGY_EXTEND | SDC_TOPOLOGY_EXTERNAL |
                              SDC_TOPOLOGY_SUPPLIED)) == 0);

// Screens come and go between the query for the number of records and the query for the records.
constexpr int kQueryTries = 3;

bool isActive(const DISPLAYCONFIG_PATH_INFO& path) {
    return (path.flags & DISPLAYCONFIG_PATH_ACTIVE) != 0;
}

bool sameId(const LUID& one, const LUID& other) {
    return one.LowPart == other.LowPart && one.HighPart == other.HighPart;
}

bool sameTarget(const DISPLAYCONFIG_PATH_INFO& one, const DISPLAYCONFIG_PATH_INFO& other) {
    return one.targetInfo.id == other.targetInfo.id && sameId(one.targetInfo.adapterId, other.targetInfo.adapterId);
}

bool sameSource(const DISPLAYCONFIG_PATH_INFO& one, const DISPLAYCONFIG_PATH_INFO& other) {
    return one.sourceInfo.id == other.sourceInfo.id && sameId(one.sourceInfo.adapterId, other.sourceInfo.adapterId);
}

std::tuple<LONG, DWORD, UINT32> orderOf(const DISPLAYCONFIG_PATH_INFO& path) {
    const DISPLAYCONFIG_PATH_TARGET_INFO& rTarget = path.targetInfo;
    return {rTarget.adapterId.HighPart, rTarget.adapterId.LowPart, rTarget.id};
}

bool sameCorner(const PlacedScreen& one, const PlacedScreen& other) {
    return one.place.left == other.place.left && one.place.top == other.place.top;
}

// Where the desktop's part for a path lies.
RECT placeOf(const DISPLAYCONFIG_PATH_INFO& path, const std::vector<DISPLAYCONFIG_MODE_INFO>& rModes) {
    const UINT32 uMode = path.sourceInfo.modeInfoIdx;
    if (uMode >= rModes.size() || rModes[uMode].infoType != DISPLAYCONFIG_MODE_INFO_TYPE_SOURCE) {
        return {};
    }
    const DISPLAYCONFIG_SOURCE_MODE& rMode = rModes[uMode].sourceMode;
    return {rMode.position.x, rMode.position.y, rMode.position.x + static_cast<LONG>(rMode.width),
            rMode.position.y + static_cast<LONG>(rMode.height)};
}

// The part of the desktop that a path shows; its target gets the mode that fits best.
DISPLAYCONFIG_MODE_INFO sourceMode(const DISPLAYCONFIG_PATH_INFO& path, const RECT& rPlace) {
    DISPLAYCONFIG_MODE_INFO mode{};
    mode.infoType = DISPLAYCONFIG_MODE_INFO_TYPE_SOURCE;
    mode.adapterId = path.sourceInfo.adapterId;
    mode.id = path.sourceInfo.id;
    mode.sourceMode.width = static_cast<UINT32>(rPlace.right - rPlace.left);
    mode.sourceMode.height = static_cast<UINT32>(rPlace.bottom - rPlace.top);
    mode.sourceMode.pixelFormat = DISPLAYCONFIG_PIXELFORMAT_32BPP;
    mode.sourceMode.position = {rPlace.left, rPlace.top};
    return mode;
}

}  // namespace

template <typename Packet>
Packet CDisplayConfiguration::_info(DISPLAYCONFIG_DEVICE_INFO_TYPE type, const LUID& adapter, UINT32 uId) const {
    Packet packet{};
    packet.header.type = type;
    packet.header.size = sizeof(packet);
    packet.header.adapterId = adapter;
    packet.header.id = uId;
    m_pfInfo(&packet.header);
    return packet;
}

// Empty where the system cannot tell.
CDisplayConfiguration::Paths CDisplayConfiguration::_query(UINT32 uFlags) const {
    if (m_pfSizes == nullptr || m_pfQuery == nullptr || m_pfInfo == nullptr || m_pfSet == nullptr) {
        return {};
    }
    for (int i = 0; i < kQueryTries; ++i) {
        UINT32 uPaths = 0;
        UINT32 uModes = 0;
        if (m_pfSizes(uFlags, &uPaths, &uModes) != ERROR_SUCCESS || uPaths == 0 || uModes == 0) {
            return {};
        }
        Paths found{std::vector<DISPLAYCONFIG_PATH_INFO>(uPaths), std::vector<DISPLAYCONFIG_MODE_INFO>(uModes)};
        const LONG lError = m_pfQuery(uFlags, &uPaths, found.paths.data(), &uModes, found.modes.data(), nullptr);
        if (lError == ERROR_SUCCESS) {
            found.paths.resize(uPaths);
            found.modes.resize(uModes);
            return found;
        }
        if (lError != ERROR_INSUFFICIENT_BUFFER) {
            return {};
        }
    }
    return {};
}

std::wstring CDisplayConfiguration::_pathOf(const DISPLAYCONFIG_PATH_INFO& path) const {
    return _info<DISPLAYCONFIG_TARGET_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME, path.targetInfo.adapterId,
                                                   path.targetInfo.id)
        .monitorDevicePath;
}

Screen CDisplayConfiguration::_screenOf(const DISPLAYCONFIG_PATH_INFO& path, const Paths& all) const {
    const auto target = _info<DISPLAYCONFIG_TARGET_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME,
                                                                path.targetInfo.adapterId, path.targetInfo.id);
    Screen screen;
    screen.display.path = target.monitorDevicePath;
    screen.display.name = target.monitorFriendlyDeviceName;
    screen.bActive = isActive(path);
    if (screen.bActive) {
        screen.display.device = _info<DISPLAYCONFIG_SOURCE_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME,
                                                                        path.sourceInfo.adapterId, path.sourceInfo.id)
                                    .viewGdiDeviceName;
        screen.display.place = placeOf(path, all.modes);
    } else {
        const auto preferred = _info<DISPLAYCONFIG_TARGET_PREFERRED_MODE>(
            DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_PREFERRED_MODE, path.targetInfo.adapterId, path.targetInfo.id);
        screen.display.place = {0, 0, static_cast<LONG>(preferred.width), static_cast<LONG>(preferred.height)};
    }
    return screen;
}

bool CDisplayConfiguration::canChange() const {
    const Paths all = _query(QDC_ALL_PATHS);
    return std::any_of(all.paths.begin(), all.paths.end(),
                       [](const DISPLAYCONFIG_PATH_INFO& path) { return !isActive(path); });
}

DisplayState CDisplayConfiguration::read() const {
    Paths all = _query(QDC_ALL_PATHS);
    // Each target stands there once for each source that it could show: the active one of these tells most.
    std::stable_partition(all.paths.begin(), all.paths.end(), &isActive);
    std::vector<DISPLAYCONFIG_PATH_INFO> targets;
    for (const DISPLAYCONFIG_PATH_INFO& path : all.paths) {
        if (std::none_of(targets.begin(), targets.end(),
                         [&](const DISPLAYCONFIG_PATH_INFO& other) { return sameTarget(path, other); })) {
            targets.push_back(path);
        }
    }
    // The order must not depend on which of them are on: if none is built in, the first counts as
    // the notebook's own.
    std::stable_sort(targets.begin(), targets.end(),
                     [](const auto& one, const auto& other) { return orderOf(one) < orderOf(other); });
    DisplayState state;
    state.nConnectors = targets.size();
    std::vector<displays::Display> named;
    for (const DISPLAYCONFIG_PATH_INFO& path : targets) {
        if (path.targetInfo.targetAvailable == FALSE && !isActive(path)) {
            continue;
        }
        Screen screen = _screenOf(path, all);
        displays::nameConnector(
            named, screen.display,
            displays::connectionOf(static_cast<DWORD>(path.targetInfo.outputTechnology), named.empty()));
        named.push_back(screen.display);
        state.screens.push_back(std::move(screen));
    }
    return state;
}

bool CDisplayConfiguration::apply(Topology topology) const {
    const auto row = std::find_if(std::begin(kTopologies), std::end(kTopologies),
                                  [topology](const TopologyRow& other) { return other.topology == topology; });
    return m_pfSet != nullptr && row != std::end(kTopologies) &&
           m_pfSet(0, nullptr, 0, nullptr, kApplyTopology | row->uFlag) == ERROR_SUCCESS;
}

// A path to the screen at `index` of the layout: from the source of the screens with the same picture, or from one that
// nobody has taken. The one that is active now comes first, so that as little as possible changes.
const DISPLAYCONFIG_PATH_INFO* CDisplayConfiguration::_freePath(const Paths& all,
                                                                const std::vector<DISPLAYCONFIG_PATH_INFO>& taken,
                                                                const Layout& rLayout, std::size_t index) const {
    const auto fits = [&](const DISPLAYCONFIG_PATH_INFO& path) {
        for (std::size_t i = 0; i < taken.size(); ++i) {
            if (sameSource(taken[i], path) != sameCorner(rLayout[i], rLayout[index])) {
                return false;
            }
        }
        return _pathOf(path) == rLayout[index].path;
    };
    const auto found = std::find_if(all.paths.begin(), all.paths.end(), fits);
    return found == all.paths.end() ? nullptr : &*found;
}

bool CDisplayConfiguration::apply(const Layout& rLayout) const {
    Paths all = _query(QDC_ALL_PATHS);
    std::stable_partition(all.paths.begin(), all.paths.end(), &isActive);
    Paths wanted;
    for (std::size_t i = 0; i < rLayout.size(); ++i) {
        const DISPLAYCONFIG_PATH_INFO* const pPath = _freePath(all, wanted.paths, rLayout, i);
        if (pPath == nullptr) {
            return false;
        }
        DISPLAYCONFIG_PATH_INFO path = *pPath;
        path.flags = DISPLAYCONFIG_PATH_ACTIVE;
        path.targetInfo.modeInfoIdx = DISPLAYCONFIG_PATH_MODE_IDX_INVALID;
        path.sourceInfo.modeInfoIdx = DISPLAYCONFIG_PATH_MODE_IDX_INVALID;
        const auto shown = std::find_if(wanted.paths.begin(), wanted.paths.end(),
                                        [&](const DISPLAYCONFIG_PATH_INFO& other) { return sameSource(path, other); });
        if (shown != wanted.paths.end()) {
            path.sourceInfo.modeInfoIdx = shown->sourceInfo.modeInfoIdx;
        } else if (::IsRectEmpty(&rLayout[i].place) == FALSE) {
            path.sourceInfo.modeInfoIdx = static_cast<UINT32>(wanted.modes.size());
            wanted.modes.push_back(sourceMode(path, rLayout[i].place));
        }
        wanted.paths.push_back(path);
    }
    return !wanted.paths.empty() &&
           m_pfSet(static_cast<UINT32>(wanted.paths.size()), wanted.paths.data(),
                   static_cast<UINT32>(wanted.modes.size()), wanted.modes.empty() ? nullptr : wanted.modes.data(),
                   kApplyPaths) == ERROR_SUCCESS;
}

}  // namespace win
