#include "Data/ZelConfig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Data/RegistryPaths.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace {

using regpath::kConfigKey;
using support::kFileNotFound;
using support::LogCapture;
using support::RegistryRoom;
using Lines = std::vector<std::wstring>;

constexpr wchar_t kLoad[] = L"(CZelConfig::_initQrdConfig)";

struct Field {
    const wchar_t* name;
    CConfigValue QrdConfig::*member;
    DWORD defaultValue;
    bool perUser;
};

// In reading order.
const std::vector<Field> kFields = {
    {L"Disable", &QrdConfig::bDisable, 0, true},
    {L"Position", &QrdConfig::uPosition, 0, true},
    {L"EnableHover", &QrdConfig::bEnableHover, 0, true},
    {L"MouseEnterIdle", &QrdConfig::uMouseEnterIdle, 0, true},
    {L"Topmost", &QrdConfig::bTopmost, 0, true},
    {L"MonitorOfActiveWindow", &QrdConfig::bMonitorOfActiveWindow, 0, true},
    {L"HideInFullScreen", &QrdConfig::bHideInFullScreen, 0, true},
    {L"HideMainDlg", &QrdConfig::bHideMainDlg, 0, false},
    {L"IgnoreFnKey", &QrdConfig::bIgnoreFnKey, 0, false},
    {L"AutoHide", &QrdConfig::bAutoHide, 0, false},
    {L"AutoHideDelayTime", &QrdConfig::uAutoHideDelayTime, 2000, false},
    {L"HideCaption", &QrdConfig::bHideCaption, 0, false},
    {L"Programmable", &QrdConfig::bProgrammable, 0, false},
    {L"ShowQrdAtLaunch", &QrdConfig::bShowQrdAtLaunch, 0, false},
    {L"AlwaysShowItemsCaption", &QrdConfig::bAlwaysShowItemsCaption, 0, false},
    {L"ItemDescMaxWidth", &QrdConfig::uItemDescMaxWidth, 100, false},
    {L"SliderThumbSize", &QrdConfig::uSliderThumbSize, 20, false},
    {L"HideMainUIWhenLostFocus", &QrdConfig::bHideMainUIWhenLostFocus, 0, false},
    {L"PluginPatience", &QrdConfig::uPluginPatience, 3000, false},
    {L"PluginEndTime", &QrdConfig::uPluginEndTime, 20000, false},
};

DWORD rowOf(CConfigValue QrdConfig::*member) {
    return static_cast<DWORD>(
        std::ranges::find_if(kFields, [member](const Field& field) { return field.member == member; }) -
        kFields.begin());
}

std::vector<DWORD> valuesOf(const QrdConfig& config) {
    std::vector<DWORD> values;
    for (const Field& field : kFields) {
        values.push_back(config.*field.member);
    }
    return values;
}

std::vector<DWORD> defaults() {
    std::vector<DWORD> values;
    for (const Field& field : kFields) {
        values.push_back(field.defaultValue);
    }
    return values;
}

class ZelConfig : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    // Every setting has the value base + its row.
    static void setAll(HKEY root, DWORD base) {
        for (std::size_t i = 0; i < kFields.size(); ++i) {
            RegistryRoom::setDword(root, kConfigKey, kFields[i].name, base + static_cast<DWORD>(i));
        }
    }

    RegistryRoom m_room;
};

TEST_F(ZelConfig, NewRecordHoldsTheDefaults) {
    const QrdConfig config;
    EXPECT_EQ(valuesOf(config), defaults());
    EXPECT_EQ(config.bLoaded, 0U);
}

TEST_F(ZelConfig, FieldsLieInTheOrderOfTheRecord) {
    struct Raw {
        DWORD values[21];
    };
    static_assert(sizeof(QrdConfig) == sizeof(Raw));
    QrdConfig config;
    CConfigValue* const expected[] = {&config.bDisable,
                                      &config.uPosition,
                                      &config.bEnableHover,
                                      &config.uMouseEnterIdle,
                                      &config.bTopmost,
                                      &config.bHideMainDlg,
                                      &config.bIgnoreFnKey,
                                      &config.bAutoHide,
                                      &config.uAutoHideDelayTime,
                                      &config.bProgrammable,
                                      &config.bHideCaption,
                                      &config.bShowQrdAtLaunch,
                                      &config.bAlwaysShowItemsCaption,
                                      &config.uItemDescMaxWidth,
                                      &config.uSliderThumbSize,
                                      &config.bHideMainUIWhenLostFocus,
                                      &config.bLoaded,
                                      &config.bMonitorOfActiveWindow,
                                      &config.bHideInFullScreen,
                                      &config.uPluginPatience,
                                      &config.uPluginEndTime};
    EXPECT_TRUE(std::ranges::is_sorted(expected));
}

TEST_F(ZelConfig, MachineKeyGivesEverythingWithoutAUserKey) {
    setAll(HKEY_LOCAL_MACHINE, 1000);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    std::vector<DWORD> expected(kFields.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        expected[i] = 1000 + static_cast<DWORD>(i);
    }
    EXPECT_EQ(valuesOf(config), expected);
    EXPECT_EQ(config.bLoaded, 1U);
}

TEST_F(ZelConfig, UserKeyOverridesItsSixOnly) {
    setAll(HKEY_LOCAL_MACHINE, 1000);
    setAll(HKEY_CURRENT_USER, 5000);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        EXPECT_EQ(config.*kFields[i].member, (kFields[i].perUser ? 5000 : 1000) + static_cast<DWORD>(i));
    }
}

TEST_F(ZelConfig, UserDisableWinsOverTheMachines) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kConfigKey, L"Disable", 0);
    RegistryRoom::setDword(HKEY_CURRENT_USER, kConfigKey, L"Disable", 1);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(config.bDisable, 1U);
}

