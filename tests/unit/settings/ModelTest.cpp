#include "Model.h"

#include <algorithm>
#include <set>

#include "Allowed.h"
#include "ChangeFile.h"
#include "KeyTable.h"
#include "Notebook.h"

namespace settings {
namespace {

using support::RegistryRoom;

constexpr const wchar_t* kSeven[] = {L"Disable",         L"Position", L"EnableHover",
                                     L"MouseEnterIdle",  L"Topmost",  L"MonitorOfActiveWindow",
                                     L"HideInFullScreen"};

class Model : public Notebook {
 protected:
    // Another content than the one that is in force.
    void change(const Value& each) {
        if (each.kind == Kind::Language) {
            m_model.setText(each, L"de");
        } else if (isText(each.kind)) {
            m_model.setText(each, L"C:\\Elsewhere");
        } else {
            m_model.setNumber(each, m_model.read(each).number == each.lowest ? each.highest : each.lowest);
        }
    }
};

std::wstring functionKey(const wchar_t* name) {
    return std::wstring(regpath::kHotkeyKey) + L"\\" + name;
}

}  // namespace

TEST_F(Model, ReadsTheUsersValueWhereThereIsAKeyOfTheUser) {
    give(Root::Machine, L"Position", 1);
    EXPECT_EQ(m_model.read(value(L"Position")).number, 1U);
    give(Root::User, L"Topmost", 1);
    EXPECT_EQ(m_model.read(value(L"Position")).number, 0U) << "the default, not the machine's";
    EXPECT_EQ(m_model.read(value(L"Topmost")).number, 1U);
}

TEST_F(Model, WhatIsNotStoredHasItsDefault) {
    for (const Value& each : values()) {
        const CModel::Reading reading = m_model.read(each);
        EXPECT_EQ(reading.number, each.standard) << testing::PrintToString(std::wstring(each.name));
        EXPECT_TRUE(reading.isGood);
        EXPECT_FALSE(reading.content);
    }
}

TEST_F(Model, AUsersChangeTakesEffectAtOnceAndTakesAllSevenOver) {
    give(Root::Machine, L"MouseEnterIdle", 500);
    give(Root::Machine, L"EnableHover", 1);
    m_model.setNumber(value(L"Position"), 1);
    EXPECT_EQ(number(Root::User, L"Position"), 1U);
    EXPECT_EQ(number(Root::User, L"MouseEnterIdle"), 500U);
    EXPECT_EQ(number(Root::User, L"EnableHover"), 1U);
    for (const wchar_t* name : kSeven) {
        EXPECT_TRUE(number(Root::User, name)) << testing::PrintToString(std::wstring(name));
    }
    EXPECT_EQ(m_model.read(value(L"MouseEnterIdle")).number, 500U);
    EXPECT_FALSE(number(Root::Machine, L"Position"));
    EXPECT_TRUE(m_model.isChanged());
}

TEST_F(Model, CancelGivesAUserWithoutAKeyTheMachinesValuesAgain) {
    give(Root::Machine, L"Position", 0);
    give(Root::Machine, L"EnableHover", 1);
    m_model.setNumber(value(L"Position"), 1);
    m_model.setNumber(value(L"EnableHover"), 0);
    m_model.cancel();
    EXPECT_FALSE(m_store.hasKey(Root::User, regpath::kConfigKey));
    EXPECT_EQ(m_model.read(value(L"Position")).number, 0U);
    EXPECT_EQ(m_model.read(value(L"EnableHover")).number, 1U);
    EXPECT_FALSE(m_model.isChanged());
}

// A removed value keeps its last effect in a running Fenwyn.
TEST_F(Model, CancelWritesTheFormerEffectBeforeItRemovesAValue) {
    m_model.setNumber(value(L"Position"), 1);
    m_model.cancel();
    EXPECT_EQ(m_seenWhileSettling, std::vector<std::optional<DWORD>>{0U});
    EXPECT_FALSE(number(Root::User, L"Position"));
}

TEST_F(Model, CancelPutsBackWhatAUserHad) {
    give(Root::User, L"Position", 7);
    give(Root::User, L"MouseEnterIdle", 250);
    m_model.setNumber(value(L"Position"), 0);
    m_model.setNumber(value(L"MouseEnterIdle"), 900);
    m_model.setNumber(value(L"Position"), 1);
    m_model.cancel();
    EXPECT_EQ(number(Root::User, L"Position"), 7U);
    EXPECT_EQ(number(Root::User, L"MouseEnterIdle"), 250U);
    EXPECT_FALSE(number(Root::User, L"Topmost")) << "nothing is added";
    EXPECT_EQ(m_nSettles, 0) << "there is nothing to wait for";
}

TEST_F(Model, CancelPutsBackAValueOfTheWrongTypeAsItWas) {
    giveText(Root::User, regpath::kConfigKey, L"Position", L"left");
    m_model.setNumber(value(L"Position"), 1);
    m_model.cancel();
    EXPECT_EQ(storedText(Root::User, regpath::kConfigKey, L"Position"), L"left");
}

TEST_F(Model, ApplyKeepsWhatTookEffectAtOnce) {
    m_model.setNumber(value(L"Position"), 1);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_FALSE(m_model.isChanged());
    m_model.cancel();
    EXPECT_EQ(number(Root::User, L"Position"), 1U);
}

TEST_F(Model, MachineValuesWaitForApply) {
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_FALSE(number(Root::Machine, L"HideCaption"));
    EXPECT_EQ(m_model.read(value(L"HideCaption")).number, 1U) << "as it is to be";
    EXPECT_FALSE(m_model.needsRights());
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(number(Root::Machine, L"HideCaption"), 1U);
    EXPECT_TRUE(m_elevated.empty());
}

TEST_F(Model, AChangeThatIsTakenBackIsNone) {
    give(Root::Machine, L"HideCaption", 0);
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_TRUE(m_model.isChanged());
    m_model.setNumber(value(L"HideCaption"), 0);
    EXPECT_FALSE(m_model.isChanged());
}

TEST_F(Model, CancelDropsWhatIsPending) {
    m_model.setNumber(value(L"HideCaption"), 1);
    m_model.cancel();
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_FALSE(number(Root::Machine, L"HideCaption"));
}

TEST_F(Model, WithoutRightsTheMachinesValuesAreWrittenByAnotherProcess) {
    m_store.machineMayBeWritten = false;
    m_model.setNumber(value(L"HideCaption"), 1);
    m_model.setText(value(L"Language"), L"de");
    EXPECT_TRUE(m_model.needsRights());
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_elevated, (Changes{{{Root::Machine, regpath::kConfigKey, L"HideCaption"}, numberData(1)}}));
    EXPECT_EQ(storedText(Root::User, regpath::kProgramKey, L"Language"), L"de");
}

