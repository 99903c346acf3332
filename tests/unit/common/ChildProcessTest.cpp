// A program as a child that is watched.
#include "common/ChildProcess.h"

#include <gtest/gtest.h>

namespace {

constexpr DWORD kPatience = 30000;  // ms
constexpr wchar_t kShell[] = L"C:\\windows\\system32\\cmd.exe";
constexpr wchar_t kWaiting[] = L"C:\\windows\\system32\\notepad.exe";  // until somebody closes its window

}  // namespace

TEST(ChildProcess, TellsWhatTheChildWroteAndHowItEnded) {
    const common::ChildResult result = common::runChild(kShell, L"/c echo one& echo two& exit 7", kPatience);
    EXPECT_TRUE(result.ended);
    EXPECT_EQ(result.exitCode, 7U);
    EXPECT_EQ(result.text, L"one\r\ntwo\r\n");
}

TEST(ChildProcess, IsEndedWhenItTakesTooLong) {
    const ULONGLONG before = ::GetTickCount64();
    const common::ChildResult result = common::runChild(kWaiting, L"", 200);
    EXPECT_FALSE(result.ended);
    EXPECT_EQ(result.exitCode, 1U);
    EXPECT_LT(::GetTickCount64() - before, kPatience);
}

TEST(ChildProcess, ThatCannotBeStartedHasNotEnded) {
    const common::ChildResult result = common::runChild(L"C:\\no such program.exe", L"", kPatience);
    EXPECT_FALSE(result.ended);
    EXPECT_TRUE(result.text.empty());
}
