#include "Logic/CustomHotkey.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Data/RegistryPaths.h"
#include "Logic/HbqNotify.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"
#include "support/TempFolder.h"

namespace {

using support::LogCapture;
using support::RegistryRoom;
using Lines = std::vector<std::wstring>;

struct Button {
    const wchar_t* name;
    DWORD isQrdControl = 1;
    DWORD makeFunction = 7;
    DWORD makeValue = 0x41;
};

class CustomHotkey : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kButtonsKey);
        RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kUserSettingKey);
    }
    static std::wstring buttonKey(const std::wstring& name) {
        return std::wstring(regpath::kButtonsKey) + L"\\" + name;
    }
    static std::wstring userKey(const std::wstring& function) {
        return std::wstring(regpath::kUserSettingKey) + L"\\" + function;
    }
    static void add(const Button& button) {
        const std::wstring key = buttonKey(button.name);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, key, regpath::kIsQrdControl, button.isQrdControl);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, key, regpath::kMakeFunction, button.makeFunction);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, key, regpath::kMakeValue, button.makeValue);
    }
    static void choose(const std::wstring& function, const std::wstring& file, const std::wstring& param = L"") {
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, userKey(function), regpath::kOption1, file);
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, userKey(function), regpath::kOption2, param);
    }
    // The codes below 256 that are customised after a rebuild.
    std::vector<DWORD> customized() {
        EXPECT_EQ(m_hotkeys.getCustomizedHotkeys(), S_OK);
        std::vector<DWORD> codes;
        for (DWORD code = 0; code < 256; ++code) {
            if (m_hotkeys.isHotkeyCustomized(code)) {
                codes.push_back(code);
            }
        }
        return codes;
    }

    RegistryRoom m_room;
    CCustomHotkey m_hotkeys;
};

using Codes = std::vector<DWORD>;

TEST_F(CustomHotkey, ButtonWithAUserSettingIsCustomized) {
    add({L"B1"});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
}

TEST_F(CustomHotkey, NothingIsCustomizedBeforeTheListIsBuilt) {
    EXPECT_FALSE(m_hotkeys.isHotkeyCustomized(0));
}

TEST_F(CustomHotkey, ButtonOfOthersIsNeverCustomized) {
    add({.name = L"B1", .isQrdControl = 0});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{});
}

TEST_F(CustomHotkey, ButtonWithoutUserSettingIsNotCustomized) {
    add({.name = L"B1", .makeFunction = 8});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{});
}

TEST_F(CustomHotkey, OnlyTheLowSevenBitsAreTheCode) {
    add({.name = L"B1", .makeValue = 0x1C1});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
}

TEST_F(CustomHotkey, FunctionNumberIsASignedDecimal) {
    add({.name = L"B1", .makeFunction = 0xFFFFFFFFU});
    choose(L"-1", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
}

TEST_F(CustomHotkey, EveryMissingValueSkipsItsButtonOnly) {
    const wchar_t* names[] = {regpath::kIsQrdControl, regpath::kMakeFunction, regpath::kMakeValue};
    for (const wchar_t* missing : names) {
        add({.name = missing, .makeValue = 0x10});
        RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, buttonKey(missing), missing);
    }
    add({.name = L"Whole"});
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, buttonKey(L"Empty"));
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
}

TEST_F(CustomHotkey, BothTextsAreNeeded) {
    for (const wchar_t* missing : {regpath::kOption1, regpath::kOption2}) {
        add({L"B1"});
        choose(L"7", L"notepad.exe", L"a.txt");
        EXPECT_EQ(customized(), Codes{0x41});
        RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, userKey(L"7"), missing);
        EXPECT_EQ(customized(), Codes{});
    }
}

TEST_F(CustomHotkey, RebuildForgetsWhatIsGone) {
    add({L"B1"});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, userKey(L"7"));
    EXPECT_EQ(customized(), Codes{});
}

