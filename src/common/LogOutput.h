// Writes finished lines to the destination in the settings.
#pragma once

#include <cstdio>
#include <memory>

#include "common/DirectFile.h"
#include "common/Logger.h"

namespace dbglog {

// Lines that cannot be written are dropped silently. Not thread-safe: the logger calls it one line at a time.
class LogOutput final : public ILineSink {
 public:
    explicit LogOutput(const Settings& settings)
        : m_settings(settings), m_path(expandedLogFile(settings)), m_lastFile(m_path.data()) {}

    void write(const Line& line) override;
    void writeLast(const Line& line, bool bAlone) override;
    void close() override;
    // With its environment variables expanded; empty if it does not fit.
    [[nodiscard]] const Path& file() const noexcept { return m_path; }

 private:
    struct CloseStream {
        void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
    };
    using Stream = std::unique_ptr<std::FILE, CloseStream>;

    enum class FileMode { Truncate, Keep };

    [[nodiscard]] Stream _openLogFile(FileMode mode) const;
    void _writeToKeptFile(const Line& line);

    void _appendDirectly(const Line& line);

    const Settings m_settings;
    const Path m_path;
    const common::DirectFile m_lastFile;  // the same file
    Stream m_pStream;                     // of the kept-open file
    bool m_bOpenTried = false;
    bool m_bClosed = false;  // later lines are appended
};

}  // namespace dbglog
