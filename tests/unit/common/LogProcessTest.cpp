// Real processes with their own "DbgLog.ini": their output in files, on standard error and at a debugger.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using support::ChildProcess;
using support::TempFolder;

constexpr wchar_t kEvent[] = L"FenwynLogProbe-";

std::string errorLine(const std::string& message, const std::string& function = "logText") {
    return "[ERR] (" + function + "): " + message + "\r\n";
}

// What follows the source prefix in every line; the line numbers are not checked.
std::string withoutSource(const std::string& text) {
    return std::regex_replace(text, std::regex("LogProbe\\.cpp\\([0-9]+\\):  "), "");
}

class LogProcess : public testing::Test {
 protected:
    void SetUp() override {
        wchar_t own[MAX_PATH] = L"";
        ASSERT_GT(::GetModuleFileNameW(nullptr, own, MAX_PATH), 0U);
        fs::create_directories(_folder());
        fs::copy_file(fs::path(own).parent_path() / L"LogProbe.exe", _folder() / L"LogProbe.exe");
        ::GetEnvironmentVariableW(L"LOCALAPPDATA", m_saved, MAX_PATH);
        ::SetEnvironmentVariableW(L"LOCALAPPDATA", (m_folder / L"local").c_str());
    }
    void TearDown() override { ::SetEnvironmentVariableW(L"LOCALAPPDATA", m_saved); }

    void settings(const std::string& keys) {
        TempFolder::write(_folder() / L"DbgLog.ini", "[LOG]\r\nLogFile=" + logFile().string() + "\r\n" + keys);
    }
    // All expectations of the child held.
    void runProbe(const std::wstring& arguments) {
        ChildProcess child;
        ASSERT_TRUE(child.start(probe(), arguments));
        EXPECT_EQ(child.exitCode(), 0U);
    }
    [[nodiscard]] std::wstring probe() const { return (_folder() / L"LogProbe.exe").wstring(); }
    [[nodiscard]] fs::path logFile() const { return m_folder / L"log.txt"; }
    [[nodiscard]] fs::path defaultLogFile() const { return m_folder / L"local/KESTOVA/Fenwyn/log.txt"; }
    [[nodiscard]] std::string log() const { return withoutSource(TempFolder::bytesOf(logFile())); }

    TempFolder m_folder;

 private:
    [[nodiscard]] fs::path _folder() const { return m_folder / L"program folder"; }

    wchar_t m_saved[MAX_PATH] = L"";
};

TEST_F(LogProcess, WithoutSettingsErrorsGoToTheDefaultFile) {
    runProbe(L"t:trace i:info w:warning");
    EXPECT_FALSE(fs::exists(m_folder / L"local")) << "nothing is created before the first error";
    runProbe(L"t:trace e:first \"e:second line\"");
    EXPECT_EQ(withoutSource(TempFolder::bytesOf(defaultLogFile())), errorLine("first") + errorLine("second line"));
}

TEST_F(LogProcess, LineCarriesFileNameAndLineNumber) {
    runProbe(L"e:x");
    const std::string bytes = TempFolder::bytesOf(defaultLogFile());
    EXPECT_TRUE(std::regex_match(bytes, std::regex("LogProbe\\.cpp\\([1-9][0-9]*\\):  \\[ERR\\] \\(logText\\): x\r\n")))
        << bytes;
}

TEST_F(LogProcess, FileIsTruncatedAtTheFirstLineOnly) {
    settings("");
    runProbe(L"e:one e:two");
    runProbe(L"t:nothing");
    EXPECT_EQ(log(), errorLine("one") + errorLine("two"));
    runProbe(L"e:three");
    EXPECT_EQ(log(), errorLine("three"));
}

TEST_F(LogProcess, LevelThreeWritesEverythingInOrder) {
    settings("Level=3\r\n");
    runProbe(L"e:a w:b i:c t:d");
    EXPECT_EQ(log(), "[ERR] (logText): a\r\n[WRN] (logText): b\r\n[INF] (logText): c\r\n[TRC] (logText): d\r\n");
}

TEST_F(LogProcess, LevelOutOfRangeCountsAsErrorsOnly) {
    settings("Level=7\r\n");
    runProbe(L"e:a w:b");
    EXPECT_EQ(log(), errorLine("a"));
}

TEST_F(LogProcess, DestinationOutOfRangeCountsAsTheFile) {
    settings("Destination=9\r\n");
    runProbe(L"e:a");
    EXPECT_EQ(log(), errorLine("a"));
}

