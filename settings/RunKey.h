// What Windows starts when somebody signs in. The installer writes these values, and its uninstaller removes them.
#pragma once

#include <windows.h>

#include <string>

namespace settings {

struct StartedProgram {
    const wchar_t* value;
    const wchar_t* file;  // in the folder of this program
    const wchar_t* arguments;
};
inline constexpr StartedProgram kStartedFenwyn{L"Fenwyn", L"Fenwyn.exe", L""};
inline constexpr StartedProgram kStartedIcon{L"FenwynTray", L"FenwynSettings.exe", L" /tray"};

[[nodiscard]] std::wstring commandOf(const StartedProgram& program);

// `root`: HKEY_CURRENT_USER for the user, HKEY_LOCAL_MACHINE for everybody. Whatever the command line is, a value counts.
[[nodiscard]] bool startsWithWindows(HKEY root, const StartedProgram& program);

// Writes or removes the value. A system error code.
[[nodiscard]] LSTATUS setStartWithWindows(HKEY root, const StartedProgram& program, bool starts);

}  // namespace settings
