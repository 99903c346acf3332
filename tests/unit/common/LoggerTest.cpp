// The filter and the line, with a sink that stores its lines.
#include "common/Logger.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

using dbglog::Level;
using dbglog::Logger;
using dbglog::Record;
using dbglog::Settings;

class KeepingSink : public dbglog::ILineSink {
 public:
    void write(const dbglog::Line& line) override { lines.emplace_back(line.data()); }
    std::vector<std::wstring> lines;
};

Record record(Level level = Level::Error, const wchar_t* source = L".\\ZelMain.cpp") {
    return {source, 50, L" (CZelMainApp::InitInstance)", L"", level};
}

int write(Logger& logger, const Record& at, const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    const int written = logger.write(at, format, args);
    va_end(args);
    return written;
}

// Logs one error line with those settings.
std::wstring lineWith(const Settings& settings, const wchar_t* source = L".\\ZelMain.cpp",
                      const dbglog::Clock& clock = {}) {
    KeepingSink sink;
    Logger logger(settings, sink, clock);
    write(logger, record(Level::Error, source), L"text");
    return sink.lines.at(0);
}

DWORD g_tick = 0;
DWORD WINAPI testTick() {
    return g_tick;
}
void WINAPI testTime(SYSTEMTIME* time) {
    *time = {2011, 4, 3, 27, 14, 3, 7, 45};
}
constexpr dbglog::Clock testClock() {
    return {&testTick, &testTime};
}

class LogFilter : public testing::TestWithParam<int> {};

TEST_P(LogFilter, PassesLevelsUpToTheSetting) {
    Settings settings;
    settings.level = GetParam();
    KeepingSink sink;
    Logger logger(settings, sink);
    for (int level = 0; level <= 3; ++level) {
        const bool wanted = level <= GetParam();
        EXPECT_EQ(logger.enabled(static_cast<Level>(level)), wanted);
        EXPECT_EQ(write(logger, record(static_cast<Level>(level)), L"x") > 0, wanted);
    }
    EXPECT_EQ(sink.lines.size(), static_cast<std::size_t>(GetParam() + 1));
}

INSTANTIATE_TEST_SUITE_P(Levels, LogFilter, testing::Range(0, 4));

TEST(Logger, DestinationNowhereDropsEveryLevel) {
    Settings settings;
    settings.level = 3;
    settings.destination = dbglog::kNowhere;
    KeepingSink sink;
    Logger logger(settings, sink);
    EXPECT_FALSE(logger.enabled(Level::Error));
    EXPECT_EQ(write(logger, record(), L"x"), 0);
    EXPECT_TRUE(sink.lines.empty());
}

TEST(Logger, LineNamesSourceLineLevelAndFunction) {
    Settings settings;
    settings.level = 3;
    KeepingSink sink;
    Logger logger(settings, sink);
    for (const Level level : {Level::Error, Level::Warning, Level::Info, Level::Trace}) {
        write(logger, record(level), L"%s = %d", L"nItem", 7);
    }
    EXPECT_EQ(sink.lines, (std::vector<std::wstring>{
                              L"ZelMain.cpp(50):  [ERR] (CZelMainApp::InitInstance): nItem = 7\n",
                              L"ZelMain.cpp(50):  [WRN] (CZelMainApp::InitInstance): nItem = 7\n",
                              L"ZelMain.cpp(50):  [INF] (CZelMainApp::InitInstance): nItem = 7\n",
                              L"ZelMain.cpp(50):  [TRC] (CZelMainApp::InitInstance): nItem = 7\n",
                          }));
}

TEST(Logger, ReturnsTheCharactersOfTheLineWithItsLineEnd) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    const int written = write(logger, record(), L"Error Code: 0x%x", 0x80004003U);
    EXPECT_EQ(sink.lines.at(0), L"ZelMain.cpp(50):  [ERR] (CZelMainApp::InitInstance): Error Code: 0x80004003\n");
    EXPECT_EQ(written, static_cast<int>(sink.lines.at(0).size()));
}