TEST_F(LogProcess, DestinationNowhereSuppressesEverything) {
    settings("Level=3\r\nDestination=0\r\n");
    runProbe(L"e:a t:b scopes");
    EXPECT_FALSE(fs::exists(logFile()));
}

TEST_F(LogProcess, FullSourceFormatShowsThePathWithBackslashes) {
    settings("SourceFileFormat=1\r\n");
    runProbe(L"e:a");
    EXPECT_EQ(TempFolder::bytesOf(logFile()).substr(0, 33), ".\\tests\\unit\\common\\LogProbe.cpp(");
}

TEST_F(LogProcess, TimestampsHaveTheirPictures) {
    const struct {
        const char* format;
        const char* picture;
    } cases[] = {
        {"0", ""},
        {"1", "[0-2][0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9]{3}: "},
        {"2", "20[0-9]{2}-[01][0-9]-[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9]{3}: "},
        {"3", "0\\.000: "},
        {"5", ""},
    };
    for (const auto& row : cases) {
        settings(std::string("TimeDateFormat=") + row.format + "\r\n");
        runProbe(L"e:a");
        EXPECT_TRUE(std::regex_match(log(), std::regex(std::string(row.picture) + "\\[ERR\\] \\(logText\\): a\r\n")))
            << row.format << ": " << log();
    }
}

TEST_F(LogProcess, ScopesLogEnterAndLeaveOnEveryWayOut) {
    settings("Level=3\r\n");
    runProbe(L"scopes");
    EXPECT_EQ(log(),
              "[TRC] (logScope): ENTER logScope\r\n"
              "[INF] (logScope): inside\r\n"
              "[TRC] (logScope): LEAVE logScope\r\n"
              "[TRC] (logScope): ENTER logScope\r\n"
              "[TRC] (logScope): LEAVE logScope\r\n"
              "[TRC] (logThrowing): ENTER logThrowing\r\n"
              "[TRC] (logThrowing): LEAVE logThrowing\r\n");
}

TEST_F(LogProcess, ConventionalMessages) {
    settings("");
    runProbe(L"conventional");
    EXPECT_EQ(log(), errorLine("Error Code: 0x80004003", "logConventional") +
                         errorLine("ASSERT( m_hPngDll )", "logConventional"));
}

TEST_F(LogProcess, LongMessageIsALineOf511Characters) {
    settings("");
    runProbe(L"long e:after");
    const std::string bytes = TempFolder::bytesOf(logFile());
    EXPECT_EQ(bytes.find("\r\n"), 510U);
    EXPECT_EQ(withoutSource(bytes.substr(512)), errorLine("after"));
}

TEST_F(LogProcess, CharactersOutsideTheLocaleBecomeQuestionMarks) {
    settings("");
    runProbe(L"unicode e:after");
    EXPECT_EQ(log(), errorLine("caf\xE9 ?? ?? end", "logUnicode") + errorLine("after"));
}

TEST_F(LogProcess, LoggingKeepsTheLastError) {
    settings("TimeDateFormat=2\r\n");
    runProbe(L"lasterror");
    settings("Destination=3\r\nLogFile=Z:\\no\\such\\<place>\\log.txt\r\n");
    runProbe(L"lasterror");
}

TEST_F(LogProcess, LogReturnsTheCharactersOrZeroWhenFiltered) {
    settings("");
    runProbe(L"results");
}

TEST_F(LogProcess, LinesOfLateDestructorsAreWritten) {
    settings("");
    runProbe(L"late e:early");
    EXPECT_EQ(log(), errorLine("early") + errorLine("late"));
}

// The child pauses while its file is examined.
class LogProcessWaiting : public LogProcess {
 protected:
    void startAndWait(const std::wstring& arguments) {
        ASSERT_TRUE(m_child.start(probe(), arguments));
        const std::wstring name = kEvent + std::to_wstring(m_child.id());
        const common::UniqueHandle here(::CreateEventW(nullptr, TRUE, FALSE, (name + L"-here").c_str()));
        m_hGoOn.reset(::CreateEventW(nullptr, TRUE, FALSE, (name + L"-go").c_str()));
        ASSERT_EQ(::WaitForSingleObject(here.get(), 20000), WAIT_OBJECT_0);
    }
    void goOn() {
        ::SetEvent(m_hGoOn.get());
        EXPECT_EQ(m_child.exitCode(), 0U);
    }