TEST_F(Model, WhenRightsAreRefusedNothingIsWrittenAndEverythingWaits) {
    m_store.machineMayBeWritten = false;
    m_elevatedResult = ERROR_CANCELLED;
    m_model.setNumber(value(L"HideCaption"), 1);
    m_model.setText(value(L"Language"), L"de");
    EXPECT_EQ(m_model.apply(), Applied::Refused);
    EXPECT_EQ(storedText(Root::User, regpath::kProgramKey, L"Language"), L"(nothing)");
    EXPECT_EQ(m_model.read(value(L"HideCaption")).number, 1U);
    EXPECT_TRUE(m_model.isChanged());
    m_elevatedResult = ERROR_SUCCESS;
    EXPECT_EQ(m_model.apply(), Applied::Done);
}

TEST_F(Model, AFailureOfTheOtherProcessIsTold) {
    m_store.machineMayBeWritten = false;
    m_elevatedResult = ERROR_INVALID_DATA;
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_EQ(m_model.apply(), Applied::Failed);
    EXPECT_EQ(m_model.lastError(), ERROR_INVALID_DATA);
}

TEST_F(Model, ChangesOfTheUserAloneNeedNoRights) {
    m_store.machineMayBeWritten = false;
    m_model.setNumber(value(L"Position"), 1);
    m_model.setText(value(L"Language"), L"fr");
    EXPECT_FALSE(m_model.needsRights());
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_TRUE(m_elevated.empty());
}

