#include <algorithm>

#include "system/WindowsDisplays.h"

namespace win {

namespace {

constexpr DWORD kStore = CDS_UPDATEREGISTRY | CDS_NORESET;  // taken down; put into force for all of them together

std::vector<DISPLAY_DEVICEW> devices(const wchar_t* pszParent) {
    std::vector<DISPLAY_DEVICEW> found;
    DISPLAY_DEVICEW device{};
    device.cb = sizeof(device);
    for (DWORD i = 0; ::EnumDisplayDevicesW(pszParent, i, &device, EDD_GET_DEVICE_INTERFACE_NAME) != FALSE; ++i) {
        if ((device.StateFlags & DISPLAY_DEVICE_MIRRORING_DRIVER) == 0) {
            found.push_back(device);
        }
    }
    return found;
}

DEVMODEW emptyMode() {
    DEVMODEW mode{};
    mode.dmSize = sizeof(mode);
    return mode;
}

RECT placeOf(const DEVMODEW& mode) {
    return {mode.dmPosition.x, mode.dmPosition.y, mode.dmPosition.x + static_cast<LONG>(mode.dmPelsWidth),
            mode.dmPosition.y + static_cast<LONG>(mode.dmPelsHeight)};
}

RECT placeOfActive(const std::wstring& device) {
    DEVMODEW mode = emptyMode();
    return ::EnumDisplaySettingsExW(device.c_str(), ENUM_CURRENT_SETTINGS, &mode, 0) != FALSE ? placeOf(mode) : RECT{};
}

// A mode without a size switches the output off.
bool store(const std::wstring& device, const RECT& rPlace) {
    DEVMODEW mode = emptyMode();
    mode.dmFields = DM_POSITION | DM_PELSWIDTH | DM_PELSHEIGHT;
    mode.dmPosition = {rPlace.left, rPlace.top};
    mode.dmPelsWidth = static_cast<DWORD>(rPlace.right - rPlace.left);
    mode.dmPelsHeight = static_cast<DWORD>(rPlace.bottom - rPlace.top);
    const bool bPrimary = rPlace.left == 0 && rPlace.top == 0 && mode.dmPelsWidth != 0;
    return ::ChangeDisplaySettingsExW(device.c_str(), &mode, nullptr, kStore | (bPrimary ? CDS_SET_PRIMARY : 0U),
                                      nullptr) == DISP_CHANGE_SUCCESSFUL;
}

}  // namespace

// As it was when it was on the last time; else the size kept for it, else the largest one that it has.
SIZE CDisplaySettings::_sizeWhileOff(const std::wstring& device, const std::wstring& path) const {
    if (const auto last = m_lastSizes.find(path); last != m_lastSizes.end()) {
        return last->second;
    }
    DEVMODEW mode = emptyMode();
    if (::EnumDisplaySettingsExW(device.c_str(), ENUM_REGISTRY_SETTINGS, &mode, 0) != FALSE && mode.dmPelsWidth != 0) {
        return {static_cast<LONG>(mode.dmPelsWidth), static_cast<LONG>(mode.dmPelsHeight)};
    }
    SIZE largest{};
    for (DWORD i = 0; ::EnumDisplaySettingsExW(device.c_str(), i, &mode, 0) != FALSE; ++i) {
        const SIZE size{static_cast<LONG>(mode.dmPelsWidth), static_cast<LONG>(mode.dmPelsHeight)};
        if (size.cx * size.cy > largest.cx * largest.cy) {
            largest = size;
        }
    }
    return largest;
}

DisplayState CDisplaySettings::read() {
    DisplayState state;
    state.bEveryArrangement = false;
    std::vector<displays::Display> named;
    for (const DISPLAY_DEVICEW& output : devices(nullptr)) {
        const std::vector<DISPLAY_DEVICEW> monitors = devices(output.DeviceName);
        if (monitors.empty()) {
            continue;
        }
        Screen screen;
        screen.display.device = output.DeviceName;
        screen.display.name = monitors.front().DeviceString;
        screen.display.path = monitors.front().DeviceID;
        screen.bActive = (output.StateFlags & DISPLAY_DEVICE_ATTACHED_TO_DESKTOP) != 0;
        if (screen.bActive) {
            const RECT& rPlace = screen.display.place = placeOfActive(screen.display.device);
            m_lastSizes[screen.display.path] = {rPlace.right - rPlace.left, rPlace.bottom - rPlace.top};
        } else {
            const SIZE size = _sizeWhileOff(screen.display.device, screen.display.path);
            screen.display.place = {0, 0, size.cx, size.cy};
        }
        displays::nameConnector(named, screen.display,
                                displays::connectionOf(displays::kUnknownTechnology, named.empty()));
        named.push_back(screen.display);
        state.screens.push_back(std::move(screen));
    }
    state.nConnectors = state.screens.size();
    return state;
}

bool CDisplaySettings::apply(const Layout& rLayout) {
    const std::vector<Screen> screens = read().screens;
    std::size_t nPlaced = 0;
    for (const Screen& screen : screens) {
        const auto placed = std::find_if(rLayout.begin(), rLayout.end(), [&screen](const PlacedScreen& other) {
            return other.path == screen.display.path;
        });
        RECT place{};
        if (placed != rLayout.end()) {
            const bool bSized = ::IsRectEmpty(&placed->place) == FALSE;
            place = bSized ? placed->place : screen.display.place;
            ++nPlaced;
        }
        if ((placed != rLayout.end() || screen.bActive) && !store(screen.display.device, place)) {
            return false;
        }
    }
    return nPlaced == rLayout.size() &&
           ::ChangeDisplaySettingsExW(nullptr, nullptr, nullptr, 0, nullptr) == DISP_CHANGE_SUCCESSFUL;
}

}  // namespace win