 private:
    ChildProcess m_child;
    common::UniqueHandle m_hGoOn;
};

TEST_F(LogProcessWaiting, WithoutFlushTheKeptFileFillsAtTheEnd) {
    settings("");
    startAndWait(L"e:a wait e:b");
    EXPECT_EQ(log(), "");
    EXPECT_TRUE(fs::exists(logFile())) << "opened at the first line";
    goOn();
    EXPECT_EQ(log(), errorLine("a") + errorLine("b"));
}

TEST_F(LogProcessWaiting, ClosedFileIsCompleteAndWhatFollowsIsAppended) {
    settings("");
    startAndWait(L"e:a close wait e:b close close e:c");
    EXPECT_EQ(log(), errorLine("a")) << "although nothing is flushed";
    goOn();
    EXPECT_EQ(log(), errorLine("a") + errorLine("b") + errorLine("c"));
}

TEST_F(LogProcessWaiting, WithFlushEveryLineIsThereAtOnce) {
    settings("Flush=1\r\n");
    startAndWait(L"e:a e:b wait e:c");
    EXPECT_EQ(log(), errorLine("a") + errorLine("b"));
    goOn();
    EXPECT_EQ(log(), errorLine("a") + errorLine("b") + errorLine("c"));
}

TEST_F(LogProcessWaiting, AfterAnotherProcessEmptiedTheKeptFileItIsWrittenOnWithoutAHole) {
    settings("Flush=1\r\n");
    startAndWait(L"\"e:a line that is longer than all that follow\" wait e:b e:c");
    runProbe(L"e:x");
    EXPECT_EQ(log(), errorLine("x")) << "emptied at the first line";
    goOn();
    EXPECT_EQ(log(), errorLine("x") + errorLine("b") + errorLine("c"));
}

TEST_F(LogProcessWaiting, FilePerLineAppendsAndClosesTheFile) {
    settings("Destination=3\r\n");
    TempFolder::write(logFile(), "kept\r\n");
    startAndWait(L"e:a wait e:b");
    EXPECT_EQ(log(), "kept\r\n" + errorLine("a"));
    EXPECT_TRUE(::DeleteFileW(logFile().c_str())) << "nobody holds it open";
    goOn();
    EXPECT_EQ(log(), errorLine("b"));
}

TEST_F(LogProcessWaiting, KeptFileThatCannotBeOpenedIsTriedOnce) {
    settings("Flush=1\r\n");
    fs::create_directory(logFile());
    startAndWait(L"e:a wait e:b");
    fs::remove(logFile());
    goOn();
    EXPECT_FALSE(fs::exists(logFile()));
}

TEST_F(LogProcessWaiting, FilePerLineTriesAgainAtEveryLine) {
    settings("Destination=3\r\n");
    fs::create_directory(logFile());
    startAndWait(L"e:a wait e:b");
    fs::remove(logFile());
    goOn();
    EXPECT_EQ(log(), errorLine("b"));
}

TEST_F(LogProcessWaiting, ElapsedTimeGrows) {
    settings("TimeDateFormat=3\r\n");
    startAndWait(L"e:a wait e:b");
    const ULONGLONG start = ::GetTickCount64();
    while (::GetTickCount64() < start + 30) {
        ::Sleep(1);
    }
    goOn();
    std::smatch match;
    const std::string text = log();
    ASSERT_TRUE(std::regex_search(text, match, std::regex("^0\\.000: .*\r\n([0-9]+)\\.([0-9]{3}): "))) << text;
    EXPECT_GE(std::stoi(match[1]) * 1000 + std::stoi(match[2]), 30);
}

TEST_F(LogProcess, MissingFoldersAreCreated) {
    for (const char* destination : {"2", "3"}) {
        const fs::path file = m_folder / L"deep" / destination / L"a b/c/log.txt";
        settings(std::string("Destination=") + destination + "\r\n");
        TempFolder::write(m_folder / L"program folder/DbgLog.ini",
                          "[LOG]\r\nLogFile=" + file.string() + "\r\nDestination=" + destination + "\r\n");
        runProbe(L"e:a");
        EXPECT_EQ(withoutSource(TempFolder::bytesOf(file)), errorLine("a"));
    }
}

TEST_F(LogProcess, EnvironmentVariablesInTheFileAreExpanded) {
    TempFolder::write(m_folder / L"program folder/DbgLog.ini", "[LOG]\r\nLogFile=%LocalAppData%\\x\\own.txt\r\n");
    runProbe(L"e:a");
    EXPECT_EQ(withoutSource(TempFolder::bytesOf(m_folder / L"local/x/own.txt")), errorLine("a"));
}

