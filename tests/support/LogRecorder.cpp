#include "support/LogRecorder.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cwchar>
#include <mutex>

namespace {

struct Store {
    std::mutex mutex;
    std::vector<testsupport::LogEntry> entries;
};

// Never destroyed: objects with static lifetime log from their destructors.
Store& store() {
    static Store& only = *new Store;
    return only;
}

void keep(const dbglog::Record& record, std::wstring text) {
    const std::lock_guard lock(store().mutex);
    store().entries.push_back({record.level, record.functionTag, std::move(text), record.sourceFile});
}

}  // namespace

namespace dbglog {

void close() {}

bool enabled(Level) {
    return true;
}

int log(const Record& record, const wchar_t* format, ...) {
    const DWORD lastError = ::GetLastError();
    std::array<wchar_t, 2048> text{};
    va_list arguments;
    va_start(arguments, format);
    ::_vsnwprintf(text.data(), text.size() - 1, format, arguments);
    va_end(arguments);
    keep(record, text.data());
    ::SetLastError(lastError);
    return static_cast<int>(std::wcslen(text.data()));
}

}  // namespace dbglog

namespace testsupport {

std::vector<LogEntry> logEntries() {
    const std::lock_guard lock(store().mutex);
    return store().entries;
}

void clearLog() {
    const std::lock_guard lock(store().mutex);
    store().entries.clear();
}

std::vector<std::wstring> logLines(dbglog::Level upTo) {
    static constexpr std::array kTags{L"ERR", L"WRN", L"INF", L"TRC"};
    std::vector<std::wstring> lines;
    for (const LogEntry& entry : logEntries()) {
        if (entry.level <= upTo) {
            lines.push_back(kTags[static_cast<std::size_t>(entry.level)] + entry.functionTag + L": " + entry.text);
        }
    }
    return lines;
}

std::size_t countLogged(const std::wstring& text) {
    const std::vector<LogEntry> entries = logEntries();
    return static_cast<std::size_t>(
        std::count_if(entries.begin(), entries.end(), [&](const LogEntry& entry) { return entry.text == text; }));
}

}  // namespace testsupport
