// A program that logs its arguments, started by the log's process tests from a folder with its own settings. Arguments:
// "e:", "w:", "i:" or "t:" and a text (a line of that level), or one of the commands below. The exit code is the number
// of failed expectations.
#include <windows.h>

#include <cwchar>
#include <string>
#include <string_view>

#include "common/DebugLog.h"

namespace {

int g_failures = 0;
bool g_bLateLine = false;

void expect(bool holds) {
    g_failures += holds ? 0 : 1;
}

void logText(dbglog::Level level, const wchar_t* text) {
    LOG_LINE(level, L"%s", text);
}

void logScope(bool early) {
    LOG_ENTER_LEAVE();
    if (early) {
        return;
    }
    LOG_INFO(L"inside");
}

void logThrowing() {
    LOG_ENTER_LEAVE();
    throw 1;
}

void runScopes() {
    logScope(false);
    logScope(true);
    try {
        logThrowing();
    } catch (int) {
    }
}

void logConventional() {
    LOG_STATUS(E_POINTER);
    LOG_ASSERT(L"m_hPngDll");
}

void logLong() {
    const std::wstring text(600, L'x');
    LOG_LINE(dbglog::Level::Error, L"%s", text.c_str());
}

void logLastLine() {
    LOG_LAST(L"%s", L"the last caf\u00e9 \u4e2d");
}

void logUnicode() {
    LOG_LINE(dbglog::Level::Error, L"caf\u00e9 \u4e2d\u6587 \U0001F600 end");
}

// Logging a line, including the first one, preserves the thread's last error.
void checkLastError() {
    ::SetLastError(1234);
    expect(dbglog::enabled(dbglog::Level::Error));
    expect(::GetLastError() == 1234);
    LOG_STATUS(E_FAIL);
    expect(::GetLastError() == 1234);
}

void checkResults() {
    const dbglog::Record error{L"a.cpp", 1, L" (f)", L"", dbglog::Level::Error};
    const dbglog::Record trace{L"a.cpp", 1, L" (f)", L"", dbglog::Level::Trace};
    expect(dbglog::log(error, L"%d", 12345) == static_cast<int>(std::wcslen(L"a.cpp(1):  [ERR] (f): 12345\n")));
    expect(dbglog::log(trace, L"%d", 12345) == 0);
    expect(!dbglog::enabled(dbglog::Level::Trace));
}

// Prints "here" and waits for "go on", while the parent examines the files.
void waitForParent() {
    const std::wstring name = L"FenwynLogProbe-" + std::to_wstring(::GetCurrentProcessId());
    const HANDLE here = ::CreateEventW(nullptr, TRUE, FALSE, (name + L"-here").c_str());
    const HANDLE goOn = ::CreateEventW(nullptr, TRUE, FALSE, (name + L"-go").c_str());
    ::SetEvent(here);
    expect(::WaitForSingleObject(goOn, 20000) == WAIT_OBJECT_0);
    ::CloseHandle(here);
    ::CloseHandle(goOn);
}

// Created before the first line and therefore destroyed after everything that the first line creates.
class LateLine {
 public:
    ~LateLine() {
        if (g_bLateLine) {
            logText(dbglog::Level::Error, L"late");
        }
    }
} g_lateLine;

struct Command {
    std::wstring_view name;
    void (*run)();
};

constexpr Command kCommands[] = {
    {L"scopes", &runScopes},
    {L"conventional", &logConventional},
    {L"long", &logLong},
    {L"unicode", &logUnicode},
    {L"lasterror", &checkLastError},
    {L"results", &checkResults},
    {L"wait", &waitForParent},
    {L"late", [] { g_bLateLine = true; }},
    {L"close", &dbglog::close},
    {L"last", &logLastLine},
    {L"kill", [] { ::TerminateProcess(::GetCurrentProcess(), 0); }},
};

void run(std::wstring_view argument) {
    constexpr std::wstring_view kLevels = L"ewit";
    const std::size_t level = argument.size() > 2 && argument[1] == L':' ? kLevels.find(argument[0]) : kLevels.npos;
    if (level != kLevels.npos) {
        logText(static_cast<dbglog::Level>(level), argument.data() + 2);
        return;
    }
    for (const Command& command : kCommands) {
        if (command.name == argument) {
            command.run();
            return;
        }
    }
    expect(false);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    for (int i = 1; i < argc; ++i) {
        run(argv[i]);
    }
    return g_failures;
}
