#include "common/DebugLog.h"

#include <cstdarg>

#include "common/LogOutput.h"
#include "common/LogSettings.h"
#include "common/Logger.h"
#include "common/NeverDestroyed.h"

namespace dbglog {

namespace {

class ProcessLog {
 public:
    ProcessLog() : ProcessLog(readSettings(settingsPath().data())) {}

    Logger& logger() noexcept { return m_logger; }
    [[nodiscard]] const Path& file() const noexcept { return m_output.file(); }

 private:
    explicit ProcessLog(const Settings& settings) : m_output(settings), m_logger(settings, m_output) {}

    LogOutput m_output;
    Logger m_logger;
};

// Never destroyed: other threads and other objects' destructors may log until the very end of the process, where the
// runtime flushes and closes the open stream. Works without memory.
ProcessLog& processLog() noexcept {
    static common::NeverDestroyed<ProcessLog> log;
    return log.get();
}

Logger& processLogger() noexcept {
    return processLog().logger();
}

// Logging between a failed call and GetLastError must not change the result.
class KeepLastError {
 public:
    KeepLastError() noexcept : m_dwError(::GetLastError()) {}
    ~KeepLastError() { ::SetLastError(m_dwError); }
    KeepLastError(const KeepLastError&) = delete;
    KeepLastError& operator=(const KeepLastError&) = delete;

 private:
    DWORD m_dwError;
};

}  // namespace

int log(const Record& record, const wchar_t* format, ...) noexcept {
    const KeepLastError keep;
    va_list args = {};
    va_start(args, format);
    const int written = processLogger().write(record, format, args);
    va_end(args);
    return written;
}

int logLast(const Record& record, const wchar_t* format, ...) noexcept {
    const KeepLastError keep;
    va_list args = {};
    va_start(args, format);
    const int written = processLogger().writeLast(record, format, args);
    va_end(args);
    return written;
}

Path logFile() noexcept {
    return processLog().file();
}

void close() {
    const KeepLastError keep;
    processLogger().close();
}

constinit std::atomic<int> detail::s_highestLevel{detail::kUnread};

bool detail::readEnabled(Level level) noexcept {
    const KeepLastError keep;
    const int highest = processLogger().highestLevel();
    s_highestLevel.store(highest, std::memory_order_relaxed);
    return static_cast<int>(level) <= highest;
}

}  // namespace dbglog