TEST_F(CustomHotkey, MissingButtonsFailAndKeepTheList) {
    add({L"B1"});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kButtonsKey);
    const LogCapture capture(0);
    EXPECT_EQ(m_hotkeys.getCustomizedHotkeys(), E_FAIL);
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (CCustomHotkey::getCustomizedHotkeys): Error Code: 0x80004005"});
    EXPECT_TRUE(m_hotkeys.isHotkeyCustomized(0x41));
}

TEST_F(CustomHotkey, MissingUserSettingsAreNotedAndNothingIsCustomized) {
    add({L"B1"});
    choose(L"7", L"notepad.exe");
    EXPECT_EQ(customized(), Codes{0x41});
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kUserSettingKey);
    const LogCapture capture(0);
    EXPECT_EQ(m_hotkeys.getCustomizedHotkeys(), S_OK);
    EXPECT_EQ(capture.lines(),
              Lines{L"[ERR] (CCustomHotkey::getCustomizedHotkeys): ASSERT( regUserSetting.IsOpen() )"});
    EXPECT_FALSE(m_hotkeys.isHotkeyCustomized(0x41));
}

Lines withoutScopes(Lines lines) {
    std::erase_if(lines, [](const std::wstring& line) {
        return line.find(L": ENTER ") != std::wstring::npos || line.find(L": LEAVE ") != std::wstring::npos;
    });
    return lines;
}

TEST_F(CustomHotkey, BuildingAndAskingSayWhatTheyFind) {
    add({L"B1"});
    choose(L"7", L"C:\\a.exe", L"-x");
    const LogCapture capture;
    EXPECT_EQ(m_hotkeys.getCustomizedHotkeys(), S_OK);
    EXPECT_TRUE(m_hotkeys.isHotkeyCustomized(0x41));
    EXPECT_EQ(
        withoutScopes(capture.lines()),
        (Lines{
            L"[TRC] (CCustomHotkey::getCustomizedHotkeys): *button = B1",
            L"[TRC] (CCustomHotkey::_readButton): nFuncCode = 7",
            L"[INF] (CCustomHotkey::_readButton): Hotkey is customized.",
            L"[INF] (CCustomHotkey::readCustomHotkeyInfo): Custom hotkey info: code-65, file-C:\\a.exe, param--x.",
            L"[INF] (CCustomHotkey::isHotkeyCustomized): Hotkey 65 is customized.",
        }));
}

TEST_F(CustomHotkey, MissingFileGivesTheShellsSmallErrorNumber) {
    add({L"B1"});
    choose(L"7", L"C:\\no such folder\\no such program.exe");
    EXPECT_EQ(customized(), Codes{0x41});
    const LogCapture capture(0);
    const HRESULT status = m_hotkeys.handleHotkey(0x41);
    EXPECT_TRUE(status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) << status;
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (CCustomHotkey::handleHotkey): Error Code: 0x" + std::to_wstring(status)});
}

TEST_F(CustomHotkey, UnknownCodeIsABrokenExpectation) {
    const LogCapture capture(0);
    EXPECT_EQ(m_hotkeys.handleHotkey(0x41), E_FAIL);
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (CCustomHotkey::handleHotkey): ASSERT( !\"Should never get to here.\" )"});
}

bool appears(const std::filesystem::path& file) {
    const ULONGLONG deadline = ::GetTickCount64() + 20000;
    while (!std::filesystem::exists(file)) {
        if (::GetTickCount64() > deadline) {
            return false;
        }
        ::Sleep(10);
    }
    return true;
}

std::wstring makeFolder(const std::filesystem::path& folder) {
    return L"/c md \"" + folder.wstring() + L"\"";
}

TEST_F(CustomHotkey, StartsTheProgramWithItsParameters) {
    const support::TempFolder folder;
    add({L"B1"});
    choose(L"7", L"cmd.exe", makeFolder(folder / L"started"));
    EXPECT_EQ(customized(), Codes{0x41});
    const LogCapture capture(2);
    EXPECT_EQ(m_hotkeys.handleHotkey(0x41), S_OK);
    EXPECT_TRUE(appears(folder / L"started"));
    EXPECT_EQ(capture.lines(), Lines{L"[INF] (CCustomHotkey::handleHotkey): File:cmd.exe, param:" +
                                     makeFolder(folder / L"started") + L"."});
}

