#include "HotkeySettings.h"

#include <gtest/gtest.h>

#include "include/ZelHotkey.h"
#include "support/RegistryRoom.h"

namespace {

class HotkeySettings : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    static void addFunction(const std::wstring& name, const std::vector<BYTE>& code) {
        const std::wstring key = ZEL_REG_HOTKEY + (L"\\" + name);
        support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, key, ZEL_VALUE_CODE, code);
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, key, ZEL_VALUE_FUNC_DLL, L"any.dll");
    }
    static void setList(const std::wstring& list) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list);
    }
    static void setNumber(const wchar_t* name, DWORD value) {
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, name, value);
    }
    static std::vector<DWORD> listed() { return codesOf(hotkey::readTrackerSettings().listed); }
    static std::vector<DWORD> alone() { return codesOf(hotkey::readTrackerSettings().alone); }
    static std::vector<DWORD> codesOf(const keyboard::KeySet& keys) {
        std::vector<DWORD> codes;
        for (std::size_t slot = 0; slot < keyboard::kKeySlots; ++slot) {
            if (keys.test(slot)) {
                codes.push_back(keyboard::codeOfSlot(slot));
            }
        }
        return codes;
    }
    using Codes = std::vector<DWORD>;

    support::RegistryRoom m_room;
};

}  // namespace

TEST_F(HotkeySettings, MissingKeyMeansDefaults) {
    const hotkey::TrackerSettings settings = hotkey::readTrackerSettings();
    EXPECT_EQ(settings.modifierKey, static_cast<DWORD>(VK_RCONTROL));
    EXPECT_FALSE(settings.sticky);
    EXPECT_TRUE(settings.listed.none());
}

TEST_F(HotkeySettings, ListNamesTheCodesOfItsFunctions) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    addFunction(L"Lock", {0x3C, 0, 0, 0, 0x4B, 0xE0, 0, 0});
    addFunction(L"Other", {0x3D, 0, 0, 0});
    setList(L"Mute;Lock;");
    EXPECT_EQ(listed(), (Codes{0x3B, 0x3C, 0xE04B}));
}

TEST_F(HotkeySettings, NumberStoredAsDwordIsOneCode) {
    addFunction(L"Mute", {});
    setList(L"Mute;");
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", ZEL_VALUE_CODE, 0x57);
    EXPECT_EQ(listed(), Codes{0x57});
}

TEST_F(HotkeySettings, NameWithoutItsSemicolonIsNotInTheList) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    addFunction(L"Lock", {0x3C, 0, 0, 0});
    setList(L"Mute;Lock");
    EXPECT_EQ(listed(), Codes{0x3B});
}

TEST_F(HotkeySettings, EmptyAndUnknownNamesAreSkipped) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    setList(L";;Nothing;Mute;");
    EXPECT_EQ(listed(), Codes{0x3B});
}

TEST_F(HotkeySettings, FunctionWithoutLibraryIsNotInTheList) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    support::RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", ZEL_VALUE_FUNC_DLL);
    setList(L"Mute;");
    EXPECT_EQ(listed(), Codes{});
}

TEST_F(HotkeySettings, CodesThatNoKeyHasAreIgnored) {
    addFunction(L"Mute", {0, 0, 0, 0, 0, 1, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x3B, 0, 0, 0, 0x3C, 0, 0});
    setList(L"Mute;");
    EXPECT_EQ(listed(), Codes{0x3B}) << "zero, too large, and a rest below four bytes";
}

TEST_F(HotkeySettings, CodesSayWhichKeysNeedNoModifier) {
    addFunction(L"Mute", {0x20, 0xE0, 1, 0, 0x3B, 0, 0, 0});
    addFunction(L"Zoom", {0xB7, 0xF0, 1, 0, 0xB9, 0xF0, 0, 0, 0x64, 0, 1, 0});
    setList(L"Mute;Zoom;");
    EXPECT_EQ(listed(), (Codes{0x3B, 0xF0B9}));
    EXPECT_EQ(alone(), (Codes{0x64, 0xE020, 0xF0B7}));
}

TEST_F(HotkeySettings, WithoutTheModifierNoImpossibleKeyCountsEither) {
    addFunction(L"Mute", {0, 0, 1, 0, 0x64, 0, 3, 0, 0, 0xE0, 1, 0, 0, 0xF0, 1, 0, 0x64, 0, 1, 0x80});
    setList(L"Mute;");
    EXPECT_EQ(alone(), Codes{});
    EXPECT_EQ(listed(), Codes{});
}

