#include "CommandLine.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "common/ChildProcess.h"

namespace {

using machine::Command;

std::optional<machine::Options> parse(const std::vector<std::wstring>& arguments) {
    return machine::parseCommandLine(arguments);
}

TEST(CheckCommandLine, TakesEachCommandWithItsSwitchesInAnyOrder) {
    const auto check = parse({L"--report", L"C:\\a b.txt", L"--try", L"--machine"});
    ASSERT_TRUE(check);
    EXPECT_EQ(check->command, Command::CheckMachine);
    EXPECT_TRUE(check->tryChanges);
    EXPECT_EQ(check->reportFile, L"C:\\a b.txt");
    const auto enter = parse({L"--register", L"--user", L"--replace", L"--functions", L"Mute;Lock;"});
    ASSERT_TRUE(enter);
    EXPECT_EQ(enter->command, Command::Register);
    EXPECT_TRUE(enter->forUser);
    EXPECT_TRUE(enter->replace);
    EXPECT_EQ(enter->functions, L"Mute;Lock;");
    const auto leave = parse({L"--unregister"});
    ASSERT_TRUE(leave);
    EXPECT_EQ(leave->command, Command::Unregister);
    EXPECT_FALSE(leave->forUser);
    const auto forgive = parse({L"--forgive"});
    ASSERT_TRUE(forgive);
    EXPECT_EQ(forgive->command, Command::Forgive);
    const auto inspect = parse({L"--inspect", L"Mute", L"C:\\Mute.dll"});
    ASSERT_TRUE(inspect);
    EXPECT_EQ(inspect->function, L"Mute");
    EXPECT_EQ(inspect->plugin, L"C:\\Mute.dll");
    const auto question = parse({L"--ask", L"Mute", L"C:\\Mute.dll"});
    ASSERT_TRUE(question);
    EXPECT_EQ(question->command, Command::Ask);
    EXPECT_EQ(question->plugin, L"C:\\Mute.dll");
    EXPECT_FALSE(parse({L"--ask", L"Mute"}));
}

TEST(CheckCommandLine, TakesScreensByNumberOrPathAndAPercentage) {
    EXPECT_EQ(parse({L"--screens"})->command, Command::ListScreens);
    const auto allow = parse({L"--allow-screen", L"2"});
    ASSERT_TRUE(allow);
    EXPECT_EQ(allow->command, Command::AllowScreen);
    EXPECT_EQ(allow->screen, L"2");
    EXPECT_EQ(parse({L"--forbid-screen", L"\\\\?\\x"})->command, Command::ForbidScreen);
    const auto read = parse({L"--screen-brightness", L"\\\\?\\x"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->command, Command::ScreenBrightness);
    EXPECT_EQ(read->screen, L"\\\\?\\x");
    EXPECT_EQ(read->percentage, std::nullopt);
    EXPECT_EQ(parse({L"--screen-brightness", L"\\\\?\\x", L"0"})->percentage, 0U);
    EXPECT_EQ(parse({L"--screen-brightness", L"\\\\?\\x", L"100"})->percentage, 100U);
}

TEST(CheckCommandLine, RefusesWhatMakesNoSense) {
    const std::vector<std::vector<std::wstring>> kWrong = {
        {},
        {L"--try"},
        {L"--report", L"x"},
        {L"--machine", L"--report"},
        {L"--machine", L"--report", L"--try"},
        {L"--machine", L"--register"},
        {L"--forgive", L"--user"},
        {L"--forgive", L"--machine"},
        {L"--machine", L"--user"},
        {L"--register", L"--try"},
        {L"--unregister", L"--replace"},
        {L"--unregister", L"--functions", L"Mute;"},
        {L"--machine", L"--elevated"},
        {L"--inspect", L"Mute"},
        {L"/machine"},
        {L"--allow-screen"},
        {L"--allow-screen", L"--screens"},
        {L"--screens", L"--user"},
        {L"--screen-brightness", L"x", L"101"},
        {L"--screen-brightness", L"x", L"ten"},
        {L"--screen-brightness", L"x", L"-1"},
        {L"--machine", L"more"},
    };
    for (const auto& arguments : kWrong) {
        EXPECT_FALSE(parse(arguments)) << arguments.size() << " arguments";
    }
}

TEST(CheckCommandLine, QuotedArgumentsArriveAsTheyAre) {
    for (const std::wstring argument :
         {L"plain", L"with blank", L"C:\\folder with blank\\", L"a\"b", L"a\\\"b", L"\\\\", L"%PATH%"}) {
        int count = 0;
        LPWSTR* const words =
            CommandLineToArgvW((L"x.exe " + common::quotedArgument(argument) + L" end").c_str(), &count);
        ASSERT_EQ(count, 3);
        EXPECT_EQ(std::wstring(words[1]), argument);
        LocalFree(words);
    }
}

}  // namespace
