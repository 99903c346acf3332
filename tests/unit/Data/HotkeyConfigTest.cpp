#include "Data/HotkeyConfig.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Data/RegistryPaths.h"
#include "Data/ZelConfig.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace {

using support::kFileNotFound;
using support::LogCapture;
using support::RegistryRoom;
using Lines = std::vector<std::wstring>;
using Names = std::vector<std::wstring>;

class KeepingReceiver : public IEnumHotkeyConfigs {
 public:
    HRESULT processHotkeyInfo(const HotkeyInfo* pHotkeyInfo) override {
        infos.push_back(*pHotkeyInfo);
        threads.push_back(::GetCurrentThreadId());
        return E_FAIL;  // the result must not matter
    }
    std::vector<HotkeyInfo> infos;
    std::vector<DWORD> threads;
};

class HotkeyConfig : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey);
        setCaptionsHidden(0);
    }
    void TearDown() override { CZelConfig::getQrdConfig() = QrdConfig(); }

    // The record counts as loaded: this test's registry holds no configuration.
    static void setCaptionsHidden(DWORD hidden) {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, regpath::kConfigKey, L"HideCaption", hidden);
        ASSERT_EQ(CZelConfig::_initQrdConfig(CZelConfig::getQrdConfig()), S_OK);
    }
    static void setList(const std::wstring& list) {
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList, list);
    }
    static std::wstring keyOf(const std::wstring& name) { return std::wstring(regpath::kHotkeyKey) + L"\\" + name; }
    static void addFunction(const std::wstring& name, DWORD code = 0x3B) {
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, keyOf(name), regpath::kCaption, L"Caption of " + name);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, keyOf(name), regpath::kCode, code);
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, keyOf(name), regpath::kFuncDll, L"C:\\Plug-ins\\" + name + L".dll");
    }
    Names delivered() {
        EXPECT_EQ(CHotkeyConfig::enumHotkeyConfigs(&m_receiver), S_OK);
        Names names;
        for (const HotkeyInfo& info : m_receiver.infos) {
            names.push_back(info.strFuncName);
        }
        return names;
    }

    RegistryRoom m_room;
    KeepingReceiver m_receiver;
};

TEST_F(HotkeyConfig, DeliversEveryFieldOnTheCallersThread) {
    setList(L"Mute;");
    addFunction(L"Mute", 0x3C);
    EXPECT_EQ(delivered(), Names{L"Mute"});
    const HotkeyInfo& info = m_receiver.infos.at(0);
    EXPECT_EQ(info.vecCode, std::vector<DWORD>{0x3C});
    EXPECT_STREQ(info.strCaption.c_str(), L"Caption of Mute");
    EXPECT_STREQ(info.strFuncDll.c_str(), L"C:\\Plug-ins\\Mute.dll");
    EXPECT_EQ(m_receiver.threads.at(0), ::GetCurrentThreadId());
}

TEST_F(HotkeyConfig, KeepsAStoredTerminator) {
    setList(L"Mute;");
    addFunction(L"Mute");
    delivered();
    EXPECT_EQ(m_receiver.infos.at(0).strFuncDll.back(), L'\0');
    EXPECT_EQ(m_receiver.infos.at(0).strCaption.size(), std::wstring(L"Caption of Mute").size() + 1);
}

TEST_F(HotkeyConfig, OrderIsThatOfTheList) {
    setList(L"Zoom;Lock;Mute;Lock;");
    for (const wchar_t* name : {L"Lock", L"Mute", L"Zoom"}) {
        addFunction(name);
    }
    EXPECT_EQ(delivered(), (Names{L"Zoom", L"Lock", L"Mute", L"Lock"}));
}

TEST_F(HotkeyConfig, NameWithoutSemicolonIsIgnored) {
    setList(L"Mute;Lock");
    addFunction(L"Mute");
    addFunction(L"Lock");
    EXPECT_EQ(delivered(), Names{L"Mute"});
}

TEST_F(HotkeyConfig, ListWithoutStoredTerminatorIsReadTheSame) {
    const std::wstring list = L"Mute;Lock;";
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList,
                            std::vector<BYTE>(reinterpret_cast<const BYTE*>(list.data()),
                                              reinterpret_cast<const BYTE*>(list.data() + list.size())));
    addFunction(L"Mute");
    addFunction(L"Lock");
    EXPECT_EQ(delivered(), (Names{L"Mute", L"Lock"}));
}