TEST_F(HotkeySettings, KeysWithoutTheModifierAreLeftAloneWhileDisabled) {
    addFunction(L"Mute", {0x20, 0xE0, 1, 0, 0x3B, 0, 0, 0});
    setList(L"Mute;");
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, ZEL_VALUE_DISABLE, 1);
    EXPECT_EQ(alone(), Codes{});
    EXPECT_EQ(listed(), Codes{0x3B});
    support::RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_CONFIG, ZEL_VALUE_DISABLE, 0);
    EXPECT_EQ(alone(), Codes{0xE020}) << "the user's key hides the machine's";
}

TEST_F(HotkeySettings, ReleaseDelayHasADefaultAndALimit) {
    EXPECT_EQ(hotkey::readTrackerSettings().releaseDelay, 1000u);
    setList(L"");
    EXPECT_EQ(hotkey::readTrackerSettings().releaseDelay, 1000u);
    for (const auto& [stored, expected] : {std::pair{0u, 0u}, {250u, 250u}, {60001u, 60000u}, {~0u, 60000u}}) {
        setNumber(ZEL_VALUE_RELEASE_DELAY, stored);
        EXPECT_EQ(hotkey::readTrackerSettings().releaseDelay, expected) << stored;
    }
}

TEST_F(HotkeySettings, GarbageIsHarmless) {
    support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, {0x41, 0x00, 0x3B});
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY, L"");
    support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_STICKY_MODIFIER, {1});
    const hotkey::TrackerSettings settings = hotkey::readTrackerSettings();
    EXPECT_EQ(settings.modifierKey, static_cast<DWORD>(VK_RCONTROL));
    EXPECT_FALSE(settings.sticky);
    EXPECT_TRUE(settings.listed.none());
}

TEST_F(HotkeySettings, GiganticListIsReadInNoTime) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    std::wstring list = L"Mute;";
    for (int i = 0; i < 200000; ++i) {
        list += L"x;";
    }
    setList(list);
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(listed(), Codes{0x3B});
    EXPECT_LT(::GetTickCount64() - start, 2000u);
}

TEST_F(HotkeySettings, ListBeyondTheLimitCountsAsMissing) {
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    setList(L"Mute;" + std::wstring(600 * 1024, L'x'));
    EXPECT_EQ(listed(), Codes{});
}

TEST_F(HotkeySettings, ModifierIsReadAndSidesAreChosen) {
    struct Row {
        DWORD stored;
        DWORD expected;
    };
    constexpr Row kRows[] = {{VK_F13, VK_F13},      {VK_LMENU, VK_LMENU},  {VK_CONTROL, VK_RCONTROL},
                             {VK_SHIFT, VK_RSHIFT}, {VK_MENU, VK_RMENU},   {0, VK_RCONTROL},
                             {0xFF, VK_RCONTROL},   {0xA3A3, VK_RCONTROL}, {0xFFFFFFFF, VK_RCONTROL},
                             {0xFE, 0xFE}};
    for (const Row& row : kRows) {
        setNumber(ZEL_VALUE_MODIFIER_KEY, row.stored);
        EXPECT_EQ(hotkey::readTrackerSettings().modifierKey, row.expected) << std::hex << row.stored;
    }
}

TEST_F(HotkeySettings, UsersListCountsWithItsSettingsWhereTheMachineHasNone) {
    setNumber(ZEL_VALUE_MODIFIER_KEY, VK_F13);
    const auto addOwn = [](const wchar_t* name, DWORD code) {
        const std::wstring key = ZEL_REG_HOTKEY + (L"\\" + std::wstring(name));
        support::RegistryRoom::setDword(HKEY_CURRENT_USER, key, ZEL_VALUE_CODE, code);
        support::RegistryRoom::setText(HKEY_CURRENT_USER, key, ZEL_VALUE_FUNC_DLL, L"any.dll");
    };
    addOwn(L"Lock", 0x3C);
    support::RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY, VK_RMENU);
    EXPECT_EQ(hotkey::readTrackerSettings().modifierKey, static_cast<DWORD>(VK_F13)) << "no list anywhere yet";
    support::RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Lock;");
    EXPECT_EQ(listed(), Codes{0x3C});
    EXPECT_EQ(hotkey::readTrackerSettings().modifierKey, static_cast<DWORD>(VK_RMENU));
    addFunction(L"Mute", {0x3B, 0, 0, 0});
    setList(L"Mute;");
    EXPECT_EQ(listed(), Codes{0x3B}) << "the machine's list wins";
    EXPECT_EQ(hotkey::readTrackerSettings().modifierKey, static_cast<DWORD>(VK_F13));
}

TEST_F(HotkeySettings, StickinessIsOffUnlessSwitchedOn) {
    setNumber(ZEL_VALUE_STICKY_MODIFIER, 0);
    EXPECT_FALSE(hotkey::readTrackerSettings().sticky);
    setNumber(ZEL_VALUE_STICKY_MODIFIER, 1);
    EXPECT_TRUE(hotkey::readTrackerSettings().sticky);
}