TEST_F(Model, ANewFunctionListRestartsARunningFenwyn) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;");
    const Place list{Root::Machine, regpath::kHotkeyKey, regpath::kFuncList};
    m_model.set(list, textData(L"Mute;"));
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nRestarts, 0) << "it does not run";
    m_bRuns = true;
    m_model.set(list, textData(L"Lock;"));
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nRestarts, 1);
    m_model.setNumber(value(L"StickyModifier"), 1);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nRestarts, 1) << "that takes effect by itself";
    m_model.set({Root::Machine, functionKey(L"Lock"), regpath::kCaption}, textData(L"Locked"));
    m_bStarts = false;
    EXPECT_EQ(m_model.apply(), Applied::NotRestarted);
    EXPECT_EQ(storedText(Root::Machine, functionKey(L"Lock"), regpath::kCaption), L"Locked");
}

// Every setting, so that a new one has to be thought of.
TEST_F(Model, WhatFenwynReadsAtItsStartOnlyRestartsIt) {
    const std::set<std::wstring> readAtTheStart = {L"HideCaption", L"Programmable", L"Language"};
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
    m_bRuns = true;
    for (const Value& each : values()) {
        change(each);
        const int before = m_nRestarts;
        EXPECT_EQ(m_model.apply(), Applied::Done);
        EXPECT_EQ(m_nRestarts - before, readAtTheStart.contains(each.name) ? 1 : 0)
            << testing::PrintToString(std::wstring(each.name));
    }
}

TEST_F(Model, CustomisedKeysWithoutAnyKeyStillLetFenwynStart) {
    const std::wstring nobodys = std::wstring(regpath::kButtonsKey) + L"\\Fenwyn_none";
    m_store.machineMayBeWritten = false;
    m_elevatedResult = ERROR_CANCELLED;
    m_model.setNumber(value(kProgrammable), 1);
    EXPECT_EQ(m_model.apply(), Applied::Refused);
    EXPECT_EQ(m_elevated.size(), 2U);
    EXPECT_TRUE(std::ranges::all_of(m_elevated, [](const auto& each) { return isAllowed(each.first, each.second); }));
    EXPECT_EQ(m_model.pending().size(), 1U);
    m_store.machineMayBeWritten = true;
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(number(Root::Machine, regpath::kIsQrdControl, nobodys.c_str()), 0U);
    const int before = m_store.writes;
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_store.writes, before + 1) << "a button is there now";
}

TEST_F(Model, TheListIsTheUsersOnlyWhereTheMachineHasNone) {
    EXPECT_EQ(m_model.listRoot(), Root::User);
    m_model.setNumber(value(L"ModifierKey"), VK_CAPITAL);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(number(Root::User, L"ModifierKey", regpath::kHotkeyKey), DWORD{VK_CAPITAL});
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"");
    EXPECT_EQ(m_model.listRoot(), Root::Machine);
}

TEST_F(Model, ChangedButtonsAreAnnounced) {
    m_model.set({Root::Machine, std::wstring(regpath::kButtonsKey) + L"\\Mail", regpath::kMakeValue}, numberData(0x3B));
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nAnnouncements, 1);
}

TEST_F(Model, SubkeysIncludeThoseThatAreToBe) {
    giveText(Root::Machine, functionKey(L"Mute"), regpath::kCaption, L"Mute");
    m_model.set({Root::Machine, functionKey(L"Lock"), regpath::kCaption}, textData(L"Lock"));
    EXPECT_EQ(m_model.subkeys(Root::Machine, regpath::kHotkeyKey), (std::vector<std::wstring>{L"Mute", L"Lock"}));
}

