#include "common/LogSettings.h"

#include <algorithm>
#include <string_view>

namespace dbglog {

namespace {

constexpr wchar_t kSection[] = L"LOG";
constexpr wchar_t kFileName[] = L"DbgLog.ini";
constexpr wchar_t kDefaultLogFile[] = L"%LocalAppData%\\KESTOVA\\Fenwyn\\log.txt";

// A number above `highest` counts as the default.
struct NumberSetting {
    const wchar_t* key;
    int Settings::*member;
    UINT highest;
};

constexpr NumberSetting kNumbers[] = {
    {L"Level", &Settings::level, 3},
    {L"Destination", &Settings::destination, 4},
    {L"SourceFileFormat", &Settings::sourceFileFormat, 1},
    {L"TimeDateFormat", &Settings::timeDateFormat, 3},
    {L"Flush", &Settings::flush, 1},
};

}  // namespace

Settings readSettings(const wchar_t* iniPath) noexcept {
    Settings settings;
    std::ranges::copy(kDefaultLogFile, settings.logFile.begin());
    // Without a path the system would use a settings file of its own.
    if (iniPath == nullptr || *iniPath == L'\0') {
        return settings;
    }
    for (const NumberSetting& row : kNumbers) {
        const UINT value = ::GetPrivateProfileIntW(kSection, row.key, settings.*row.member, iniPath);
        if (value <= row.highest) {
            settings.*row.member = static_cast<int>(value);
        }
    }
    ::GetPrivateProfileStringW(kSection, L"LogFile", kDefaultLogFile, settings.logFile.data(), kPathChars, iniPath);
    return settings;
}

Path expandedLogFile(const Settings& settings) noexcept {
    Path path{};
    const DWORD length = ::ExpandEnvironmentStringsW(settings.logFile.data(), path.data(), kPathChars);
    return length == 0 || length > kPathChars ? Path{} : path;
}

Path settingsPathBeside(const wchar_t* executable) noexcept {
    Path path{};
    const std::wstring_view whole(executable);
    const std::wstring_view folder = whole.substr(0, whole.find_last_of(L"\\/:") + 1);
    if (folder.size() + std::size(kFileName) > path.size()) {
        return path;
    }
    const auto end = std::ranges::copy(folder, path.begin()).out;
    std::ranges::copy(kFileName, end);
    return path;
}

Path settingsPath() noexcept {
    Path executable{};
    const DWORD length = ::GetModuleFileNameW(nullptr, executable.data(), kPathChars);
    return length == 0 || length >= kPathChars ? Path{} : settingsPathBeside(executable.data());
}

}  // namespace dbglog
