// The settings in "DbgLog.ini" in the executable's folder.
#pragma once

#include <windows.h>

#include <array>

namespace dbglog {

enum Destination : int {
    kNowhere = 0,
    kDebugger = 1,
    kFile = 2,         // truncated at the first line of the process, then kept open
    kFilePerLine = 3,  // opened, appended to and closed for every line
    kStandardError = 4,
};

enum TimeFormat : int { kNoTime = 0, kTime = 1, kDateAndTime = 2, kElapsed = 3 };

// In characters, terminator included: the longest path that the settings can name, before and after expansion.
inline constexpr DWORD kPathChars = 260;

using Path = std::array<wchar_t, kPathChars>;

struct Settings {
    int level = 0;  // highest level written
    int destination = kFile;
    int sourceFileFormat = 0;  // 0: only the file name; 1: the path as given by the build
    int timeDateFormat = kNoTime;
    int flush = 0;   // 1: flush the kept-open file after every line
    Path logFile{};  // environment variables not yet expanded
};

// Defaults replace a missing or unreadable file, an empty path and every value out of range.
[[nodiscard]] Settings readSettings(const wchar_t* iniPath) noexcept;

// The log file with its environment variables expanded; empty if it does not fit.
[[nodiscard]] Path expandedLogFile(const Settings& settings) noexcept;

// "DbgLog.ini" in the folder of that executable, or an empty text if it does not fit.
[[nodiscard]] Path settingsPathBeside(const wchar_t* executable) noexcept;

// The same for the running process; empty as well when its executable's path cannot be obtained.
[[nodiscard]] Path settingsPath() noexcept;

}  // namespace dbglog
