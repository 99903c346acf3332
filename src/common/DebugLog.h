// The diagnostic log. Every function of the program may call it from any thread; it never reports a failure and never
// changes what the program does. DbgLog.ini in the executable's folder decides what is written and where (docs/log.md).
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstddef>
#include <string_view>

namespace dbglog {

enum class Level : int { Error = 0, Warning = 1, Info = 2, Trace = 3 };

// One per call site, built on the stack; all texts outlive the call.
struct Record {
    const wchar_t* sourceFile;   // as given by the build, with backslashes
    int line;                    // source line of the call
    const wchar_t* functionTag;  // a blank, then the qualified name in parentheses
    const wchar_t* moduleTag;    // always "" in this program
    Level level;
};

// Formats and writes one line (at most 511 characters, line feed included). printf-style wide format: %s takes a const
// wchar_t*. Returns the number of characters in the line, or 0 if the settings filter it out.
int log(const Record& record, const wchar_t* format, ...) noexcept;

// The same for a process that is about to end, or whose other threads do not go on: it waits at most a tenth of a
// second for a line of another thread, and what was written before it reaches the file with it. Uses no heap unless it
// has to make the log's folder.
int logLast(const Record& record, const wchar_t* format, ...) noexcept;

// The log file with its environment variables expanded, whatever the destination is; empty if it does not fit.
[[nodiscard]] std::array<wchar_t, 260> logFile() noexcept;

namespace detail {

// Greater than every level: the settings have not been read yet.
inline constexpr int kUnread = INT_MAX;
// The highest level that is written; -1 for none.
extern constinit std::atomic<int> s_highestLevel;
// Reads the settings if necessary.
[[nodiscard]] bool readEnabled(Level level) noexcept;

}  // namespace detail

// Whether a line of that level would be written at all. After the first call, a level that is not costs one comparison.
[[nodiscard]] inline bool enabled(Level level) noexcept {
    const int highest = detail::s_highestLevel.load(std::memory_order_relaxed);
    return static_cast<int>(level) <= highest && (highest != detail::kUnread || detail::readEnabled(level));
}

// Closes the log file of the process after writing everything. Later lines open it again and are appended.
void close();

// Compile-time texts of a call site: widens a literal, and turns slashes of a source path into backslashes.
template <std::size_t N>
struct WideText {
    std::array<wchar_t, N> chars{};
    [[nodiscard]] constexpr const wchar_t* c_str() const noexcept { return chars.data(); }
};

template <std::size_t N>
consteval WideText<N> sourcePath(const char (&path)[N]) {
    WideText<N> result;
    for (std::size_t i = 0; i < N; ++i) {
        result.chars[i] = path[i] == '/' ? L'\\' : static_cast<wchar_t>(path[i]);
    }
    return result;
}

// How compilers write an unnamed namespace inside a qualified name. The log omits it.
inline constexpr std::string_view kUnnamedNamespaces[] = {"{anonymous}::", "(anonymous namespace)::"};

consteval std::size_t unnamedNamespaceAt(std::string_view text) {
    for (const std::string_view unnamed : kUnnamedNamespaces) {
        if (text.starts_with(unnamed)) {
            return unnamed.size();
        }
    }
    return 0;
}

// "HRESULT CZelMainApp::showMainDlg(BOOL, BOOL)" -> "CZelMainApp::showMainDlg", including unnamed namespaces. The name
// ends at the parameter list and begins after the last blank, star or ampersand before it, outside of template
// arguments. The parenthesis of a function that returns a function pointer, "int (* name(int))(char)", does not end it.
consteval std::string_view qualifiedName(std::string_view pretty) {
    std::size_t begin = 0;
    std::size_t end = 0;
    for (int depth = 0; end < pretty.size(); ++end) {
        if (const std::size_t unnamed = unnamedNamespaceAt(pretty.substr(end)); unnamed != 0) {
            end += unnamed - 1;
            continue;
        }
        const char c = pretty[end];
        const char next = end + 1 < pretty.size() ? pretty[end + 1] : '\0';
        depth += c == '<' ? 1 : 0;
        depth -= c == '>' ? 1 : 0;
        if (depth == 0 && c == '(' && next != '*' && next != '&') {
            break;
        }
        if (depth == 0 && (c == ' ' || c == '*' || c == '&')) {
            begin = end + 1;
        }
    }
    return pretty.substr(begin, end - begin);
}

// The two forms of a function's name: plain for ENTER/LEAVE, " (name)" as the function tag.
template <std::size_t N>
struct FunctionName {
    WideText<N> plain;
    WideText<N + 3> tag;
};

template <std::size_t N>
consteval FunctionName<N> functionName(const char (&pretty)[N]) {
    FunctionName<N> result;
    const std::string_view name = qualifiedName(std::string_view(pretty, N - 1));
    std::size_t length = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (const std::size_t unnamed = unnamedNamespaceAt(name.substr(i)); unnamed != 0) {
            i += unnamed - 1;
            continue;
        }
        result.plain.chars[length] = static_cast<wchar_t>(name[i]);
        result.tag.chars[length + 2] = static_cast<wchar_t>(name[i]);
        ++length;
    }
    result.tag.chars[0] = L' ';
    result.tag.chars[1] = L'(';
    result.tag.chars[length + 2] = L')';
    return result;
}

