// The program's command line.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "CommandLine.h"

using setup::parseCommandLine;
using setup::Request;
using setup::Task;

TEST(CommandLine, TheThreeRequests) {
    EXPECT_EQ(parseCommandLine(L"\\Config"), Request{Task::Config});
    EXPECT_EQ(parseCommandLine(L"\\Save"), Request{Task::Save});
    EXPECT_EQ(parseCommandLine(L"\\OutputConf 131078"), (Request{Task::Output, 2, 6}));
}

TEST(CommandLine, BlanksAndCaseDoNotMatter) {
    EXPECT_EQ(parseCommandLine(L"  \\config \t"), Request{Task::Config});
    EXPECT_EQ(parseCommandLine(L"\\SAVE"), Request{Task::Save});
    EXPECT_EQ(parseCommandLine(L"\t\\outputCONF   131078  "), (Request{Task::Output, 2, 6}));
}

TEST(CommandLine, FirstAndLastArrangementOfTheMask) {
    EXPECT_EQ(parseCommandLine(L"\\OutputConf 1"), (Request{Task::Output, 0, 1}));
    EXPECT_EQ(parseCommandLine(L"\\OutputConf 1048575"), (Request{Task::Output, 15, 0xFFFF}));
}

class BadCommandLine : public testing::TestWithParam<const wchar_t*> {};

TEST_P(BadCommandLine, IsNotUnderstood) {
    EXPECT_EQ(parseCommandLine(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Lines, BadCommandLine,
                         testing::Values(L"", L"   ", L"Config", L"/Config", L"\\Confi", L"\\Configs", L"\\Config 1",
                                         L"\\Save as", L"\\OutputConf", L"\\OutputConf ", L"\\OutputConf131078",
                                         L"\\OutputConf 131078 1", L"\\OutputConf -131078", L"\\OutputConf +131078",
                                         L"\\OutputConf 0x20006", L"\\OutputConf 131078.0", L"\\OutputConf 1a"));
INSTANTIATE_TEST_SUITE_P(MaskEmptyOrWithoutTheMode, BadCommandLine,
                         testing::Values(L"\\OutputConf 0", L"\\OutputConf 131072", L"\\OutputConf 131074",
                                         L"\\OutputConf 1048577", L"\\OutputConf 2147483647"));
INSTANTIATE_TEST_SUITE_P(NumbersTooLarge, BadCommandLine,
                         testing::Values(L"\\OutputConf 2147483648", L"\\OutputConf 4295098374",
                                         L"\\OutputConf 18446744073709682694",
                                         L"\\OutputConf 99999999999999999999999999999999999999999999"));

TEST(CommandLine, GiganticLinesAreRefused) {
    EXPECT_EQ(parseCommandLine(std::wstring(1'000'000, L'\\')), std::nullopt);
    EXPECT_EQ(parseCommandLine(L"\\OutputConf " + std::wstring(1'000'000, L'9')), std::nullopt);
    EXPECT_EQ(parseCommandLine(L"\\OutputConf " + std::wstring(1'000'000, L'0') + L"131078"),
              (Request{Task::Output, 2, 6}));
}

TEST(CommandLine, EveryNumberThatTheStripCanFormatComesBackAsItWas) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int i = 0; i < 20'000; ++i) {
        const int mode = static_cast<int>(random() % 20);
        const unsigned mask = random() & 0xFFFF;
        const auto request =
            parseCommandLine(L"\\OutputConf " + std::to_wstring(static_cast<unsigned>(mode) * 65536U | mask));
        const bool sensible = mode < 16 && ((mask >> mode) & 1U) != 0;
        ASSERT_EQ(request, sensible ? std::optional(Request{Task::Output, mode, mask}) : std::nullopt)
            << mode << " " << mask;
    }
}