TEST_F(Model, BadValuesAreReadAsWhatTheyAre) {
    giveText(Root::Machine, regpath::kConfigKey, L"AutoHideDelayTime", L"soon");
    const CModel::Reading text = m_model.read(value(L"AutoHideDelayTime"));
    EXPECT_FALSE(text.isGood);
    EXPECT_EQ(text.text, L"soon");
    EXPECT_EQ(text.number, 0x006F0073U) << "the first four bytes, as Fenwyn reads them";
    give(Root::Machine, L"PluginEndTime", 0xFFFFFFFF);
    EXPECT_FALSE(m_model.read(value(L"PluginEndTime")).isGood);
    EXPECT_EQ(m_model.read(value(L"PluginEndTime")).number, 0xFFFFFFFFU);
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, regpath::kConfigKey, L"HideCaption", {1});
    EXPECT_FALSE(m_model.read(value(L"HideCaption")).isGood);
    EXPECT_EQ(m_model.read(value(L"HideCaption")).number, 0U) << "too short: the default";
    give(Root::Machine, L"Programmable", 2);
    EXPECT_TRUE(m_model.read(value(L"Programmable")).isGood) << "everything but 0 is yes";
    EXPECT_FALSE(m_model.isChanged()) << "reading repairs nothing";
}

TEST_F(Model, AGiantValueDoesNoHarm) {
    const std::vector<BYTE> giant(3 * 1024 * 1024, 0x41);
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, regpath::kConfigKey, L"SliderThumbSize", giant);
    const CModel::Reading reading = m_model.read(value(L"SliderThumbSize"));
    EXPECT_FALSE(reading.isGood);
    m_model.setNumber(value(L"SliderThumbSize"), 20);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(number(Root::Machine, L"SliderThumbSize"), 20U);
}

TEST_F(Model, ALanguageOfTheMachineHoldsUntilTheUserHasOne) {
    giveText(Root::Machine, regpath::kProgramKey, L"Language", L"de");
    EXPECT_EQ(m_model.read(value(L"Language")).text, L"de");
    m_model.setText(value(L"Language"), L"ja");
    EXPECT_EQ(m_model.read(value(L"Language")).text, L"ja");
    m_model.setText(value(L"Language"), L"");
    EXPECT_EQ(m_model.read(value(L"Language")).text, L"de");
}

TEST_F(Model, WhatIsExportedIsTakenOverOnAnotherMachine) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
    giveText(Root::Machine, functionKey(L"Mute"), regpath::kFuncDll, L"C:\\Fenwyn\\Mute.dll");
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, functionKey(L"Mute"), regpath::kCode, {0x3B, 0, 0, 0});
    give(Root::Machine, L"AutoHideDelayTime", 1234);
    give(Root::Machine, L"Position", 1);
    give(Root::Machine, L"PluginEndTime", 0xFFFFFFFF);
    m_model.set({Root::LogFile, kLogSection, L"Level"}, textData(L"2"));
    const Changes exported = m_model.everything();
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kProgramKey);
    m_model.cancel();

    m_model.takeOver(exported);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(storedText(Root::User, regpath::kHotkeyKey, regpath::kFuncList), L"Mute;") << "the user's list here";
    EXPECT_EQ(storedText(Root::User, functionKey(L"Mute"), regpath::kFuncDll), L"C:\\Fenwyn\\Mute.dll");
    EXPECT_EQ(number(Root::Machine, L"AutoHideDelayTime"), 1234U);
    EXPECT_EQ(number(Root::User, L"Position"), 1U);
    EXPECT_FALSE(number(Root::Machine, L"PluginEndTime")) << "what is not good is not handed on";
    EXPECT_EQ(storedText(Root::LogFile, kLogSection, L"Level"), L"2");
}

