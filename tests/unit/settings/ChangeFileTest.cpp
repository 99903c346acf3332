#include "ChangeFile.h"

#include "Notebook.h"

namespace settings {
namespace {

const Changes kExample = {
    {{Root::Machine, L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey\\Brightness", L"Code"}, numbersData({0x40, 0x1F0AD})},
    {{Root::Machine, L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey\\Brightness", L"Caption"},
     textData(L"\x8F1D\x5EA6 = [hell]; ")},
    {{Root::Machine, L"SOFTWARE\\KESTOVA\\Fenwyn\\Config", L"AutoHide"}, numberData(0xFFFFFFFF)},
    {{Root::User, L"SOFTWARE\\KESTOVA\\Fenwyn", L"Language"}, std::nullopt},
    {{Root::User, L"SOFTWARE\\KESTOVA\\Fenwyn", L"Empty"}, textData(L"")},
    {{Root::LogFile, L"LOG", L"Level"}, textData(L"3")},
};

std::optional<Changes> parsed(const std::wstring& lines) {
    std::size_t line = 0;
    return parseFile(L"Fenwyn settings 1\n" + lines, line);
}

}  // namespace

TEST(ChangeFile, IsReadAsItWasWritten) {
    std::size_t line = 0;
    EXPECT_EQ(parseFile(fileText(kExample), line), kExample);
}

TEST(ChangeFile, LooksAsDocumented) {
    EXPECT_EQ(fileText({{{Root::User, L"SOFTWARE\\KESTOVA\\Fenwyn\\Config", L"Position"}, numberData(1)}}),
              L"Fenwyn settings 1\r\n\r\n[User\\Fenwyn\\Config]\r\nPosition=number:1\r\n");
}

TEST(ChangeFile, MayHaveRemarksAndEmptyLines) {
    const auto changes = parsed(L"; mine\n\n[User\\Fenwyn\\Config]\r\n; more\r\nPosition=number:1\r\n");
    ASSERT_TRUE(changes);
    EXPECT_EQ(changes->size(), 1U);
}

TEST(ChangeFile, NamesTheLineThatIsWrong) {
    std::size_t line = 0;
    EXPECT_FALSE(parseFile(L"Fenwyn settings 1\n\n[User\\Fenwyn]\nLanguage=word:de\n", line));
    EXPECT_EQ(line, 4U);
    EXPECT_FALSE(parseFile(L"", line));
    EXPECT_EQ(line, 1U);
    EXPECT_FALSE(parseFile(L"Fenwyn settings 2\n", line));
    EXPECT_EQ(line, 1U);
}

TEST(ChangeFile, GarbageIsRefused) {
    for (const wchar_t* lines : {L"Position=number:1",
                                 L"[Nobody\\Fenwyn]\nA=number:1",
                                 L"[User]\nA=number:1",
                                 L"[User\\]\nA=number:1",
                                 L"[User\\Fenwyn\nA=number:1",
                                 L"[User\\Fenwyn]\nA",
                                 L"[User\\Fenwyn]\n=number:1",
                                 L"[User\\Fenwyn]\nA=",
                                 L"[User\\Fenwyn]\nA=number:",
                                 L"[User\\Fenwyn]\nA=number:-1",
                                 L"[User\\Fenwyn]\nA=number: 1",
                                 L"[User\\Fenwyn]\nA=number:4294967296",
                                 L"[User\\Fenwyn]\nA=number:99999999999",
                                 L"[User\\Fenwyn]\nA=number:0x1",
                                 L"[User\\Fenwyn]\nA=numbers:",
                                 L"[User\\Fenwyn]\nA=numbers:3B  3C",
                                 L"[User\\Fenwyn]\nA=numbers:3G",
                                 L"[User\\Fenwyn]\nA=Text:x",
                                 L"[User\\Fenwyn]\nA=none \n",
                                 L"[User\\Fenwyn]\nA=number:1\nA=number:2",
                                 L"REGEDIT4"}) {
        EXPECT_FALSE(parsed(lines)) << testing::PrintToString(std::wstring(lines));
    }
}

TEST(ChangeFile, ComesInTheUsualEncodings) {
    const support::TempFolder folder;
    const std::wstring path = (folder / L"settings.txt").wstring();
    const std::wstring text = fileText(kExample);
    std::wstring read;
    ASSERT_EQ(writeTextFile(path, text), ERROR_SUCCESS);
    ASSERT_EQ(readTextFile(path, read), ERROR_SUCCESS);
    EXPECT_EQ(read, text);
    support::TempFolder::write(folder / L"marked.txt",
                               "\xEF\xBB\xBF"
                               "a\xC3\xA4");
    ASSERT_EQ(readTextFile((folder / L"marked.txt").wstring(), read), ERROR_SUCCESS);
    EXPECT_EQ(read, L"a\x00E4");
    support::TempFolder::write(folder / L"wide.txt", std::string("\xFF\xFE"
                                                                 "a\0\xE4\0",
                                                                 6));
    ASSERT_EQ(readTextFile((folder / L"wide.txt").wstring(), read), ERROR_SUCCESS);
    EXPECT_EQ(read, L"a\x00E4");
}

TEST(ChangeFile, WhatIsNoTextOrTooLongIsRefused) {
    const support::TempFolder folder;
    std::wstring read = L"before";
    EXPECT_EQ(readTextFile((folder / L"none.txt").wstring(), read), ERROR_FILE_NOT_FOUND);
    support::TempFolder::write(folder / L"giant.txt", std::string(1024 * 1024 + 1, 'x'));
    EXPECT_EQ(readTextFile((folder / L"giant.txt").wstring(), read), ERROR_FILE_TOO_LARGE);
    EXPECT_EQ(read, L"before");
    support::TempFolder::write(folder / L"bytes.txt", "Fenwyn settings 1\n\xFF\xC0");
    ASSERT_EQ(readTextFile((folder / L"bytes.txt").wstring(), read), ERROR_SUCCESS);
    std::size_t line = 0;
    EXPECT_FALSE(parseFile(read, line));
}

}  // namespace settings