TEST_F(HotkeyConfig, EmptyNameIsSkipped) {
    setList(L";Mute;;");
    addFunction(L"Mute");
    EXPECT_EQ(delivered(), Names{L"Mute"});
}

TEST_F(HotkeyConfig, EmptyNameMeansTheListsOwnKey) {
    setList(L";");
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kCode, 1);
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncDll, L"x.dll");
    EXPECT_EQ(delivered(), Names{L""});
}

TEST_F(HotkeyConfig, EmptyListDeliversNothingAndSucceeds) {
    setList(L"");
    EXPECT_EQ(delivered(), Names{});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList, {});
    EXPECT_EQ(delivered(), Names{});
}

TEST_F(HotkeyConfig, MissingListFails) {
    EXPECT_EQ(CHotkeyConfig::enumHotkeyConfigs(&m_receiver), kFileNotFound);
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey);
    EXPECT_EQ(CHotkeyConfig::enumHotkeyConfigs(&m_receiver), kFileNotFound);
    EXPECT_TRUE(m_receiver.infos.empty());
}

TEST_F(HotkeyConfig, MissingListIsLoggedAsAnError) {
    const LogCapture capture(0);
    EXPECT_EQ(CHotkeyConfig::enumHotkeyConfigs(&m_receiver), kFileNotFound);
    EXPECT_EQ(capture.lines(), (Lines{
                                   L"[ERR] (RegConfigAccess::GetValue): Error Code: 0x80070002",
                                   L"[ERR] (CHotkeyConfig::enumHotkeyConfigs): Error Code: 0x80070002",
                               }));
}

TEST_F(HotkeyConfig, UsersListIsReadWhereTheMachineHasNone) {
    RegistryRoom::setText(HKEY_CURRENT_USER, regpath::kHotkeyKey, regpath::kFuncList, L"Lock;");
    RegistryRoom::setDword(HKEY_CURRENT_USER, keyOf(L"Lock"), regpath::kCode, 0x3C);
    RegistryRoom::setText(HKEY_CURRENT_USER, keyOf(L"Lock"), regpath::kFuncDll, L"C:\\Own\\Lock.dll");
    EXPECT_EQ(CHotkeyConfig::listRoot(), HKEY_CURRENT_USER);
    const LogCapture capture(2);
    EXPECT_EQ(delivered(), Names{L"Lock"});
    EXPECT_STREQ(m_receiver.infos.at(0).strFuncDll.c_str(), L"C:\\Own\\Lock.dll");
    EXPECT_EQ(m_receiver.infos.at(0).vecCode, std::vector<DWORD>{0x3C});
    EXPECT_EQ(capture.count(L"[INF] (CHotkeyConfig::enumHotkeyConfigs): The machine has no function list; the user's "
                            L"own is read."),
              1U);
}

TEST_F(HotkeyConfig, UsersListIsNotLookedAtWhereTheMachineHasOne) {
    addFunction(L"Lock");
    RegistryRoom::setText(HKEY_CURRENT_USER, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;");
    RegistryRoom::setDword(HKEY_CURRENT_USER, keyOf(L"Mute"), regpath::kCode, 0x3B);
    RegistryRoom::setText(HKEY_CURRENT_USER, keyOf(L"Mute"), regpath::kFuncDll, L"C:\\Own\\Mute.dll");
    setList(L"Lock;");
    EXPECT_EQ(CHotkeyConfig::listRoot(), HKEY_LOCAL_MACHINE);
    EXPECT_EQ(delivered(), Names{L"Lock"});
    m_receiver.infos.clear();
    setList(L"");
    EXPECT_EQ(delivered(), Names{}) << "an empty list is one";
}

TEST_F(HotkeyConfig, MissingCaptionIsEmpty) {
    setList(L"Mute;");
    addFunction(L"Mute");
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"Mute"), regpath::kCaption);
    EXPECT_EQ(delivered(), Names{L"Mute"});
    EXPECT_EQ(m_receiver.infos.at(0).strCaption, L"");
}