TEST(Logger, ModuleTagStandsBeforeTheLevel) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    Record at = record();
    at.moduleTag = L"Hook";
    write(logger, at, L"x");
    EXPECT_EQ(sink.lines.at(0), L"ZelMain.cpp(50): Hook [ERR] (CZelMainApp::InitInstance): x\n");
}

TEST(Logger, ShortSourceIsTheTextAfterTheLastBackslash) {
    EXPECT_EQ(lineWith({}, L".\\UI\\ItemDlg\\QrdItem.cpp").substr(0, 12), L"QrdItem.cpp(");
    EXPECT_EQ(lineWith({}, L"C:\\src\\").substr(0, 5), L"(50):");
}

TEST(Logger, SourceWithoutBackslashStaysWhole) {
    EXPECT_EQ(lineWith({}, L"ZelMain.cpp").substr(0, 12), L"ZelMain.cpp(");
    EXPECT_EQ(lineWith({}, L"UI/ZelMain.cpp").substr(0, 15), L"UI/ZelMain.cpp(");
}

TEST(Logger, FullSourceFormatKeepsThePath) {
    Settings settings;
    settings.sourceFileFormat = 1;
    EXPECT_EQ(lineWith(settings, L".\\common\\LayeredWnd.cpp").substr(0, 28), L".\\common\\LayeredWnd.cpp(50):");
}

TEST(Logger, TimestampFormats) {
    const std::wstring text = L"ZelMain.cpp(50):  [ERR] (CZelMainApp::InitInstance): text\n";
    Settings settings;
    EXPECT_EQ(lineWith(settings, L"ZelMain.cpp", testClock()), text);
    settings.timeDateFormat = dbglog::kTime;
    EXPECT_EQ(lineWith(settings, L"ZelMain.cpp", testClock()), L"14:03:07.045: " + text);
    settings.timeDateFormat = dbglog::kDateAndTime;
    EXPECT_EQ(lineWith(settings, L"ZelMain.cpp", testClock()), L"2011-04-27 14:03:07.045: " + text);
    settings.timeDateFormat = dbglog::kElapsed;
    EXPECT_EQ(lineWith(settings, L"ZelMain.cpp", testClock()), L"0.000: " + text);
}

TEST(Logger, ElapsedTimeCountsFromTheFirstWrittenLineAcrossTheTickWrap) {
    Settings settings;
    settings.timeDateFormat = dbglog::kElapsed;
    KeepingSink sink;
    Logger logger(settings, sink, testClock());
    g_tick = 5;
    write(logger, record(Level::Trace), L"filtered out: does not start the clock");
    g_tick = 0xFFFFFF00U;
    write(logger, record(), L"a");
    g_tick = 0xFFFFFF00U + 61007U;
    write(logger, record(), L"b");
    g_tick = 0;
    ASSERT_EQ(sink.lines.size(), 2U);
    EXPECT_EQ(sink.lines[0].substr(0, 7), L"0.000: ");
    EXPECT_EQ(sink.lines[1].substr(0, 8), L"61.007: ");
}

TEST(Logger, ElapsedTimeIsTheFullTickDifference) {
    Settings settings;
    settings.timeDateFormat = dbglog::kElapsed;
    KeepingSink sink;
    Logger logger(settings, sink, testClock());
    g_tick = 1;
    write(logger, record(), L"a");
    g_tick = 0;
    write(logger, record(), L"b");
    EXPECT_EQ(sink.lines.at(1).substr(0, 13), L"4294967.295: ");
}

// The prefix takes 53 characters: a message of 457 fills the line completely.
constexpr std::size_t kPrefix = 53;

class LongMessage : public testing::TestWithParam<std::size_t> {};

TEST_P(LongMessage, IsCutSoThatTheLineFeedStays) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    const std::wstring message(GetParam(), L'x');
    const int written = write(logger, record(), L"%s", message.c_str());
    const std::size_t expected = std::min(kPrefix + GetParam() + 1, std::size_t{511});
    const std::wstring& line = sink.lines.at(0);
    EXPECT_EQ(line.size(), expected);
    EXPECT_EQ(written, static_cast<int>(expected));
    EXPECT_EQ(line.back(), L'\n');
    EXPECT_EQ(line.substr(kPrefix), std::wstring(expected - kPrefix - 1, L'x') + L'\n');
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongMessage, testing::Values(0U, 1U, 456U, 457U, 458U, 459U, 460U, 600U, 100000U));

