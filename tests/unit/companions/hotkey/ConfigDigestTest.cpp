#include "ConfigDigest.h"

#include <gtest/gtest.h>

#include <utility>

#include "RegistryWatch.h"
#include "include/ZelHotkey.h"
#include "support/RegistryRoom.h"

using support::RegistryRoom;

namespace {

constexpr wchar_t kFunction[] = ZEL_REG_HOTKEY L"\\Mute";

class ConfigDigest : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    // True if the digest differs from that of the last call.
    bool changed() {
        const std::uint64_t old = std::exchange(m_nDigest, hotkey::digestConfiguration());
        return old != m_nDigest;
    }

    RegistryRoom m_room;
    std::uint64_t m_nDigest = 0;
};

class RegistryWatchTest : public ConfigDigest {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        m_watch.arm();
    }
    // Waits for the signal and arms the watch again.
    bool signalled() {
        const bool bSignalled = ::WaitForSingleObject(m_watch.event(), 5000) == WAIT_OBJECT_0;
        m_watch.arm();
        return bSignalled;
    }
    bool silent() { return ::WaitForSingleObject(m_watch.event(), 50) == WAIT_TIMEOUT; }

    hotkey::CRegistryWatch m_watch;
};

}  // namespace

TEST_F(ConfigDigest, SeesValuesAndKeysComeChangeAndGo) {
    EXPECT_TRUE(changed());
    EXPECT_FALSE(changed());
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    EXPECT_TRUE(changed());
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 0);
    EXPECT_TRUE(changed());
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 1);
    EXPECT_TRUE(changed());
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable");
    EXPECT_TRUE(changed());
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    EXPECT_TRUE(changed());
}

TEST_F(ConfigDigest, TellsTheHivesApart) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Topmost", 1);
    changed();
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_CONFIG, L"Topmost", 1);
    EXPECT_TRUE(changed());
}

TEST_F(ConfigDigest, SeesTheTypeAndTheLastByteOfALargeValue) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"x", 0);
    changed();
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"x", {0, 0, 0, 0});
    EXPECT_TRUE(changed());
    std::vector<BYTE> large(100000);
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"x", large);
    EXPECT_TRUE(changed());
    large.back() = 1;
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"x", large);
    EXPECT_TRUE(changed());
}

TEST_F(ConfigDigest, SeesFunctionsOfTheList) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kFunction, ZEL_VALUE_CODE, 0x3B);
    changed();
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kFunction, ZEL_VALUE_CODE, 0x3C);
    EXPECT_TRUE(changed());
}

TEST_F(ConfigDigest, SeesOnlyTheListInForce) {
    RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Mute;");
    changed();
    RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Lock;");
    EXPECT_TRUE(changed());
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Sleep;");
    EXPECT_TRUE(changed());
    RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Mute;");
    EXPECT_FALSE(changed());
}

TEST_F(ConfigDigest, IgnoresTheSameValueAgainAndKeysNextToTheConfiguration) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 0);
    changed();
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 0);
    EXPECT_FALSE(changed());
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_STATE, ZEL_VALUE_LATCHED, 1);
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", 1);
    EXPECT_FALSE(changed());
}

TEST_F(RegistryWatchTest, SignalsTheWholeLifeOfAKeyThatDidNotExist) {
    EXPECT_TRUE(silent());
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    m_watch.arm();
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    EXPECT_TRUE(signalled());
    EXPECT_TRUE(silent());
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 1);
    EXPECT_TRUE(signalled());
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA");
    EXPECT_TRUE(signalled());
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 1);
    EXPECT_TRUE(signalled()) << "deleted and made again";
}

TEST_F(RegistryWatchTest, SignalsUserKeysAndFunctionsOfTheList) {
    RegistryRoom::makeKey(HKEY_CURRENT_USER, ZEL_REG_CONFIG);
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, kFunction);
    m_watch.arm();
    EXPECT_TRUE(silent());
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_CONFIG, L"Topmost", 1);
    EXPECT_TRUE(signalled());
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kFunction, ZEL_VALUE_CODE, 0x3B);
    EXPECT_TRUE(signalled());
    RegistryRoom::makeKey(HKEY_CURRENT_USER, kFunction);
    EXPECT_TRUE(signalled());
    RegistryRoom::setDword(HKEY_CURRENT_USER, kFunction, ZEL_VALUE_CODE, 0x3B);
    EXPECT_TRUE(signalled());
}