TEST_F(LogProcess, ImpossibleFilesAreSilentlyLeftOut) {
    for (const std::string& file :
         {std::string("Z:\\no\\<such>\\*?.txt"), std::string(259, 'p'),
          "%PATH%%PATH%%PATH%%PATH%\\" + std::string(200, 'q'), std::string("|"), std::string()}) {
        for (const char* destination : {"2", "3"}) {
            TempFolder::write(m_folder / L"program folder/DbgLog.ini",
                              "[LOG]\r\nLogFile=" + file + "\r\nDestination=" + destination + "\r\n");
            runProbe(L"e:a e:b");
        }
    }
}

// For each destination that is a file, also if nothing was written before.
TEST_F(LogProcess, LastLineReachesTheFileWithAllBeforeItWhenTheProcessIsKilled) {
    const std::string last = errorLine("the last caf\xe9 ?", "logLastLine");
    for (const char* const destination : {"Destination=2\r\n", "Destination=3\r\n"}) {
        settings(std::string(destination) + "Level=0\r\n");
        fs::remove(logFile());
        runProbe(L"e:a e:b last kill");
        EXPECT_EQ(log(), errorLine("a") + errorLine("b") + last) << destination;
        fs::remove(logFile());
        runProbe(L"last kill");
        EXPECT_EQ(log(), last) << destination;
    }
}

TEST_F(LogProcess, LinesAfterALastOneAreAppended) {
    settings("Destination=2\r\n");
    TempFolder::write(logFile(), "of an earlier process");
    runProbe(L"last e:a");
    EXPECT_EQ(log(), errorLine("the last caf\xe9 ?", "logLastLine") + errorLine("a"));
}

TEST_F(LogProcess, StandardErrorTakesTheLines) {
    settings("Destination=4\r\n");
    const fs::path captured = m_folder / L"stderr.txt";
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    {
        const common::UniqueFile file(
            ::CreateFileW(captured.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS, 0, nullptr));
        ChildProcess child;
        ASSERT_TRUE(child.start(probe(), L"e:a t:b e:c", file.get()));
        EXPECT_EQ(child.exitCode(), 0U);
    }
    EXPECT_EQ(withoutSource(TempFolder::bytesOf(captured)), errorLine("a") + errorLine("c"));
    EXPECT_FALSE(fs::exists(logFile()));
}

std::string readDebugText(HANDLE process, const OUTPUT_DEBUG_STRING_INFO& info) {
    std::string bytes(info.nDebugStringLength, '\0');
    SIZE_T read = 0;
    ::ReadProcessMemory(process, info.lpDebugStringData, bytes.data(), bytes.size(), &read);
    if (info.fUnicode == 0) {
        return std::string(bytes.c_str());
    }
    std::string narrow;
    for (std::size_t i = 0; i + 1 < read && bytes[i] != '\0'; i += sizeof(wchar_t)) {
        narrow += bytes[i];
    }
    return narrow;
}

TEST_F(LogProcess, DebuggerTakesTheLines) {
    settings("Destination=1\r\n");
    ChildProcess child;
    ASSERT_TRUE(child.start(probe(), L"e:a t:b e:c", nullptr, DEBUG_ONLY_THIS_PROCESS));
    std::string received;
    DEBUG_EVENT event{};
    while (::WaitForDebugEvent(&event, 20000)) {
        DWORD answer = DBG_CONTINUE;
        if (event.dwDebugEventCode == OUTPUT_DEBUG_STRING_EVENT) {
            received += readDebugText(child.handle(), event.u.DebugString);
        } else if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT) {
            ::CloseHandle(event.u.CreateProcessInfo.hFile);
        } else if (event.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT) {
            ::CloseHandle(event.u.LoadDll.hFile);
        } else if (event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
                   event.u.Exception.ExceptionRecord.ExceptionCode != 0x80000003U) {
            answer = DBG_EXCEPTION_NOT_HANDLED;
        }
        ::ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
        if (event.dwDebugEventCode == EXIT_PROCESS_DEBUG_EVENT) {
            break;
        }
    }
    EXPECT_EQ(withoutSource(received), "[ERR] (logText): a\n[ERR] (logText): c\n");
    EXPECT_FALSE(fs::exists(logFile()));
}

}  // namespace
