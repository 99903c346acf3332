// The screens as the system tells them, and their brightness by the monitor configuration functions (DDC/CI).
#include <windows.h>

#include <physicalmonitorenumerationapi.h>

#include "Screens.h"
#include "common/Handle.h"
#include "common/SystemLibrary.h"

namespace machine {

namespace {

// A screen as one of those that show the same part of the desktop.
struct Place {
    ActiveScreen screen;
    HMONITOR monitor;
    std::size_t index;   // among the active screens of that part
    std::size_t active;  // how many there are
};

std::vector<DISPLAY_DEVICEW> activeDevices(const wchar_t* output) {
    std::vector<DISPLAY_DEVICEW> found;
    DISPLAY_DEVICEW device{};
    device.cb = sizeof device;
    for (DWORD i = 0; EnumDisplayDevicesW(output, i, &device, EDD_GET_DEVICE_INTERFACE_NAME) != FALSE; ++i) {
        if ((device.StateFlags & DISPLAY_DEVICE_ACTIVE) != 0) {
            found.push_back(device);
        }
    }
    return found;
}

BOOL CALLBACK addPlaces(HMONITOR monitor, HDC /*dc*/, RECT* /*place*/, LPARAM result) noexcept {
    try {
        MONITORINFOEXW info{};
        info.cbSize = sizeof info;
        if (GetMonitorInfoW(monitor, &info) == FALSE) {
            return TRUE;
        }
        const std::vector<DISPLAY_DEVICEW> devices = activeDevices(info.szDevice);
        for (std::size_t i = 0; i < devices.size(); ++i) {
            reinterpret_cast<std::vector<Place>*>(result)->push_back(
                {{devices[i].DeviceID, devices[i].DeviceString}, monitor, i, devices.size()});
        }
        return TRUE;
    } catch (...) {
        return FALSE;  // out of memory: those found so far
    }
}

std::vector<Place> places() {
    std::vector<Place> found;
    EnumDisplayMonitors(nullptr, nullptr, &addPlaces, reinterpret_cast<LPARAM>(&found));
    return found;
}

// Bound at run time: a system may lack the library, and only this process needs it.
class CMonitorFunctions {
 public:
    CMonitorFunctions() : m_library(loadSystemLibrary(L"dxva2.dll")) {
        _bind(count, "GetNumberOfPhysicalMonitorsFromHMONITOR");
        _bind(open, "GetPhysicalMonitorsFromHMONITOR");
        _bind(close, "DestroyPhysicalMonitors");
        _bind(get, "GetMonitorBrightness");
        _bind(set, "SetMonitorBrightness");
    }

    [[nodiscard]] bool complete() const {
        return count != nullptr && open != nullptr && close != nullptr && get != nullptr && set != nullptr;
    }

    BOOL(WINAPI* count)(HMONITOR, DWORD*) = nullptr;
    BOOL(WINAPI* open)(HMONITOR, DWORD, PHYSICAL_MONITOR*) = nullptr;
    BOOL(WINAPI* close)(DWORD, PHYSICAL_MONITOR*) = nullptr;
    BOOL(WINAPI* get)(HANDLE, DWORD* least, DWORD* now, DWORD* most) = nullptr;
    BOOL(WINAPI* set)(HANDLE, DWORD) = nullptr;

 private:
    template <typename Function>
    void _bind(Function& function, const char* name) {
        if (m_library) {
            function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_library.get(), name)));
        }
    }

    common::UniqueModule m_library;
};

// The handles of the screens that show one part of the desktop.
class CPhysicalMonitors {
 public:
    CPhysicalMonitors(const CMonitorFunctions& functions, HMONITOR monitor) : m_functions(functions) {
        DWORD count = 0;
        if (functions.count(monitor, &count) == FALSE || count == 0) {
            return;
        }
        std::vector<PHYSICAL_MONITOR> monitors(count);
        if (functions.open(monitor, count, monitors.data()) != FALSE) {
            m_monitors = std::move(monitors);
        }
    }
    ~CPhysicalMonitors() {
        if (!m_monitors.empty()) {
            m_functions.close(static_cast<DWORD>(m_monitors.size()), m_monitors.data());
        }
    }
    CPhysicalMonitors(const CPhysicalMonitors&) = delete;
    CPhysicalMonitors& operator=(const CPhysicalMonitors&) = delete;

    // The system lists both in the same order. Null if their numbers differ, because it is then
    // unknown which is which.
    [[nodiscard]] HANDLE of(const Place& place) const {
        return m_monitors.size() == place.active ? m_monitors[place.index].hPhysicalMonitor : nullptr;
    }

 private:
    const CMonitorFunctions& m_functions;
    std::vector<PHYSICAL_MONITOR> m_monitors;
};

class CScreenControl final : public IScreenControl {
 public:
    std::vector<ActiveScreen> screens() override {
        std::vector<ActiveScreen> result;
        for (Place& place : places()) {
            result.push_back(std::move(place.screen));
        }
        return result;
    }

    std::optional<BrightnessRange> brightness(const std::wstring& path) override {
        BrightnessRange range;
        return _with(path,
                     [&](HANDLE screen) {
                         return m_functions.get(screen, &range.least, &range.now, &range.most) != FALSE;
                     })
                   ? std::optional(range)
                   : std::nullopt;
    }

    bool setBrightness(const std::wstring& path, DWORD value) override {
        return _with(path, [&](HANDLE screen) { return m_functions.set(screen, value) != FALSE; });
    }

 private:
    template <typename Call>
    bool _with(const std::wstring& path, Call call) {
        if (!m_functions.complete()) {
            return false;
        }
        for (const Place& place : places()) {
            if (place.screen.path == path) {
                const CPhysicalMonitors monitors(m_functions, place.monitor);
                const HANDLE screen = monitors.of(place);
                return screen != nullptr && call(screen);
            }
        }
        return false;
    }

    const CMonitorFunctions m_functions;
};

}  // namespace

std::unique_ptr<IScreenControl> makeScreenControl() {
    return std::make_unique<CScreenControl>();
}

}  // namespace machine
