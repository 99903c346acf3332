#include "common/LogSettings.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace {

constexpr wchar_t kDefaultLogFile[] = L"%LocalAppData%\\KESTOVA\\Fenwyn\\log.txt";

dbglog::Settings settingsOf(const std::string& ini) {
    const support::TempFolder folder;
    support::TempFolder::write(folder / L"DbgLog.ini", ini);
    return dbglog::readSettings((folder / L"DbgLog.ini").c_str());
}

void expectDefaults(const dbglog::Settings& settings) {
    EXPECT_EQ(settings.level, 0);
    EXPECT_EQ(settings.destination, 2);
    EXPECT_EQ(settings.sourceFileFormat, 0);
    EXPECT_EQ(settings.timeDateFormat, 0);
    EXPECT_EQ(settings.flush, 0);
    EXPECT_STREQ(settings.logFile.data(), kDefaultLogFile);
}

TEST(LogSettings, MissingFileGivesDefaults) {
    const support::TempFolder folder;
    expectDefaults(dbglog::readSettings((folder / L"DbgLog.ini").c_str()));
}

TEST(LogSettings, EmptyPathGivesDefaults) {
    expectDefaults(dbglog::readSettings(L""));
    expectDefaults(dbglog::readSettings(nullptr));
}

TEST(LogSettings, GarbageAndOtherSectionsGiveDefaults) {
    expectDefaults(settingsOf("\x01\xFF\xFE[[[=\n\n=;"));
    expectDefaults(settingsOf("[OTHER]\r\nLevel=3\r\nDestination=4\r\nFlush=1\r\n"));
}

struct NumberCase {
    const char* key;
    int dbglog::Settings::*member;
    int defaultValue;
    int highest;
};

class LogNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(LogNumber, AcceptsItsRangeAndCountsTheRestAsDefault) {
    const NumberCase& param = GetParam();
    const auto read = [&param](const std::string& text) {
        return settingsOf("[LOG]\r\n" + std::string(param.key) + "=" + text + "\r\n").*param.member;
    };
    for (int value = 0; value <= param.highest; ++value) {
        EXPECT_EQ(read(std::to_string(value)), value) << param.key;
    }
    const std::string beyond = std::to_string(param.highest + 1);
    for (const std::string& bad : {beyond, std::string("7"), std::string("9"), std::string("-1"),
                                   std::string("4294967295"), std::string("2147483648")}) {
        EXPECT_EQ(read(bad), param.defaultValue) << param.key << "=" << bad;
    }
}

INSTANTIATE_TEST_SUITE_P(Keys, LogNumber,
                         testing::Values(NumberCase{"Level", &dbglog::Settings::level, 0, 3},
                                         NumberCase{"Destination", &dbglog::Settings::destination, 2, 4},
                                         NumberCase{"SourceFileFormat", &dbglog::Settings::sourceFileFormat, 0, 1},
                                         NumberCase{"TimeDateFormat", &dbglog::Settings::timeDateFormat, 0, 3},
                                         NumberCase{"Flush", &dbglog::Settings::flush, 0, 1}),
                         [](const auto& key) { return std::string(key.param.key); });

TEST(LogSettings, LogFileIsTakenUnexpandedAndCutAtTheLongestPath) {
    EXPECT_STREQ(settingsOf("[LOG]\r\nLogFile=%TEMP%\\a b.txt\r\n").logFile.data(), L"%TEMP%\\a b.txt");
    const dbglog::Settings settings = settingsOf("[LOG]\r\nLogFile=" + std::string(1000, 'p') + "\r\n");
    EXPECT_EQ(std::wstring(settings.logFile.data()), std::wstring(259, L'p'));
}

TEST(LogSettings, SettingsLieBesideTheExecutable) {
    EXPECT_STREQ(dbglog::settingsPathBeside(L"C:\\Program Files\\Fenwyn\\Fenwyn.exe").data(),
                 L"C:\\Program Files\\Fenwyn\\DbgLog.ini");
    EXPECT_STREQ(dbglog::settingsPathBeside(L"C:\\Fenwyn.exe").data(), L"C:\\DbgLog.ini");
    EXPECT_STREQ(dbglog::settingsPathBeside(L"\\\\server\\share\\x.exe").data(), L"\\\\server\\share\\DbgLog.ini");
}

TEST(LogSettings, FolderWithoutRoomForTheFileNameGivesNoPath) {
    const std::wstring fits = std::wstring(248, L'd') + L"\\";
    EXPECT_EQ(std::wstring(dbglog::settingsPathBeside((fits + L"x.exe").c_str()).data()), fits + L"DbgLog.ini");
    const std::wstring tooLong = std::wstring(249, L'd') + L"\\";
    EXPECT_STREQ(dbglog::settingsPathBeside((tooLong + L"x.exe").c_str()).data(), L"");
}

TEST(LogSettings, PathOfThisProcessEndsInTheSettingsFile) {
    wchar_t executable[MAX_PATH] = L"";
    ASSERT_GT(::GetModuleFileNameW(nullptr, executable, MAX_PATH), 0U);
    const auto expected = std::filesystem::path(executable).parent_path() / L"DbgLog.ini";
    EXPECT_EQ(std::filesystem::path(dbglog::settingsPath().data()), expected);
}

}  // namespace
