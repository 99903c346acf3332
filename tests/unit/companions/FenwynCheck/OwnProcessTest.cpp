// The program that runs itself is this test program here; the first test is what its child does.
#include "OwnProcess.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

constexpr wchar_t kPart[] = L"FENWYN_TEST_CHILD";

TEST(OwnProcessChild, PlaysThePartThatTheEnvironmentGives) {
    wchar_t part[16] = L"";
    ::GetEnvironmentVariableW(kPart, part, 16);
    if (std::wstring(part) == L"hang") {
        std::printf("before\n");
        std::fflush(stdout);
        ::Sleep(INFINITE);
    } else if (std::wstring(part) == L"speak") {
        std::printf("caf\xC3\xA9\n");
        std::fflush(stdout);
        ::ExitProcess(7);
    }
}

class OwnProcess : public testing::Test {
 protected:
    void TearDown() override { ::SetEnvironmentVariableW(kPart, nullptr); }
    static machine::ChildResult run(const wchar_t* part, DWORD patience) {
        ::SetEnvironmentVariableW(kPart, part);
        return machine::runSelf(L"--gtest_filter=OwnProcessChild.*", patience);
    }
};

TEST_F(OwnProcess, TellsWhatTheChildWroteAndHowItEnded) {
    const machine::ChildResult result = run(L"speak", 60000);
    EXPECT_TRUE(result.ended);
    EXPECT_EQ(result.exitCode, 7U);
    EXPECT_NE(result.text.find(L"caf\u00e9"), std::wstring::npos);
}

TEST_F(OwnProcess, EndsAChildThatDoesNotReturn) {
    const machine::ChildResult result = run(L"hang", 3000);
    EXPECT_FALSE(result.ended);
    EXPECT_EQ(result.exitCode, 1U);
}

TEST_F(OwnProcess, KnowsWhereItStands) {
    EXPECT_TRUE(machine::programPath().starts_with(machine::programFolder() + L"\\"));
    EXPECT_TRUE(machine::programPath().ends_with(L".exe"));
}

}  // namespace
