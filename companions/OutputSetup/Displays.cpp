#include "Displays.h"

#include <algorithm>
#include <iterator>

namespace setup {
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

// The system's configuration data of one display.
struct Target {
    std::wstring device;
    std::wstring name;
    DWORD technology;
};

template <typename Name>
Name deviceInfo(DISPLAYCONFIG_DEVICE_INFO_TYPE type, const LUID& adapter, UINT32 id) {
    Name name{};
    name.header.type = type;
    name.header.size = sizeof(name);
    name.header.adapterId = adapter;
    name.header.id = id;
    ::DisplayConfigGetDeviceInfo(&name.header);
    return name;
}

Target targetOf(const DISPLAYCONFIG_PATH_INFO& path) {
    const auto source = deviceInfo<DISPLAYCONFIG_SOURCE_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME,
                                                                     path.sourceInfo.adapterId, path.sourceInfo.id);
    const auto target = deviceInfo<DISPLAYCONFIG_TARGET_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME,
                                                                     path.targetInfo.adapterId, path.targetInfo.id);
    return {source.viewGdiDeviceName, target.monitorFriendlyDeviceName,
            static_cast<DWORD>(path.targetInfo.outputTechnology)};
}

// Empty if the system cannot tell, for instance because a display was added or removed meanwhile.
std::vector<Target> activeTargets() {
    UINT32 pathCount = 0;
    UINT32 modeCount = 0;
    if (::GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<DISPLAYCONFIG_PATH_INFO> paths(pathCount);
    std::vector<DISPLAYCONFIG_MODE_INFO> modes(modeCount);
    if (pathCount == 0 || modeCount == 0 ||
        ::QueryDisplayConfig(QDC_ONLY_ACTIVE_PATHS, &pathCount, paths.data(), &modeCount, modes.data(), nullptr) !=
            ERROR_SUCCESS) {
        return {};
    }
    paths.resize(std::min<std::size_t>(pathCount, paths.size()));
    std::vector<Target> targets;
    std::transform(paths.begin(), paths.end(), std::back_inserter(targets), &targetOf);
    return targets;
}

// The adapters' outputs on the desktop, each with its monitors.
std::vector<DISPLAY_DEVICEW> deviceList(const wchar_t* parent, DWORD wanted) {
    std::vector<DISPLAY_DEVICEW> devices;
    DISPLAY_DEVICEW device{};
    device.cb = sizeof(device);
    for (DWORD i = 0; ::EnumDisplayDevicesW(parent, i, &device, 0) != FALSE; ++i) {
        if ((device.StateFlags & wanted) != 0 && (device.StateFlags & DISPLAY_DEVICE_MIRRORING_DRIVER) == 0) {
            devices.push_back(device);
        }
    }
    return devices;
}

RECT placeOf(const wchar_t* device) {
    DEVMODEW mode{};
    mode.dmSize = sizeof(mode);
    if (::EnumDisplaySettingsExW(device, ENUM_CURRENT_SETTINGS, &mode, 0) == FALSE) {
        return {};
    }
    const LONG left = mode.dmPosition.x;
    const LONG top = mode.dmPosition.y;
    return {left, top, left + static_cast<LONG>(mode.dmPelsWidth), top + static_cast<LONG>(mode.dmPelsHeight)};
}

// The n-th display of an output, combined from the two sources.
void addDisplay(std::vector<Display>& displays, const std::wstring& device, const std::wstring& monitor,
                const Target* target) {
    Display display;
    display.device = device;
    display.name = target != nullptr && !target->name.empty() ? target->name : monitor;
    display.place = placeOf(device.c_str());
    const DWORD technology = target == nullptr ? kUnknownTechnology : target->technology;
    nameConnector(displays, display, connectionOf(technology, displays.empty()));
    displays.push_back(std::move(display));
}

void addDisplays(std::vector<Display>& displays, const DISPLAY_DEVICEW& output, const std::vector<Target>& targets) {
    const std::vector<DISPLAY_DEVICEW> monitors = deviceList(output.DeviceName, DISPLAY_DEVICE_ACTIVE);
    std::vector<const Target*> own;
    for (const Target& target : targets) {
        if (target.device == output.DeviceName) {
            own.push_back(&target);
        }
    }
    const std::size_t count = std::max<std::size_t>({monitors.size(), own.size(), 1});
    for (std::size_t i = 0; i < count; ++i) {
        addDisplay(displays, output.DeviceName, i < monitors.size() ? monitors[i].DeviceString : output.DeviceString,
                   i < own.size() ? own[i] : nullptr);
    }
}

}  // namespace

std::vector<Display> attachedDisplays() {
    const std::vector<Target> targets = activeTargets();
    std::vector<Display> displays;
    for (const DISPLAY_DEVICEW& output : deviceList(nullptr, DISPLAY_DEVICE_ATTACHED_TO_DESKTOP)) {
        addDisplays(displays, output, targets);
    }
    return displays;
}

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

favourites::Favourite favouriteOf(std::wstring text, std::span<const Display> displays) {
    favourites::Favourite favourite{std::move(text), arrangementOf(displays), {}};
    ULONG index = 0;
    for (const Display& display : displays) {
        favourite.displays.push_back(favourites::displayRecord(
            display.connector, index++, static_cast<ULONG>(display.place.right - display.place.left),
            static_cast<ULONG>(display.place.bottom - display.place.top)));
    }
    return favourite;
}

std::wstring resolutionText(LONG width, LONG height) {
    return std::to_wstring(width) + L" x " + std::to_wstring(height);
}

}  // namespace setup
