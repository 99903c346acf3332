#include "support/LogCapture.h"

#include <algorithm>
#include <cstdarg>
#include <iterator>
#include <mutex>

#include "common/DebugLog.h"
#include "common/Logger.h"
#include "support/FailingAllocation.h"

namespace support {

namespace {

std::mutex g_mutex;
dbglog::Logger* g_pLogger = nullptr;
std::vector<std::wstring>* g_pSources = nullptr;

dbglog::Settings settingsFor(int level) {
    dbglog::Settings settings;
    settings.level = level;
    return settings;
}

int write(const dbglog::Record& record, const wchar_t* format, va_list args) {
    const AllocationsSucceed mine;
    const std::lock_guard lock(g_mutex);
    if (g_pLogger == nullptr) {
        return 0;
    }
    const int written = g_pLogger->write(record, format, args);
    if (written > 0) {
        g_pSources->emplace_back(record.sourceFile);
    }
    return written;
}

}  // namespace

class LogCapture::Sink : public dbglog::ILineSink {
 public:
    explicit Sink(int level) : m_logger(settingsFor(level), *this) {}

    void write(const dbglog::Line& line) override {
        const std::wstring text(line.data());
        const std::size_t start = text.find(L"  [");
        lines.push_back(text.substr(start + 2, text.size() - start - 3));
    }
    void close() override { lines.emplace_back(L"(closed)"); }
    dbglog::Logger& logger() { return m_logger; }

    std::vector<std::wstring> lines;
    std::vector<std::wstring> sources;

 private:
    dbglog::Logger m_logger;
};

LogCapture::LogCapture(int level) : m_pSink(std::make_unique<Sink>(level)) {
    const std::lock_guard lock(g_mutex);
    g_pLogger = &m_pSink->logger();
    g_pSources = &m_pSink->sources;
}

LogCapture::~LogCapture() {
    const std::lock_guard lock(g_mutex);
    g_pLogger = nullptr;
    g_pSources = nullptr;
}

std::vector<std::wstring> LogCapture::lines() const {
    const std::lock_guard lock(g_mutex);
    return m_pSink->lines;
}

std::vector<std::wstring> LogCapture::errors() const {
    const std::vector<std::wstring> all = lines();
    std::vector<std::wstring> found;
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [](const std::wstring& line) { return line.starts_with(L"[ERR]"); });
    return found;
}

std::size_t LogCapture::count(const std::wstring& line) const {
    const std::vector<std::wstring> all = lines();
    return static_cast<std::size_t>(std::count(all.begin(), all.end(), line));
}

std::vector<std::wstring> LogCapture::sources() const {
    const std::lock_guard lock(g_mutex);
    return m_pSink->sources;
}

void LogCapture::clear() {
    const std::lock_guard lock(g_mutex);
    m_pSink->lines.clear();
    m_pSink->sources.clear();
}

}  // namespace support

namespace dbglog {

int log(const Record& record, const wchar_t* format, ...) noexcept {
    va_list args;
    va_start(args, format);
    const int written = support::write(record, format, args);
    va_end(args);
    return written;
}

// Like every other line: a test has no last one.
int logLast(const Record& record, const wchar_t* format, ...) noexcept {
    va_list args;
    va_start(args, format);
    const int written = support::write(record, format, args);
    va_end(args);
    return written;
}

Path logFile() noexcept {
    return {};
}

void close() {
    const support::AllocationsSucceed mine;
    const std::lock_guard lock(support::g_mutex);
    if (support::g_pLogger != nullptr) {
        support::g_pLogger->close();
    }
}

// Never read once and for all: each object of the class has its own level.
constinit std::atomic<int> detail::s_highestLevel{detail::kUnread};

bool detail::readEnabled(Level level) noexcept {
    const std::lock_guard lock(support::g_mutex);
    return support::g_pLogger != nullptr && support::g_pLogger->enabled(level);
}

}  // namespace dbglog
