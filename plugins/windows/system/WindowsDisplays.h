// The two interfaces that the system has for its screens.
#pragma once

#include "system/Displays.h"
#include "system/RuntimeLibrary.h"

#include <map>

namespace win {

// QueryDisplayConfig and SetDisplayConfig, since Windows 7.
class CDisplayConfiguration {
 public:
    // What the system knows. With a system that knows of no arrangement but the present one, nothing can be set up
    // here.
    [[nodiscard]] DisplayState read() const;
    [[nodiscard]] bool canChange() const;
    [[nodiscard]] bool apply(Topology topology) const;
    [[nodiscard]] bool apply(const Layout& rLayout) const;

 private:
    struct Paths {
        std::vector<DISPLAYCONFIG_PATH_INFO> paths;
        std::vector<DISPLAYCONFIG_MODE_INFO> modes;
    };

    [[nodiscard]] Paths _query(UINT32 uFlags) const;
    [[nodiscard]] Screen _screenOf(const DISPLAYCONFIG_PATH_INFO& path, const Paths& all) const;
    [[nodiscard]] std::wstring _pathOf(const DISPLAYCONFIG_PATH_INFO& path) const;
    [[nodiscard]] const DISPLAYCONFIG_PATH_INFO* _freePath(const Paths& all,
                                                           const std::vector<DISPLAYCONFIG_PATH_INFO>& taken,
                                                           const Layout& rLayout, std::size_t index) const;
    template <typename Packet>
    [[nodiscard]] Packet _info(DISPLAYCONFIG_DEVICE_INFO_TYPE type, const LUID& adapter, UINT32 uId) const;

    CRuntimeLibrary m_library{L"user32.dll"};
    decltype(&::GetDisplayConfigBufferSizes) m_pfSizes =
        m_library.find<decltype(&::GetDisplayConfigBufferSizes)>("GetDisplayConfigBufferSizes");
    decltype(&::QueryDisplayConfig) m_pfQuery = m_library.find<decltype(&::QueryDisplayConfig)>("QueryDisplayConfig");
    decltype(&::DisplayConfigGetDeviceInfo) m_pfInfo =
        m_library.find<decltype(&::DisplayConfigGetDeviceInfo)>("DisplayConfigGetDeviceInfo");
    decltype(&::SetDisplayConfig) m_pfSet = m_library.find<decltype(&::SetDisplayConfig)>("SetDisplayConfig");
};

// EnumDisplayDevices and ChangeDisplaySettingsEx: each output on its own, and no picture on two of them.
class CDisplaySettings {
 public:
    [[nodiscard]] DisplayState read();
    [[nodiscard]] bool apply(const Layout& rLayout);

 private:
    [[nodiscard]] SIZE _sizeWhileOff(const std::wstring& device, const std::wstring& path) const;

    std::map<std::wstring, SIZE> m_lastSizes;  // of each path, while it was on
};

}  // namespace win