// Through the file, back to how everything was: what was not set is not set then.
TEST_F(Model, WhatIsExportedIsTakenBackOnTheSameMachine) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
    giveText(Root::Machine, functionKey(L"Mute"), regpath::kFuncDll, L"C:\\Fenwyn\\Mute.dll");
    give(Root::Machine, L"HideCaption", 1);
    setCustomKey(m_model, 0x3B, L"notepad.exe", L"");
    m_model.set({Root::LogFile, kLogSection, L"Level"}, textData(L"2"));
    EXPECT_EQ(m_model.apply(), Applied::Done);
    const Changes exported = m_model.everything();

    std::ranges::for_each(values(), [this](const Value& each) { change(each); });
    m_model.set({Root::Machine, functionKey(L"Mute"), regpath::kCaption}, textData(L"Silence"));
    setFunctionCodes(m_model, L"Mute", {0x3D});
    m_model.set({Root::Machine, regpath::kHotkeyKey, regpath::kFuncList}, textData(L"Mute;Lock;"));
    m_model.set({Root::LogFile, kLogSection, L"Level"}, textData(L"3"));
    m_model.set({Root::LogFile, kLogSection, L"LogFile"}, textData(L"C:\\log.txt"));
    setCustomKey(m_model, 0x3B, L"write.exe", L"x");
    setCustomKey(m_model, 0x3C, L"notepad.exe", L"");
    EXPECT_EQ(m_model.apply(), Applied::Done);
    for (const auto& [place, content] : exported) {
        const bool same = m_model.content(place) == content;
        const bool keeps = place.name == regpath::kFuncDll || place.key.find(L"Buttons") != std::wstring::npos ||
                           (place.root == Root::LogFile && !content && place.name != L"LogFile");
        EXPECT_EQ(same, keeps) << testing::PrintToString(place.name);
    }

    std::size_t line = 0;
    const std::optional<Changes> read = parseFile(fileText(exported), line);
    ASSERT_TRUE(read);
    EXPECT_TRUE(std::ranges::all_of(*read, [](const auto& each) { return isAllowed(each.first, each.second); }));
    m_model.takeOver(*read);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    for (const auto& [place, content] : exported) {
        EXPECT_EQ(m_model.stored(place), content) << testing::PrintToString(place.name);
    }
    ASSERT_EQ(customKeys(m_model).size(), 1U);
    EXPECT_EQ(customKeys(m_model)[0].program, L"notepad.exe");
    EXPECT_EQ(m_model.read(value(L"Language")).text, L"");
}

TEST_F(Model, AnImportWithoutButtonsLeavesThemAlone) {
    setCustomKey(m_model, 0x3B, L"notepad.exe", L"");
    m_model.takeOver({{{Root::Machine, regpath::kConfigKey, L"HideCaption"}, numberData(1)}});
    EXPECT_EQ(customKeys(m_model).size(), 1U);
}

TEST_F(Model, AnExportWithoutButtonsTakesThoseAwayThatCameLater) {
    const Changes exported = m_model.everything();
    setCustomKey(m_model, 0x3B, L"notepad.exe", L"");
    const std::wstring makers = std::wstring(regpath::kButtonsKey) + L"\\Mail";
    give(Root::Machine, regpath::kIsQrdControl, 1, makers.c_str());
    give(Root::Machine, regpath::kMakeFunction, 7, makers.c_str());
    give(Root::Machine, regpath::kMakeValue, 0x3C, makers.c_str());
    giveText(Root::Machine, std::wstring(regpath::kUserSettingKey) + L"\\7", regpath::kOption1, L"notepad.exe");
    giveText(Root::Machine, std::wstring(regpath::kUserSettingKey) + L"\\7", regpath::kOption2, L"");
    EXPECT_EQ(customKeys(m_model).size(), 2U);
    m_model.takeOver(exported);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_TRUE(customKeys(m_model).empty());
    EXPECT_EQ(number(Root::Machine, regpath::kMakeValue, makers.c_str()), 0x3CU) << "a button of others stays";
}

TEST_F(Model, EveryChangeIsTold) {
    int told = 0;
    m_model.watch([&] { ++told; });
    m_model.setNumber(value(L"Position"), 1);
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(told, 3);
    m_model.cancel();
    EXPECT_EQ(told, 4);
}

}  // namespace settings
