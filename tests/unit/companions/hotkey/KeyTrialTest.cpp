// Keys that are tried out do not act, and act again when that is over.
#include "common/Handle.h"
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {
namespace {

common::UniqueHandle startTrial() {
    return common::UniqueHandle(::CreateEventW(nullptr, TRUE, FALSE, ZEL_KEY_TRIAL_EVENT));
}

// As the settings program does it: nobody else sees the key.
LRESULT CALLBACK swallowAll(int code, WPARAM wParam, LPARAM lParam) {
    return code == HC_ACTION ? 1 : ::CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

class KeyTrial : public HotkeyLibraryTest {
 protected:
    void SetUp() override {
        HotkeyLibraryTest::SetUp();
        setNumber(ZEL_VALUE_RELEASE_DELAY, 0);
        setFunction(L"Zoom", ZEL_CODE_ALONE | ZEL_CODE_VIRTUAL_KEY | VK_F13);
        setList(L"Mute;Zoom;");
        startAndEnable();
        pressKey(VK_RCONTROL);
        ASSERT_TRUE(reports("0 /0"));
        m_record.clear();
        ASSERT_TRUE(m_window.prepare());
    }
};

TEST_F(KeyTrial, NothingIsReportedOrSwallowed) {
    common::UniqueHandle trial = startTrial();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    pressKey(VK_F13);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_record.keys(), "");
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F1, -VK_F1, -VK_CONTROL, -VK_F13}))
        << "a press that is registered as a hotkey reaches nobody";
    trial.reset();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b /0"));
}

TEST_F(KeyTrial, WhatWasDownBeforeIsReleasedWithTheNextPress) {
    sendKey(VK_RCONTROL, true);
    ASSERT_TRUE(reports("0"));
    const common::UniqueHandle trial = startTrial();
    pressKey(VK_F1);
    EXPECT_TRUE(reports("0 /0"));
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_record.keys(), "0 /0");
}

TEST_F(KeyTrial, HookThatKeysAreHiddenFromDoesNotComeFirstAgain) {
    const common::UniqueHandle trial = startTrial();
    const common::UniqueHook hook(::SetWindowsHookExW(WH_KEYBOARD_LL, &swallowAll, ::GetModuleHandleW(nullptr), 0));
    const ULONGLONG start = ::GetTickCount64();
    waitUntil([start] {
        pressKey(VK_F13);
        return ::GetTickCount64() - start > 1200;  // HookLoss: it would have come within less
    });
    EXPECT_EQ(m_record.configTotal(), 0);
    EXPECT_EQ(m_record.keys(), "");
}

}  // namespace companions