TEST_F(ZelConfig, UserKeyThatLacksAValueDoesNotFallBackToTheMachine) {
    setAll(HKEY_LOCAL_MACHINE, 1000);
    RegistryRoom::setDword(HKEY_CURRENT_USER, kConfigKey, L"Topmost", 1);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(config.bDisable, 0U);
    EXPECT_EQ(config.uPosition, 0U);
    EXPECT_EQ(config.bEnableHover, 0U);
    EXPECT_EQ(config.uMouseEnterIdle, 0U);
    EXPECT_EQ(config.bTopmost, 1U);
}

TEST_F(ZelConfig, BinaryValueIsALittleEndianNumber) {
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, kConfigKey, L"AutoHideDelayTime", {0x10, 0x27, 0, 0});
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(config.uAutoHideDelayTime, 10000U);
}

TEST_F(ZelConfig, MachineKeyMissingBesideAUserKeyLoadsTheSevenAndFails) {
    setAll(HKEY_CURRENT_USER, 5000);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), kFileNotFound);
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        EXPECT_EQ(config.*kFields[i].member,
                  kFields[i].perUser ? 5000 + static_cast<DWORD>(i) : kFields[i].defaultValue);
    }
    EXPECT_EQ(config.bLoaded, 0U) << "the next access tries again";
}

TEST_F(ZelConfig, NoKeyAtAllLeavesTheRecordUnchanged) {
    QrdConfig config;
    config.uPosition = 9;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), kFileNotFound);
    EXPECT_EQ(config.uPosition, 9U);
    EXPECT_EQ(config.bLoaded, 0U);
}

TEST_F(ZelConfig, ReloadKeepsTheLastValueOfWhatWasRemoved) {
    setAll(HKEY_LOCAL_MACHINE, 1000);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, kConfigKey, L"Disable");
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, kConfigKey, L"SliderThumbSize");
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kConfigKey, L"Position", 1);
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(config.bDisable, 1000U);
    EXPECT_EQ(config.uSliderThumbSize, 1000 + rowOf(&QrdConfig::uSliderThumbSize));
    EXPECT_EQ(config.uPosition, 1U);
}

TEST_F(ZelConfig, FailedReloadKeepsTheValuesAndTheLoadedFlag) {
    setAll(HKEY_LOCAL_MACHINE, 1000);
    QrdConfig config;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    const std::vector<DWORD> before = valuesOf(config);
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, kConfigKey);
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), kFileNotFound);
    EXPECT_EQ(valuesOf(config), before);
    EXPECT_EQ(config.bLoaded, 1U);
}

// The order is visible in the log.
TEST_F(ZelConfig, ValuesAreReadInTheOrderOfTheLoad) {
    setAll(HKEY_LOCAL_MACHINE, 1);
    QrdConfig config;
    const LogCapture capture;
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    const std::wstring prefix = L"[TRC] (RegConfigAccess::GetValue): pszName = ";
    Lines names;
    for (const std::wstring& line : capture.lines()) {
        if (line.starts_with(prefix)) {
            names.push_back(line.substr(prefix.size()));
        }
    }
    Lines expected;
    for (const Field& field : kFields) {
        expected.push_back(field.name);
    }
    EXPECT_EQ(names, expected);
}

TEST_F(ZelConfig, WholeLoadWithoutUserKeyLogsOnlyTheMissingKey) {
    setAll(HKEY_LOCAL_MACHINE, 1);
    QrdConfig config;
    const LogCapture capture(0);
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(capture.lines(), Lines{L"[ERR] (RegConfigAccess::Open): Error Code: 0x80070002"});
}

TEST_F(ZelConfig, MissingKeysAreLoggedWithTheMachinesError) {
    QrdConfig config;
    const LogCapture capture(0);
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), kFileNotFound);
    const std::wstring load = std::wstring(L"[ERR] ") + kLoad + L": Error Code: 0x80070002";
    const Lines lines = capture.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), load), 1);
}

// One test for the record of the process, because there is only one record: missing key, retry, load, no further load.
TEST_F(ZelConfig, ProcessRecordIsLoadedOnAccessUntilALoadCompletes) {
    QrdConfig& config = CZelConfig::getQrdConfig();
    EXPECT_EQ(valuesOf(config), defaults());
    EXPECT_EQ(config.bLoaded, 0U);

    RegistryRoom::setDword(HKEY_CURRENT_USER, kConfigKey, L"Disable", 1);
    EXPECT_EQ(&CZelConfig::getQrdConfig(), &config);
    EXPECT_EQ(config.bDisable, 1U) << "every access tries again";
    EXPECT_EQ(config.bLoaded, 0U);

    setAll(HKEY_LOCAL_MACHINE, 1000);
    CZelConfig::getQrdConfig();
    EXPECT_EQ(config.bLoaded, 1U);
    EXPECT_EQ(config.uAutoHideDelayTime, 1000 + rowOf(&QrdConfig::uAutoHideDelayTime));

    setAll(HKEY_LOCAL_MACHINE, 3000);
    CZelConfig::getQrdConfig();
    EXPECT_EQ(config.uAutoHideDelayTime, 1000 + rowOf(&QrdConfig::uAutoHideDelayTime))
        << "a loaded record is reloaded only on request";
    EXPECT_EQ(CZelConfig::_initQrdConfig(config), S_OK);
    EXPECT_EQ(CZelConfig::getQrdConfig().uAutoHideDelayTime, 3000 + rowOf(&QrdConfig::uAutoHideDelayTime));
    config = QrdConfig();
}

}  // namespace
