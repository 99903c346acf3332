// Keeps the program's log lines instead of writing them. A test program that lists LogCapture.cpp among its sources
// gets this log instead of the program's own.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace support {

// One at a time; it receives the lines of all threads during its lifetime. Without one, nothing is logged.
class LogCapture {
 public:
    // Keeps lines up to that level: 0 errors, 1 warnings, 2 information, 3 traces.
    explicit LogCapture(int level = 3);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // "[ERR] (CClass::method): text", one per line, in order; "(closed)" where the log was closed.
    [[nodiscard]] std::vector<std::wstring> lines() const;
    // Those of level error.
    [[nodiscard]] std::vector<std::wstring> errors() const;
    // How often exactly that line was logged.
    [[nodiscard]] std::size_t count(const std::wstring& line) const;
    // The source files that the lines name, in the same order.
    [[nodiscard]] std::vector<std::wstring> sources() const;
    void clear();

 private:
    class Sink;
    std::unique_ptr<Sink> m_pSink;
};

}  // namespace support
