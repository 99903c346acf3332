#include "common/SettingsRecipe.h"

#include <gtest/gtest.h>

#include "support/RegistryRoom.h"

namespace {

using common::Setting;
using support::RegistryRoom;

constexpr wchar_t kRecipeKey[] = L"SOFTWARE\\Fenwyn Recipe\\Inner";

class SettingsRecipe : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }
    [[nodiscard]] bool there() const { return common::settingsAreThere(HKEY_CURRENT_USER, m_settings); }
    [[nodiscard]] LSTATUS write() const { return common::writeSettings(HKEY_CURRENT_USER, m_settings); }
    [[nodiscard]] LSTATUS remove() const { return common::removeSettings(HKEY_CURRENT_USER, m_settings); }
    static DWORD number(const wchar_t* name) {
        DWORD value = 0;
        DWORD size = sizeof value;
        ::RegGetValueW(HKEY_CURRENT_USER, kRecipeKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
        return value;
    }
    static ULONGLONG longNumber(const wchar_t* name) {
        ULONGLONG value = 0;
        DWORD size = sizeof value;
        ::RegGetValueW(HKEY_CURRENT_USER, kRecipeKey, name, RRF_RT_REG_QWORD, nullptr, &value, &size);
        return value;
    }

    RegistryRoom m_room;
    std::vector<Setting> m_settings{common::textSetting(kRecipeKey, L"Text", L"words"),
                                    common::numberSetting(kRecipeKey, L"Number", 7),
                                    common::longNumberSetting(kRecipeKey, L"Time", 134000000000000000),
                                    common::numbersSetting(kRecipeKey, L"Numbers", std::vector<DWORD>{1, 2})};
};

TEST_F(SettingsRecipe, WritesRecognisesAndRemoves) {
    EXPECT_FALSE(there());
    EXPECT_EQ(write(), ERROR_SUCCESS);
    EXPECT_TRUE(there());
    EXPECT_EQ(number(L"Number"), 7U);
    EXPECT_EQ(longNumber(L"Time"), 134000000000000000U);
    EXPECT_EQ(remove(), ERROR_SUCCESS);
    EXPECT_FALSE(there());
    HKEY key = nullptr;
    EXPECT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Fenwyn Recipe", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE", 0, KEY_READ, &key), ERROR_SUCCESS) << "not ours";
    ::RegCloseKey(key);
    EXPECT_EQ(remove(), ERROR_SUCCESS) << "nothing to remove";
}

TEST_F(SettingsRecipe, KeepsWhatOthersChangedOrWrote) {
    EXPECT_EQ(write(), ERROR_SUCCESS);
    RegistryRoom::setDword(HKEY_CURRENT_USER, kRecipeKey, L"Number", 8);
    RegistryRoom::setDword(HKEY_CURRENT_USER, L"SOFTWARE\\Fenwyn Recipe", L"Other", 1);
    EXPECT_FALSE(there());
    EXPECT_EQ(remove(), ERROR_SUCCESS);
    EXPECT_EQ(number(L"Number"), 8U);
    RegistryRoom::setText(HKEY_CURRENT_USER, kRecipeKey, L"Number", L"\x07");
    EXPECT_EQ(remove(), ERROR_SUCCESS);
    EXPECT_NE(::RegDeleteKeyValueW(HKEY_CURRENT_USER, kRecipeKey, L"Number"), ERROR_FILE_NOT_FOUND)
        << "of another type";
}

TEST_F(SettingsRecipe, ValueThatKeepsWhatExistsDoesNotCount) {
    m_settings[1].keepExisting = true;
    RegistryRoom::setDword(HKEY_CURRENT_USER, kRecipeKey, L"Number", 8);
    EXPECT_EQ(write(), ERROR_SUCCESS);
    EXPECT_EQ(number(L"Number"), 8U);
    EXPECT_TRUE(there());
}

TEST_F(SettingsRecipe, FailureIsTheSystemsError) {
    m_room.refuseWrites();
    EXPECT_NE(write(), ERROR_SUCCESS);
}

}  // namespace
