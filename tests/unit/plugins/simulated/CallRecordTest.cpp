#include "CallRecord.h"

#include <gtest/gtest.h>

#include <map>

#include "State.h"
#include "common/Handle.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

TEST(CallRecord, LineHasTimeFunctionExportArgumentsResultAndThread) {
    const Sandbox sandbox;
    sim::recordCall({L"Zoom", L"SelectItem", L"1, \u00e4", -5});
    const auto lines = sandbox.record();
    ASSERT_EQ(lines.size(), 1U);
    ASSERT_EQ(lines[0].size(), 6U);
    EXPECT_EQ(lines[0][0].size(), std::string("2026-01-31T23:59:59.123").size());
    EXPECT_EQ(lines[0][1], "Zoom");
    EXPECT_EQ(lines[0][2], "SelectItem");
    EXPECT_EQ(lines[0][3], "1, \xc3\xa4");
    EXPECT_EQ(lines[0][4], "-5");
    EXPECT_EQ(lines[0][5], std::to_string(GetCurrentThreadId()));
}

constexpr int kWriters = 4;
constexpr int kLines = 300;
constexpr wchar_t kFileVariable[] = L"FENWYN_TEST_RECORD";

// Run in separate processes by the test below: writes kLines lines under the name of its process.
TEST(CallRecord, DISABLED_Writer) {
    wchar_t file[1024];
    ASSERT_NE(GetEnvironmentVariableW(kFileVariable, file, static_cast<DWORD>(std::size(file))), 0U);
    for (int i = 0; i < kLines; ++i) {
        sim::appendCall(file, {std::to_wstring(GetCurrentProcessId()), L"Export", std::wstring(200, L'x'), i});
    }
}

common::UniqueHandle startWriter() {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command =
        std::wstring(L"\"") + program + L"\" --gtest_also_run_disabled_tests --gtest_filter=CallRecord.DISABLED_Writer";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;  // its report is not needed
    PROCESS_INFORMATION process{};
    CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                   &process);
    CloseHandle(process.hThread);
    return common::UniqueHandle(process.hProcess);
}

TEST(CallRecord, LinesOfSeveralProcessesStayWholeAndNoneIsLost) {
    const Sandbox sandbox;
    SetEnvironmentVariableW(kFileVariable, sandbox.recordFile().c_str());
    std::vector<common::UniqueHandle> writers;
    for (int i = 0; i < kWriters; ++i) {
        writers.push_back(startWriter());
    }
    for (const common::UniqueHandle& writer : writers) {
        ASSERT_EQ(WaitForSingleObject(writer.get(), 60000), WAIT_OBJECT_0);
    }
    SetEnvironmentVariableW(kFileVariable, nullptr);
    std::map<std::string, int> linesOf;
    for (const auto& fields : sandbox.record()) {
        ASSERT_EQ(fields.size(), 6U);
        EXPECT_EQ(fields[3].size(), 200U);
        EXPECT_EQ(fields[4], std::to_string(linesOf[fields[1]]++));  // in order for each process
    }
    EXPECT_EQ(linesOf.size(), static_cast<std::size_t>(kWriters));
    for (const auto& [name, lines] : linesOf) {
        EXPECT_EQ(lines, kLines) << name;
    }
}

TEST(CallRecord, FileNameIsExpandedAndHasADefault) {
    const Sandbox sandbox;
    SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", L"C:\\somewhere");
    sim::writeText({}, L"RecordFile", L"%FENWYN_TEST_FOLDER%\\r.txt");
    EXPECT_EQ(sim::recordFilePath(), L"C:\\somewhere\\r.txt");
    SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", nullptr);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, sim::kStateKey, L"RecordFile");
    EXPECT_TRUE(sim::recordFilePath().ends_with(L"\\KESTOVA\\Simulated Notebook\\calls.txt"));
}

TEST(CallRecord, FileThatCannotBeWrittenLosesTheLineQuietly) {
    const Sandbox sandbox;
    for (const wchar_t* const path :
         {L"", L"x", L"Q:\\none\\calls.txt", L"C:\\windows\\system32", L"\\\\?\\nonsense"}) {
        sim::appendCall(path, {L"a", L"b", L"c", 0});
    }
    DeleteFileW(L"x");
    EXPECT_TRUE(sandbox.record().empty());
}

}  // namespace
}  // namespace plugintest
