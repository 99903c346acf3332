// Keys through the real library.
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {

class HotkeyLibrary : public HotkeyLibraryTest {};

TEST_F(HotkeyLibrary, ReportsMakesAndBreaksInOrderFromOneThreadOfItsOwn) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    pressKey(VK_F10);
    pressKey(VK_F12);
    pressKey(VK_LEFT);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b 44 /44 58 /58 e04b /e04b /0"));
    EXPECT_EQ(m_record.threads().size(), 1u);
    EXPECT_FALSE(m_record.threads().contains(::GetCurrentThreadId()));
}

TEST_F(HotkeyLibrary, WindowsDoNotSeeListedKeysButSeeAllOthers) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    pressKey(VK_F2);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F2, -VK_F2, -VK_CONTROL}));
    EXPECT_TRUE(reports("0 3b /3b 3c /3c /0"));
}

TEST_F(HotkeyLibrary, KeysAlonePassUnreported) {
    startAndEnable();
    pressKey(VK_F1);
    pressKey('A');
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_F1, -VK_F1, 'A', -'A'}));
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
}

TEST_F(HotkeyLibrary, RepeatsAreNotReportedAndStayHidden) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    for (int i = 0; i < 5; ++i) {
        sendKey(VK_RCONTROL, true);
        sendKey(VK_F1, true);
    }
    sendKey(VK_F1, false);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b /0"));
    ASSERT_TRUE(m_window.settle());
    for (const int key : m_window.keys()) {
        EXPECT_EQ(std::abs(key), VK_CONTROL);
    }
}

TEST_F(HotkeyLibrary, ModifierReleasedFirstLeavesNothingDown) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    sendKey(VK_F1, true);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b /0"));
    sendKey(VK_F1, true);
    sendKey(VK_F1, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, -VK_CONTROL})) << "repeat and release stay hidden";
    EXPECT_TRUE(reports("0 3b /3b /0"));
}

TEST_F(HotkeyLibrary, NothingIsReportedOrHiddenBeforeEnableHotkey) {
    ASSERT_EQ(start(), 0);
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F1, -VK_F1, -VK_CONTROL}));
    ASSERT_EQ(m_pfnEnable(), 0);
    EXPECT_EQ(m_pfnEnable(), 0) << "again";
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
}

namespace {

// Called before the library's hook. Ends the chain for `s_hiddenKey`, so that the system sees the key but the library
// does not.
WORD s_hiddenKey = 0;
LRESULT CALLBACK hideOneKeyFromOtherHooks(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam)->vkCode == s_hiddenKey) {
        return 0;
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

TEST_F(HotkeyLibrary, LostReleaseOfTheModifierIsNoticed) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    sendKey(VK_F1, true);
    EXPECT_TRUE(reports("0 3b"));
    {
        s_hiddenKey = VK_RCONTROL;
        const common::UniqueHook hook(
            ::SetWindowsHookExW(WH_KEYBOARD_LL, &hideOneKeyFromOtherHooks, ::GetModuleHandleW(nullptr), 0));
        sendKey(VK_RCONTROL, false);
        ASSERT_TRUE(waitUntil([] { return ::GetAsyncKeyState(VK_RCONTROL) >= 0; }));
    }
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_TRUE(reports("0 3b /3b /0"));
    EXPECT_LT(::GetTickCount64() - start, 1000u);
    sendKey(VK_F1, false);
}

TEST_F(HotkeyLibrary, HeldModifierIsNotTakenForLost) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    sendKey(VK_F2, true);
    EXPECT_TRUE(reports("0 3c"));
    waitUntil([] { return false; }, 700);
    EXPECT_EQ(m_record.keys(), "0 3c");
    sendKey(VK_F2, false);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3c /3c /0"));
}

TEST_F(HotkeyLibrary, SlowCallbackDelaysNoKey) {
    startAndEnable();
    m_record.onKey = [] { ::Sleep(300); };
    const ULONGLONG start = ::GetTickCount64();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F2);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(waitUntil([this] { return m_window.keys().size() == 4; }));
    EXPECT_LT(::GetTickCount64() - start, 300u);
    EXPECT_TRUE(reports("0 3c /3c /0"));
}

TEST_F(HotkeyLibrary, BurstOfKeysArrivesCompleteAndInOrder) {
    startAndEnable();
    std::string expected = "0";
    sendKey(VK_RCONTROL, true);
    for (int i = 0; i < 100; ++i) {
        pressKey(VK_F1);
        pressKey(VK_F2);
        expected += " 3b /3b 3c /3c";
    }
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports(expected + " /0"));
}

}  // namespace companions
