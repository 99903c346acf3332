// A log that keeps its lines in memory instead of writing them. A test program that lists LogRecorder.cpp among its
// sources has it in the place of the real one: nothing reads DbgLog.ini then and nothing writes a log file.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/DebugLog.h"

namespace testsupport {

struct LogEntry {
    dbglog::Level level;
    std::wstring functionTag;  // " (CSomething::method)"
    std::wstring text;         // as the caller's format made it
    std::wstring sourceFile;

    bool operator==(const LogEntry&) const = default;
};

// Lines of all threads since the last clearLog(), in order. Thread-safe.
[[nodiscard]] std::vector<LogEntry> logEntries();
void clearLog();

// "TAG text" of the lines up to the level, one per line: "ERR (CLayeredWnd::paint): Error Code: 0x80004005". The tags
// are ERR, WRN, INF and TRC.
[[nodiscard]] std::vector<std::wstring> logLines(dbglog::Level upTo = dbglog::Level::Error);

// How often the text (whole, not a part) was logged, at whatever level and from whatever function.
[[nodiscard]] std::size_t countLogged(const std::wstring& text);

}  // namespace testsupport
