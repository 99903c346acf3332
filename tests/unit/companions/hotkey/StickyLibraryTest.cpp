// The latched modifier through the real library.
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {

class StickyLibrary : public HotkeyLibraryTest {
 protected:
    void SetUp() override {
        HotkeyLibraryTest::SetUp();
        setNumber(ZEL_VALUE_STICKY_MODIFIER, 1);
    }
    static HWND stickyWindow() { return ::FindWindowW(ZEL_STICKY_WINDOW_CLASS, ZEL_STICKY_WINDOW_TITLE); }
    static void postCancel() {
        ::PostMessageW(stickyWindow(), ::RegisterWindowMessageW(ZEL_STICKY_CANCEL_MESSAGE), 0, 0);
    }
    // The published state; 0 if there is none.
    static DWORD publishedLatch() {
        DWORD value = 0;
        DWORD cb = sizeof(value);
        ::RegGetValueW(HKEY_CURRENT_USER, ZEL_REG_STATE, ZEL_VALUE_LATCHED, RRF_RT_REG_DWORD, nullptr, &value, &cb);
        return value;
    }
    static bool waitForLatch(DWORD value) {
        return waitUntil([=] { return publishedLatch() == value; });
    }
};

TEST_F(StickyLibrary, WindowIsThereOnlyWhileSwitchedOn) {
    EXPECT_EQ(stickyWindow(), nullptr);
    startAndEnable();
    EXPECT_NE(stickyWindow(), nullptr);
    EXPECT_FALSE(::IsWindowVisible(stickyWindow()));
    setNumber(ZEL_VALUE_STICKY_MODIFIER, 0);
    EXPECT_TRUE(waitUntil([] { return stickyWindow() == nullptr; }));
    setNumber(ZEL_VALUE_STICKY_MODIFIER, 1);
    EXPECT_TRUE(waitUntil([] { return stickyWindow() != nullptr; }));
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(stickyWindow(), nullptr);
}

TEST_F(StickyLibrary, TapLatchesKeysWorkAndTheNextTapReleases) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0"));
    EXPECT_TRUE(waitForLatch(1));
    pressKey(VK_F1);
    pressKey(VK_F1);
    EXPECT_TRUE(reports("0 3b /3b 3b /3b"));
    ASSERT_TRUE(m_window.settle());
    for (const int key : m_window.keys()) {
        EXPECT_EQ(std::abs(key), VK_CONTROL) << "listed keys stay hidden";
    }
    // The key by which the window settles may be reported in between.
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitUntil([this] { return m_record.keys().ends_with(" /0"); })) << m_record.keys();
    EXPECT_TRUE(waitForLatch(0));
}

TEST_F(StickyLibrary, TellsThroughTheConfigurationCallbackWhatTheLatchIs) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitUntil([this] { return m_record.configCount(ZEL_CONFIG_LATCHED) == 1; }));
    EXPECT_EQ(m_record.configCount(ZEL_CONFIG_UNLATCHED), 0);
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitUntil([this] { return m_record.configCount(ZEL_CONFIG_UNLATCHED) == 1; }));
    EXPECT_EQ(m_record.configCount(ZEL_CONFIG_LATCHED), 1);
}

TEST_F(StickyLibrary, CancelMessageReleasesTheLatch) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitForLatch(1));
    postCancel();
    EXPECT_TRUE(reports("0 /0"));
    EXPECT_TRUE(waitForLatch(0));
    postCancel();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0 0")) << "a cancel too many changes nothing";
}

TEST_F(StickyLibrary, SwitchingItOffReleasesTheLatch) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0"));
    setNumber(ZEL_VALUE_STICKY_MODIFIER, 0);
    EXPECT_TRUE(reports("0 /0"));
    EXPECT_TRUE(waitForLatch(0));
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0 0 /0"));
}

TEST_F(StickyLibrary, StopReleasesTheLatch) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitForLatch(1));
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(m_record.keys(), "0 /0");
    EXPECT_EQ(publishedLatch(), 0u);
}

TEST_F(StickyLibrary, LatchIsNoChangeOfTheConfiguration) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitForLatch(1));
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitForLatch(0));
    waitUntil([] { return false; }, 400);
    EXPECT_EQ(m_record.configCount(ZEL_CONFIG_CHANGED), 0);
}

TEST_F(StickyLibrary, LatchIsNotTakenForALostKey) {
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(waitForLatch(1));
    waitUntil([] { return false; }, 700);
    EXPECT_EQ(m_record.keys(), "0");
}

}  // namespace companions
