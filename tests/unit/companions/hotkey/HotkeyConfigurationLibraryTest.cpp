// Configuration changes and the end event through the real library.
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {

using support::RegistryRoom;

class HotkeyConfigurationLibrary : public HotkeyLibraryTest {
 protected:
    // The tests wait in the same way for every kind of notification; longer than a quiet period.
    void expectNoFurtherConfig() {
        const int nBefore = m_record.configTotal();
        waitUntil([] { return false; }, 400);
        EXPECT_EQ(m_record.configTotal(), nBefore);
    }
};

TEST_F(HotkeyConfigurationLibrary, StartAloneReportsNoChange) {
    startAndEnable();
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 0);
}

TEST_F(HotkeyConfigurationLibrary, ChangeOfEachWatchedKeyIsReported) {
    startAndEnable();
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 0);
    EXPECT_TRUE(waitForConfig(1)) << "a key that did not exist";
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 1);
    EXPECT_TRUE(waitForConfig(2));
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_CONFIG, L"Topmost", 1);
    EXPECT_TRUE(waitForConfig(3)) << "the user's key";
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", L"Caption", L"Quiet");
    EXPECT_TRUE(waitForConfig(4)) << "a function of the list";
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    EXPECT_TRUE(waitForConfig(5)) << "a key that goes";
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"Disable", 1);
    EXPECT_TRUE(waitForConfig(6)) << "and comes back";
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 6);
}

TEST_F(HotkeyConfigurationLibrary, StormOfChangesIsReportedOnceItIsOver) {
    startAndEnable();
    for (DWORD i = 0; i < 200; ++i) {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, L"AutoHideDelayTime", i);
    }
    EXPECT_TRUE(waitForConfig(1));
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 1);
}

TEST_F(HotkeyConfigurationLibrary, KeysNextToTheConfigurationAreNoChange) {
    startAndEnable();
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_STATE, L"Anything", 1);
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", L"C:\\");
    setList(L"Mute;Lock;");
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 0) << "nor is the same value again";
}

TEST_F(HotkeyConfigurationLibrary, ChangedListIsInForceWhenTheChangeIsReported) {
    startAndEnable();
    setFunction(L"Sleep", 0x3C);
    setList(L"Sleep;");
    ASSERT_TRUE(waitForConfig(1));
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    pressKey(VK_F2);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F1, -VK_F1, -VK_CONTROL}));
}

TEST_F(HotkeyConfigurationLibrary, UsersListIsReportedAndInForceAsLongAsTheMachineHasNone) {
    startAndEnable();
    const auto setOwn = [](DWORD code) {
        RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_HOTKEY L"\\Sleep", ZEL_VALUE_CODE, code);
        RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY L"\\Sleep", ZEL_VALUE_FUNC_DLL, L"any.dll");
        RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Sleep;");
    };
    setOwn(0x3C);
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 0) << "the machine has a list";
    RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY);
    ASSERT_TRUE(waitForConfig(1)) << "the user's list takes over";
    setOwn(0x3D);
    ASSERT_TRUE(waitForConfig(2)) << "the user's list changed";
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F2);
    pressKey(VK_F3);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F2, -VK_F2, -VK_CONTROL}));
}

TEST_F(HotkeyConfigurationLibrary, ChangedModifierEndsTheOldOneAndTakesOver) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    setNumber(ZEL_VALUE_MODIFIER_KEY, VK_F9);
    EXPECT_TRUE(reports("0 /0"));
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(waitForConfig(1));
    pressKey(VK_F9);
    EXPECT_TRUE(reports("0 /0 0 /0"));
}

TEST_F(HotkeyConfigurationLibrary, EndEventIsSentAtOnceAndRepeated) {
    startAndEnable();
    const common::UniqueHandle event(::OpenEventW(EVENT_MODIFY_STATE, FALSE, ZEL_END_EVENT));
    ASSERT_TRUE(event);
    expectNoFurtherConfig();
    ::SetEvent(event.get());
    EXPECT_TRUE(waitUntil([this] { return m_record.configCount(ZEL_CONFIG_END) == 1; }, 500));
    EXPECT_TRUE(waitUntil([this] { return m_record.configCount(ZEL_CONFIG_END) == 2; }, 2000));
    EXPECT_EQ(m_record.configTotal(), 2);
}

TEST_F(HotkeyConfigurationLibrary, EndEventOfAnEarlierRunIsForgotten) {
    const common::UniqueHandle event(::CreateEventW(nullptr, TRUE, TRUE, ZEL_END_EVENT));
    ASSERT_TRUE(event);
    startAndEnable();
    expectNoFurtherConfig();
    EXPECT_EQ(m_record.configTotal(), 0);
}

TEST_F(HotkeyConfigurationLibrary, EndEventOfAnotherKindCostsOnlyTheEndEvent) {
    const common::UniqueHandle mutex(::CreateMutexW(nullptr, FALSE, ZEL_END_EVENT));
    ASSERT_TRUE(mutex);
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
}

}  // namespace companions
