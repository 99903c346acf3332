// The core of the log: the filter and the assembly of a line. Independent of files and processes; DebugLog.cpp has the
// one logger of the process.
#pragma once

#include <windows.h>

#include <array>
#include <cstdarg>
#include <cstddef>
#include <mutex>

#include "common/DebugLog.h"
#include "common/LogSettings.h"

namespace dbglog {

// In characters: line feed and terminator included.
inline constexpr std::size_t kLineChars = 512;

using Line = std::array<wchar_t, kLineChars>;

// Takes finished lines, one call at a time.
class ILineSink {
 public:
    virtual ~ILineSink() = default;
    virtual void write(const Line& line) = 0;
    // The last line of the process. `bAlone`: no other thread is within the sink; otherwise one may have stopped there,
    // and only what needs nothing of the sink may be used.
    virtual void writeLast(const Line& line, bool /*bAlone*/) { write(line); }
    // After it, written lines are visible to others and nothing is kept open; more lines may follow.
    virtual void close() {}
};

// The source of the timestamps; tests supply their own functions.
struct Clock {
    decltype(&::GetTickCount) tickCount = &::GetTickCount;
    decltype(&::GetLocalTime) localTime = &::GetLocalTime;
};

// Any thread. Lines of different threads reach the sink one after the other.
class Logger {
 public:
    // The sink outlives the logger.
    Logger(const Settings& settings, ILineSink& sink, const Clock& clock = {});

    // That is written; -1: none.
    [[nodiscard]] int highestLevel() const noexcept {
        return m_settings.destination != kNowhere ? m_settings.level : -1;
    }
    [[nodiscard]] bool enabled(Level level) const noexcept { return static_cast<int>(level) <= highestLevel(); }

    // Returns the characters of the line, or 0 if it was filtered out.
    int write(const Record& record, const wchar_t* format, va_list args);
    // The same, for the last line; waits only a moment for other threads.
    int writeLast(const Record& record, const wchar_t* format, va_list args);
    void close();

 private:
    // Returns the characters of the line.
    [[nodiscard]] std::size_t _assemble(Line& line, const Record& record, const wchar_t* format, va_list args);
    [[nodiscard]] bool _lockSoon();
    [[nodiscard]] std::size_t _appendTimestamp(Line& line);
    [[nodiscard]] std::size_t _appendElapsed(Line& line);
    [[nodiscard]] std::size_t _appendPrefix(Line& line, std::size_t used, const Record& record) const;

    const Settings m_settings;
    const Clock m_clock;
    ILineSink& m_sink;
    std::mutex m_mutex;
    DWORD m_dwFirstTick = 0;
    bool m_bHasFirstTick = false;
};

}  // namespace dbglog