TEST_F(HotkeyConfig, FunctionsWithoutCodeLibraryOrKeyAreSkipped) {
    setList(L"NoCode;NoDll;NoKey;Mute;");
    for (const wchar_t* name : {L"NoCode", L"NoDll", L"Mute"}) {
        addFunction(name);
    }
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"NoCode"), regpath::kCode);
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"NoDll"), regpath::kFuncDll);
    EXPECT_EQ(delivered(), Names{L"Mute"});
}

TEST_F(HotkeyConfig, SkippedFunctionLeavesOneOrTwoErrorLines) {
    setList(L"NoKey;");
    {
        const LogCapture capture(0);
        delivered();
        EXPECT_EQ(capture.lines(), (Lines{L"[ERR] (RegConfigAccess::Open): Error Code: 0x80070002",
                                          L"[ERR] (RegConfigAccess::Close): Error Code: 0x80070006"}));
    }
    setList(L"NoDll;");
    addFunction(L"NoDll");
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"NoDll"), regpath::kFuncDll);
    const LogCapture capture(0);
    delivered();
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (RegConfigAccess::GetValue): Error Code: 0x80070002"});
}

TEST_F(HotkeyConfig, WholeListLeavesNoErrorLine) {
    setList(L"Mute;Lock;");
    addFunction(L"Mute");
    addFunction(L"Lock");
    const LogCapture capture(0);
    delivered();
    EXPECT_EQ(capture.lines(), Lines{});
}

TEST_F(HotkeyConfig, HiddenCaptionsAreNotRead) {
    setCaptionsHidden(1);
    setList(L"Mute;");
    addFunction(L"Mute");
    const LogCapture capture;
    EXPECT_EQ(delivered(), Names{L"Mute"});
    EXPECT_EQ(m_receiver.infos.at(0).strCaption, L"");
    for (const std::wstring& line : capture.lines()) {
        EXPECT_EQ(line.find(L"pszName = Caption"), std::wstring::npos);
    }
}

TEST_F(HotkeyConfig, CodesKeepTheirStoredOrder) {
    setList(L"Mute;");
    addFunction(L"Mute");
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, keyOf(L"Mute"), regpath::kCode, {0x42, 0, 0, 0, 0x41, 0, 0, 0x80});
    delivered();
    EXPECT_EQ(m_receiver.infos.at(0).vecCode, (std::vector<DWORD>{0x42, 0x80000041U}));
}

TEST_F(HotkeyConfig, CodeOfZeroLengthIsAnEmptyList) {
    setList(L"Mute;");
    addFunction(L"Mute");
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, keyOf(L"Mute"), regpath::kCode, {});
    EXPECT_EQ(delivered(), Names{L"Mute"});
    EXPECT_TRUE(m_receiver.infos.at(0).vecCode.empty());
}

TEST_F(HotkeyConfig, OneFunctionsValuesDoNotLeakIntoTheNext) {
    setList(L"Mute;Lock;");
    addFunction(L"Mute");
    addFunction(L"Lock");
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"Lock"), regpath::kCaption);
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, keyOf(L"Lock"), regpath::kCode, {});
    delivered();
    EXPECT_EQ(m_receiver.infos.at(1).strCaption, L"");
    EXPECT_TRUE(m_receiver.infos.at(1).vecCode.empty());
}

TEST_F(HotkeyConfig, WrongTypesAndGiganticValuesDoNoHarm) {
    setList(std::wstring(50000, L'x') + L";" + std::wstring(300, L'\\') + L";..\\..;Mute;");
    addFunction(L"Mute");
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, keyOf(L"Mute"), regpath::kCaption, {1, 2, 3});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, keyOf(L"Mute"), regpath::kFuncDll, std::vector<BYTE>(100001, 0xCC));
    EXPECT_EQ(delivered(), Names{L"Mute"});
    EXPECT_EQ(m_receiver.infos.at(0).strCaption, std::wstring(1, L'\x0201'));
    EXPECT_EQ(m_receiver.infos.at(0).strFuncDll.size(), 50000U);
}

TEST_F(HotkeyConfig, NoReceiverIsRefused) {
    setList(L"Mute;");
    EXPECT_EQ(CHotkeyConfig::enumHotkeyConfigs(nullptr), E_POINTER);
}

}  // namespace
