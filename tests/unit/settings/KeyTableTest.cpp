// Keys and customised keys in the model, with a real registry.
#include "KeyTable.h"

#include "Notebook.h"
#include "ZelHotkey.h"

namespace settings {
namespace {

using Codes = std::vector<DWORD>;

class Keys : public Notebook {
 protected:
    void SetUp() override {
        Notebook::SetUp();
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;Mute;Zoom");
        give(Root::Machine, ZEL_VALUE_CODE, 0x3B, key(L"Mute").c_str());
        giveText(Root::Machine, key(L"Mute"), regpath::kCaption, L"Sound");
        support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, key(L"Lock"), ZEL_VALUE_CODE,
                                         {0x3C, 0, 0, 0, 0x64, 0x00, 0x01, 0});
    }
    static std::wstring key(const std::wstring& function) {
        return std::wstring(regpath::kHotkeyKey) + L"\\" + function;
    }
    static std::wstring button(const std::wstring& name) { return std::wstring(regpath::kButtonsKey) + L"\\" + name; }
    static std::wstring user(const std::wstring& name) { return std::wstring(regpath::kUserSettingKey) + L"\\" + name; }
    void giveButton(const wchar_t* name, DWORD function, DWORD value, DWORD ours = 1) {
        give(Root::Machine, regpath::kIsQrdControl, ours, button(name).c_str());
        give(Root::Machine, regpath::kMakeFunction, function, button(name).c_str());
        give(Root::Machine, regpath::kMakeValue, value, button(name).c_str());
    }
};

TEST_F(Keys, EveryFunctionOnceWithItsCodesAndCaption) {
    const auto functions = functionKeys(m_model);
    ASSERT_EQ(functions.size(), 2U) << "a last name without a semicolon is none";
    EXPECT_EQ(functions[0].caption, L"Sound");
    EXPECT_EQ(functions[0].codes, Codes{0x3B});
    EXPECT_EQ(functions[1].caption, L"Lock");
    EXPECT_EQ(functions[1].codes, (Codes{0x3C, 0x10064}));
}

TEST_F(Keys, CodesAreStoredAsTheProgramReadsThem) {
    setFunctionCodes(m_model, L"Mute", {0x43});
    setFunctionCodes(m_model, L"Lock", {0x3C, 0xE020});
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_store.read({Root::Machine, key(L"Mute"), ZEL_VALUE_CODE}), numberData(0x43));
    EXPECT_EQ(m_store.read({Root::Machine, key(L"Lock"), ZEL_VALUE_CODE}), numbersData({0x3C, 0xE020}));
}

TEST_F(Keys, TakenByScanCodeOrByVirtualKeyAndApartWithAndWithoutFn) {
    const auto functions = functionKeys(m_model);
    EXPECT_EQ(takenBy(functions, 0x3B, VK_F1, false), functions.data());
    EXPECT_EQ(takenBy(functions, 0x3B, VK_F1, true), nullptr);
    EXPECT_EQ(takenBy(functions, 0x64, VK_F13, true), &functions[1]);
    EXPECT_EQ(takenBy(functions, 0x64, VK_F13, false), nullptr);
    EXPECT_EQ(takenBy(functions, 0, 0xFF, false), nullptr);
    setFunctionCodes(m_model, L"Mute", {ZEL_CODE_VIRTUAL_KEY | VK_F13});
    EXPECT_EQ(takenBy(functionKeys(m_model), 0x64, VK_F13, false)->name, L"Mute");
}

TEST_F(Keys, TrackerGetsWhatIsPending) {
    setKeyNumber(m_model, ZEL_VALUE_MODIFIER_KEY, VK_CONTROL);
    setKeyNumber(m_model, ZEL_VALUE_STICKY_MODIFIER, 1);
    setFunctionCodes(m_model, L"Mute", {0xE020, 0});
    const hotkey::TrackerSettings settings = trackerSettings(m_model);
    EXPECT_EQ(settings.modifierKey, DWORD{VK_RCONTROL});
    EXPECT_TRUE(settings.sticky);
    EXPECT_TRUE(settings.listed.test(0x120) && settings.listed.test(0x3C) && settings.alone.test(0x64));
    EXPECT_EQ(settings.listed.count(), 2U) << "code 0 is no key";
}

TEST_F(Keys, CustomKeysAreThoseWithAProgram) {
    giveButton(L"B1", 7, 0x1C1);
    giveButton(L"B2", 8, 0x42, 0);
    giveButton(L"B3", 9, 0x43);
    giveText(Root::Machine, user(L"7"), regpath::kOption1, L"calc.exe");
    giveText(Root::Machine, user(L"7"), regpath::kOption2, L"");
    giveText(Root::Machine, user(L"8"), regpath::kOption1, L"a.exe");
    giveText(Root::Machine, user(L"8"), regpath::kOption2, L"");
    giveText(Root::Machine, user(L"9"), regpath::kOption1, L"no parameters");
    const auto keys = customKeys(m_model);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys[0].code, 0x41U);
    EXPECT_EQ(keys[0].program, L"calc.exe");
}

TEST_F(Keys, NewCustomKeyIsWhatFenwynReadsAndGoesWithoutATrace) {
    setCustomKey(m_model, 0x43, L"calc.exe", L"/a");
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nAnnouncements, 1);
    auto keys = customKeys(m_model);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys[0].parameters, L"/a");
    removeCustomKey(m_model, keys[0]);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_TRUE(customKeys(m_model).empty());
    EXPECT_EQ(storedText(Root::Machine, button(keys[0].button), regpath::kMakeValue), L"(nothing)");
}

TEST_F(Keys, ButtonOfTheUtilityIsUsedAndStays) {
    giveButton(L"B3", 9, 0x43);
    setCustomKey(m_model, 0x43, L"calc.exe", L"");
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(storedText(Root::Machine, user(L"9"), regpath::kOption1), L"calc.exe");
    removeCustomKey(m_model, customKeys(m_model).at(0));
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(number(Root::Machine, regpath::kMakeValue, button(L"B3").c_str()), 0x43U);
    EXPECT_TRUE(customKeys(m_model).empty());
}

}  // namespace
}  // namespace settings