TEST_F(CustomHotkey, FirstFoundButtonWinsOverOthersOfItsCode) {
    const support::TempFolder folder;
    add({.name = L"A first", .makeFunction = 1});
    add({.name = L"B second", .makeFunction = 2});
    choose(L"1", L"cmd.exe", makeFolder(folder / L"first"));
    choose(L"2", L"cmd.exe", makeFolder(folder / L"second"));
    EXPECT_EQ(customized(), Codes{0x41});
    EXPECT_EQ(m_hotkeys.handleHotkey(0x41), S_OK);
    EXPECT_TRUE(appears(folder / L"first"));
    EXPECT_FALSE(std::filesystem::exists(folder / L"second"));
}

TEST_F(CustomHotkey, GarbageInTheKeysDoesNoHarm) {
    add({L"B1"});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, buttonKey(L"B1"), regpath::kMakeFunction, std::vector<BYTE>(5000, 1));
    add({.name = L"B2", .makeFunction = 9});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, userKey(L"9"), regpath::kOption1, {1});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, userKey(L"9"), regpath::kOption2, {});
    add({.name = L"B3", .makeFunction = 10});
    choose(L"10", std::wstring(40000, L'f'), std::wstring(40000, L'%'));
    EXPECT_EQ(customized(), Codes{0x41}) << "only the third button has readable texts";
    EXPECT_EQ(m_hotkeys.handleHotkey(0x41), 2) << "no file has such a name";
}

TEST_F(CustomHotkey, LongAddressReachesTheShell) {
    add({L"B1"});
    for (const std::size_t length : {std::size_t{259}, std::size_t{260}, std::size_t{900}}) {
        const std::wstring scheme = L"fenwyn-no-such-scheme:";
        choose(L"7", scheme + std::wstring(length - scheme.size(), L'a'));
        EXPECT_EQ(customized(), Codes{0x41});
        EXPECT_EQ(m_hotkeys.handleHotkey(0x41), SE_ERR_NOASSOC) << "the shell's own answer to " << length;
    }
}

// No shell on the test system starts a program by such a path; the log shows that it was called.
TEST_F(CustomHotkey, LongExtendedPathReachesTheShell) {
    add({L"B1"});
    choose(L"7", L"\\\\?\\C:\\" + std::wstring(300, L'd') + L"\\started.exe");
    EXPECT_EQ(customized(), Codes{0x41});
    const LogCapture capture(0);
    const HRESULT status = m_hotkeys.handleHotkey(0x41);
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (CCustomHotkey::handleHotkey): Error Code: 0x" + std::to_wstring(status)});
}

TEST_F(CustomHotkey, WhatNoShellSurvivesIsRefusedAndLogged) {
    add({L"B1"});
    choose(L"7", L"http://" + std::wstring(5000, L'a'));
    EXPECT_EQ(customized(), Codes{0x41});
    const LogCapture capture(0);
    EXPECT_EQ(m_hotkeys.handleHotkey(0x41), SE_ERR_FNF);
    EXPECT_EQ(capture.lines(),
              (Lines{L"[ERR] (common::startByShell): 5007 characters are more than the shell takes as a file.",
                     L"[ERR] (CCustomHotkey::handleHotkey): Error Code: 0x2"}));
}

TEST(HbqNotify, NumberIsTheRegisteredMessageOfItsName) {
    const UINT message = hbqNotifyMessage();
    EXPECT_GE(message, 0xC000U);
    EXPECT_EQ(message, ::RegisterWindowMessageW(L"KESTOVA_HBQ_NOTIFY_5B0C7D2A-3E41-4F8B-9A16-2C7E0D94B1F3"));
    EXPECT_EQ(message, hbqNotifyMessage());
}

}  // namespace
