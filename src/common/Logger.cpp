#include "common/Logger.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cwchar>

namespace dbglog {

namespace {

constexpr const wchar_t* kLevelNames[] = {L"ERR", L"WRN", L"INF", L"TRC"};
constexpr std::size_t kLastChar = kLineChars - 2;    // the line feed of a full line
constexpr std::size_t kTerminator = kLineChars - 1;  // its terminator

// Appends what fits. False if the text was cut.
bool append(Line& line, std::size_t& used, const wchar_t* text) {
    const wchar_t* source = text != nullptr ? text : L"(null)";
    std::size_t end = used;
    while (end < kTerminator && *source != L'\0') {
        line[end++] = *source++;
    }
    used = end;
    return *source == L'\0';
}

template <typename Number>
bool append(Line& line, std::size_t& used, Number number, int base) {
    std::array<char, 16> digits{};  // more than 32 bits have
    const auto made = std::to_chars(digits.data(), digits.data() + digits.size() - 1, number, base);
    std::array<wchar_t, digits.size()> wide{};
    std::copy(digits.data(), made.ptr, wide.begin());
    return append(line, used, wide.data());
}

enum class Formatted { Whole, Cut, NotHere };

Formatted outcome(bool bWhole) {
    return bWhole ? Formatted::Whole : Formatted::Cut;
}

// One conversion of those that nearly all lines are made of.
Formatted appendConversion(Line& line, std::size_t& used, wchar_t conversion, va_list& args) {
    switch (conversion) {
        case L's':
            return outcome(append(line, used, va_arg(args, const wchar_t*)));
        case L'd':
            return outcome(append(line, used, va_arg(args, int), 10));
        case L'u':
            return outcome(append(line, used, va_arg(args, unsigned), 10));
        case L'x':
            return outcome(append(line, used, va_arg(args, unsigned), 16));
        default:
            return Formatted::NotHere;
    }
}

// Without the runtime's formatting, which takes several times as long. "NotHere": with a conversion that only the
// runtime knows.
Formatted appendSimple(Line& line, std::size_t& used, const wchar_t* format, va_list& args) {
    for (; *format != L'\0'; ++format) {
        if (*format != L'%') {
            if (used == kTerminator) {
                return Formatted::Cut;
            }
            line[used++] = *format;
            continue;
        }
        const Formatted status = appendConversion(line, used, *++format, args);
        if (status != Formatted::Whole) {
            return status;
        }
    }
    return Formatted::Whole;
}

// Appends the formatted text to the line. False if the text was cut, or could not be formatted.
bool appendFormatted(Line& line, std::size_t& used, const wchar_t* format, va_list args) {
    if (format == nullptr) {
        return false;
    }
    va_list simple = {};
    va_copy(simple, args);
    std::size_t end = used;
    const Formatted status = appendSimple(line, end, format, simple);
    va_end(simple);
    if (status != Formatted::NotHere) {
        used = status == Formatted::Whole ? end : used;
        return status == Formatted::Whole;
    }
    const int length = ::_vsnwprintf(&line[used], line.size() - used, format, args);
    if (length < 0 || used + static_cast<std::size_t>(length) > kTerminator) {
        return false;
    }
    used += static_cast<std::size_t>(length);
    return true;
}

bool appendFormatted(Line& line, std::size_t& used, const wchar_t* format, ...) {
    va_list args = {};
    va_start(args, format);
    const bool whole = appendFormatted(line, used, format, args);
    va_end(args);
    return whole;
}

const wchar_t* fileNameOf(const wchar_t* path) {
    const wchar_t* backslash = std::wcsrchr(path, L'\\');
    return backslash == nullptr ? path : backslash + 1;
}

const wchar_t* levelName(Level level) {
    return kLevelNames[std::clamp(static_cast<int>(level), 0, static_cast<int>(std::size(kLevelNames)) - 1)];
}

// A text that could not be formatted leaves a gap: the line stays one text of full length.
std::size_t closeFullLine(Line& line, std::size_t used) {
    std::replace(line.begin() + static_cast<std::ptrdiff_t>(std::min(used, kLastChar)), line.begin() + kLastChar, L'\0',
                 L' ');
    line[kLastChar] = L'\n';
    line[kTerminator] = L'\0';
    return kTerminator;
}

}  // namespace

Logger::Logger(const Settings& settings, ILineSink& sink, const Clock& clock)
    : m_settings(settings), m_clock(clock), m_sink(sink) {}

void Logger::close() {
    const std::lock_guard lock(m_mutex);
    m_sink.close();
}

int Logger::write(const Record& record, const wchar_t* format, va_list args) {
    if (!enabled(record.level)) {
        return 0;
    }
    // Timestamps are taken under the lock, so that they increase from line to line.
    const std::lock_guard lock(m_mutex);
    Line line{};
    const std::size_t used = _assemble(line, record, format, args);
    m_sink.write(line);
    return static_cast<int>(used);
}

int Logger::writeLast(const Record& record, const wchar_t* format, va_list args) {
    if (!enabled(record.level)) {
        return 0;
    }
    const bool alone = _lockSoon();
    Line line{};
    const std::size_t used = _assemble(line, record, format, args);
    m_sink.writeLast(line, alone);
    if (alone) {
        m_mutex.unlock();
    }
    return static_cast<int>(used);
}

// The thread that holds the lock may have stopped for good.
bool Logger::_lockSoon() {
    constexpr int kTries = 10;
    constexpr DWORD kPauseMs = 10;
    for (int i = 0; i < kTries; ++i) {
        if (m_mutex.try_lock()) {
            return true;
        }
        ::Sleep(kPauseMs);
    }
    return false;
}

std::size_t Logger::_assemble(Line& line, const Record& record, const wchar_t* format, va_list args) {
    std::size_t used = _appendPrefix(line, _appendTimestamp(line), record);
    if (!appendFormatted(line, used, format, args) || used >= kTerminator) {
        return closeFullLine(line, used);
    }
    line[used] = L'\n';
    line[++used] = L'\0';
    return used;
}

std::size_t Logger::_appendTimestamp(Line& line) {
    if (m_settings.timeDateFormat == kNoTime) {
        return 0;
    }
    if (m_settings.timeDateFormat == kElapsed) {
        return _appendElapsed(line);
    }
    SYSTEMTIME now{};
    m_clock.localTime(&now);
    wchar_t date[32] = L"";
    wchar_t time[32] = L"";
    if (m_settings.timeDateFormat == kDateAndTime) {
        ::GetDateFormatW(LOCALE_USER_DEFAULT, 0, &now, L"yyyy-MM-dd ", date, static_cast<int>(std::size(date)));
    }
    ::GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &now, L"HH:mm:ss", time, static_cast<int>(std::size(time)));
    std::size_t used = 0;
    appendFormatted(line, used, L"%s%s.%03d: ", date, time, now.wMilliseconds);
    return used;
}

std::size_t Logger::_appendElapsed(Line& line) {
    const DWORD tick = m_clock.tickCount();
    if (!m_bHasFirstTick) {
        m_bHasFirstTick = true;
        m_dwFirstTick = tick;
    }
    const DWORD elapsed = tick - m_dwFirstTick;  // also across the wrap-around of the tick count
    std::size_t used = 0;
    appendFormatted(line, used, L"%d.%03d: ", elapsed / 1000, elapsed % 1000);
    return used;
}

std::size_t Logger::_appendPrefix(Line& line, std::size_t used, const Record& record) const {
    const wchar_t* source = record.sourceFile == nullptr ? L"" : record.sourceFile;
    if (m_settings.sourceFileFormat == 0) {
        source = fileNameOf(source);
    }
    if (!appendFormatted(line, used, L"%s(%d): %s [%s]%s: ", source, record.line, record.moduleTag,
                         levelName(record.level), record.functionTag)) {
        line[kTerminator] = L'\0';
        return kTerminator;
    }
    return used;
}

}  // namespace dbglog