// Logs "ENTER %s" when constructed and "LEAVE %s" whenever the scope ends. The record outlives the object.
class EnterLeave {
 public:
    EnterLeave(const Record& record, const wchar_t* plainName) noexcept : m_record(record), m_name(plainName) {
        if (enabled(m_record.level)) {
            log(m_record, L"ENTER %s", m_name);
        }
    }
    ~EnterLeave() {
        if (enabled(m_record.level)) {
            log(m_record, L"LEAVE %s", m_name);
        }
    }
    EnterLeave(const EnterLeave&) = delete;
    EnterLeave& operator=(const EnterLeave&) = delete;

 private:
    const Record& m_record;
    const wchar_t* const m_name;
};

}  // namespace dbglog

// Statements that log from the enclosing function. Do not use them in a lambda, whose name is meaningless. The filter
// runs first: a line that is not written costs one comparison.
#define LOG_LINE(severity, ...)                                                                              \
    do {                                                                                                     \
        if (::dbglog::enabled(severity)) {                                                                   \
            static constexpr auto logPath_ = ::dbglog::sourcePath(__FILE__);                                 \
            static constexpr auto logName_ = ::dbglog::functionName(__PRETTY_FUNCTION__);                    \
            ::dbglog::log(::dbglog::Record{logPath_.c_str(), __LINE__, logName_.tag.c_str(), L"", severity}, \
                          __VA_ARGS__);                                                                      \
        }                                                                                                    \
    } while (false)

// The last line of a process, by logLast().
#define LOG_LAST(...)                                                                                        \
    do {                                                                                                     \
        static constexpr auto logPath_ = ::dbglog::sourcePath(__FILE__);                                     \
        static constexpr auto logName_ = ::dbglog::functionName(__PRETTY_FUNCTION__);                        \
        ::dbglog::logLast(                                                                                   \
            ::dbglog::Record{logPath_.c_str(), __LINE__, logName_.tag.c_str(), L"", ::dbglog::Level::Error}, \
            __VA_ARGS__);                                                                                    \
    } while (false)

#define LOG_TRACE(...) LOG_LINE(::dbglog::Level::Trace, __VA_ARGS__)
#define LOG_WARNING(...) LOG_LINE(::dbglog::Level::Warning, __VA_ARGS__)
#define LOG_INFO(...) LOG_LINE(::dbglog::Level::Info, __VA_ARGS__)

// "Error Code: 0x%x" with a status.
#define LOG_STATUS(status) LOG_LINE(::dbglog::Level::Error, L"Error Code: 0x%x", static_cast<unsigned>(status))

// "ASSERT( %s )": an expectation that did not hold, with the text of its condition; the program continues.
#define LOG_ASSERT(text) LOG_LINE(::dbglog::Level::Error, L"ASSERT( %s )", text)

// First statement of a function: logs ENTER now and LEAVE on every return.
#define LOG_ENTER_LEAVE()                                                                                              \
    static constexpr auto logScopePath_ = ::dbglog::sourcePath(__FILE__);                                              \
    static constexpr auto logScopeName_ = ::dbglog::functionName(__PRETTY_FUNCTION__);                                 \
    static constexpr ::dbglog::Record logScopeRecord_{logScopePath_.c_str(), __LINE__, logScopeName_.tag.c_str(), L"", \
                                                      ::dbglog::Level::Trace};                                         \
    const ::dbglog::EnterLeave logScope_(logScopeRecord_, logScopeName_.plain.c_str())
