#include "Displays.h"

#include <algorithm>
#include <iterator>

namespace setup {
namespace {

// The system's configuration data of one display.
struct Target {
    std::wstring device;
    std::wstring name;
    DWORD technology;
    std::wstring path;
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
            static_cast<DWORD>(path.targetInfo.outputTechnology), target.monitorDevicePath};
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

// The adapters' outputs on the desktop, or the monitors of an output. The DeviceID of a monitor is its path.
std::vector<DISPLAY_DEVICEW> deviceList(const wchar_t* parent, DWORD wanted) {
    std::vector<DISPLAY_DEVICEW> devices;
    DISPLAY_DEVICEW device{};
    device.cb = sizeof(device);
    for (DWORD i = 0; ::EnumDisplayDevicesW(parent, i, &device, EDD_GET_DEVICE_INTERFACE_NAME) != FALSE; ++i) {
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
void addDisplay(std::vector<Display>& displays, const std::wstring& device, const DISPLAY_DEVICEW& monitor,
                const Target* target) {
    Display display;
    display.device = device;
    display.name = target != nullptr && !target->name.empty() ? target->name : monitor.DeviceString;
    // Only a monitor has a path; an output may stand here for one that the system does not name.
    display.path = target != nullptr ? target->path : device == monitor.DeviceName ? L"" : monitor.DeviceID;
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
        addDisplay(displays, output.DeviceName, i < monitors.size() ? monitors[i] : output,
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

std::wstring resolutionText(LONG width, LONG height) {
    return std::to_wstring(width) + L" x " + std::to_wstring(height);
}

}  // namespace setup