TEST(Logger, OverlongPrefixIsCutToAFullLine) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    for (std::size_t length : {480U, 500U, 505U, 510U, 511U, 512U, 600U, 5000U}) {
        const std::wstring source(length, L's');
        EXPECT_EQ(write(logger, record(Level::Error, source.c_str()), L"message"), 511);
        const std::wstring& line = sink.lines.back();
        EXPECT_EQ(line.size(), 511U);
        EXPECT_EQ(line.substr(0, 480), source.substr(0, 480));
        EXPECT_EQ(line.back(), L'\n');
    }
}

TEST(Logger, MessageThatCannotBeFormattedGivesAFullLine) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    EXPECT_EQ(write(logger, record(), nullptr), 511);
    EXPECT_EQ(sink.lines.at(0).size(), 511U);
    EXPECT_EQ(sink.lines.at(0).substr(0, kPrefix), L"ZelMain.cpp(50):  [ERR] (CZelMainApp::InitInstance): ");
    EXPECT_EQ(sink.lines.at(0).back(), L'\n');
}

TEST(Logger, HighestLevelIsBelowAllLevelsWithoutADestination) {
    KeepingSink sink;
    Settings settings;
    settings.level = 2;
    EXPECT_EQ(Logger(settings, sink).highestLevel(), 2);
    settings.destination = dbglog::kNowhere;
    EXPECT_EQ(Logger(settings, sink).highestLevel(), -1);
}

// Checks that the message of a line is what the runtime makes of it.
template <typename... Arguments>
void expectFormatted(const wchar_t* format, Arguments... arguments) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    wchar_t expected[200] = L"";
    const int length = ::_snwprintf(expected, std::size(expected), format, arguments...);
    EXPECT_GT(write(logger, record(), format, arguments...), length);
    EXPECT_EQ(sink.lines.at(0).substr(kPrefix), expected + std::wstring(L"\n"));
}

TEST(Logger, MessagesAreFormattedAsTheRuntimeDoes) {
    const wchar_t* const missing = nullptr;
    expectFormatted(L"plain");
    expectFormatted(L"%s", L"");
    expectFormatted(L"%s and %s", L"one", missing);
    expectFormatted(L"%d %d %d", std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max());
    expectFormatted(L"%u %u", 0U, std::numeric_limits<unsigned>::max());
    expectFormatted(L"%x 0x%x", 0xABCDEF01U, 0U);
    // Those that only the runtime knows, also after others.
    expectFormatted(L"%d%%", 7);
    expectFormatted(L"%s: %d(0x%08x), %f, %S, %5d|%-5s|", L"mixed", -1, 0x12U, 1.5, "narrow", 3, L"x");
}

TEST(Logger, MissingTextsAndUnknownLevelsDoNoHarm) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    const Record empty{nullptr, -1, nullptr, nullptr, static_cast<Level>(-7)};
    const wchar_t* missing = nullptr;
    EXPECT_GT(write(logger, empty, L"%s", missing), 0);
    EXPECT_NE(sink.lines.at(0).find(L"[ERR]"), std::wstring::npos);
}

TEST(Logger, LinesOfManyThreadsStayWhole) {
    KeepingSink sink;
    Logger logger(Settings{}, sink);
    constexpr int kThreads = 8;
    constexpr int kLines = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&logger, t] {
            for (int i = 0; i < kLines; ++i) {
                write(logger, record(), L"%d/%d", t, i);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(sink.lines.size(), static_cast<std::size_t>(kThreads * kLines));
    std::vector<int> next(kThreads, 0);
    for (const std::wstring& line : sink.lines) {
        int t = -1;
        int i = -1;
        ASSERT_EQ(::swscanf(line.c_str() + kPrefix, L"%d/%d\n", &t, &i), 2) << "a torn line";
        ASSERT_TRUE(t >= 0 && t < kThreads);
        EXPECT_EQ(i, next[static_cast<std::size_t>(t)]++);
    }
}

}  // namespace
