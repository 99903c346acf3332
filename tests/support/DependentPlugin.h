// A plug-in that needs another library, and that library's places. It stays in the folder of the tests, because not
// every system unmaps a library with missing dependencies before the process ends.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace support {

class DependentPlugin {
 public:
    // The possible places of the needed library.
    enum class Place { BesideThePlugin, InTheCurrentFolder, AlongPath };

    explicit DependentPlugin(Place place) : m_current(std::filesystem::current_path()) {
        wchar_t own[MAX_PATH] = {};
        ::GetModuleFileNameW(nullptr, own, MAX_PATH);
        const std::filesystem::path plugins = std::filesystem::path(own).parent_path() / L"plugins";
        m_path = plugins / (place == Place::BesideThePlugin ? L"complete" : L"dependent") / L"DependentPlugin.dll";
        ::GetEnvironmentVariableW(L"PATH", m_saved, kPathChars);
        if (place == Place::InTheCurrentFolder) {
            std::filesystem::current_path(plugins / L"needed");
        } else if (place == Place::AlongPath) {
            ::SetEnvironmentVariableW(L"PATH", ((plugins / L"needed").wstring() + L";" + m_saved).c_str());
        }
    }
    ~DependentPlugin() {
        std::filesystem::current_path(m_current);
        ::SetEnvironmentVariableW(L"PATH", m_saved);
    }
    DependentPlugin(const DependentPlugin&) = delete;
    DependentPlugin& operator=(const DependentPlugin&) = delete;

    [[nodiscard]] std::wstring path() const { return m_path.wstring(); }

 private:
    static constexpr DWORD kPathChars = 8192;

    std::filesystem::path m_path;
    std::filesystem::path m_current;
    wchar_t m_saved[kPathChars] = {};
};

}  // namespace support
