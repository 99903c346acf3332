// The real library without its hook: it comes back, and keys without the modifier come on another road meanwhile.
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {
namespace {

// The numbers of hooks and windows come from one table, and the emulator takes one without its generation for any.
constexpr DWORD kFirstHandle = 0x20;
constexpr DWORD kLastHandle = 0x2000;

// Twice CHookWatchdog::kEarlier: a key that comes so soon after a call of the hook counts as seen by it.
constexpr DWORD kKeyIsNews = 100;

// As the system does it with a slow one: without a word. Returns how many there were. Keys after it are news.
int takeHooksAway() {
    int nTaken = 0;
    for (DWORD handle = kFirstHandle; handle < kLastHandle; handle += 2) {
        nTaken += ::UnhookWindowsHookEx(reinterpret_cast<HHOOK>(static_cast<ULONG_PTR>(handle))) ? 1 : 0;
    }
    waitUntil([] { return false; }, kKeyIsNews);
    return nTaken;
}

// Called before the library's hook. Ends the chain, so that the system sees the keys and the library's hook does not.
LRESULT CALLBACK hideFromOtherHooks(int code, WPARAM wParam, LPARAM lParam) {
    return code == HC_ACTION ? 0 : ::CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

class HookLoss : public HotkeyLibraryTest {
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
    HWND newsWindow() {
        const HWND hWnd = ::FindWindowW(L"FenwynKeyboardNews", nullptr);
        DWORD dwProcess = 0;
        ::GetWindowThreadProcessId(hWnd, &dwProcess);
        return dwProcess == ::GetCurrentProcessId() ? hWnd : nullptr;
    }
    bool told(DWORD code) {
        return waitUntil([&] { return m_record.configCount(code) > 0; });
    }
};

TEST_F(HookLoss, KeysWorkAgainWithinTwoSeconds) {
    ASSERT_GE(takeHooksAway(), 1);
    const ULONGLONG start = ::GetTickCount64();
    const bool bWorks = waitUntil([this] {
        pressKey(VK_RCONTROL);
        return m_record.keys() != "";
    });
    EXPECT_LT(::GetTickCount64() - start, 2000U);
    ASSERT_TRUE(bWorks);
    EXPECT_TRUE(told(ZEL_CONFIG_HOOK_LOST));
    EXPECT_EQ(m_record.configCount(ZEL_CONFIG_HOOK_LOST), 1);
    ASSERT_TRUE(m_window.settle());
    m_record.clear();
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b /0"));
}

TEST_F(HookLoss, SwallowedKeyThatWasDownIsReleased) {
    sendKey(VK_RCONTROL, true);
    sendKey(VK_F1, true);
    ASSERT_TRUE(reports("0 3b"));
    ASSERT_GE(takeHooksAway(), 1);
    sendKey(VK_F1, false);
    EXPECT_TRUE(reports("0 3b /3b"));
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("0 3b /3b /0"));
}

TEST_F(HookLoss, KeyWithoutTheModifierComesByRegistrationAndOnlyOnce) {
    ASSERT_GE(takeHooksAway(), 1);
    pressKey(VK_F13);
    EXPECT_TRUE(reports("1f07c /1f07c /0"));
    EXPECT_TRUE(told(ZEL_CONFIG_HOOK_LOST));
    m_record.clear();
    pressKey(VK_F13);
    EXPECT_TRUE(reports("1f07c /1f07c /0")) << "by the hook again";
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_record.keys(), "1f07c /1f07c /0");
    EXPECT_EQ(m_window.keys(), std::vector<int>{-VK_F13}) << "the release that no hook hid";
}

TEST_F(HookLoss, KeyThatIsHeldOnTheSecondRoadIsHeld) {
    ASSERT_GE(takeHooksAway(), 1);
    sendKey(VK_F13, true);
    ASSERT_TRUE(reports("1f07c"));
    waitUntil([] { return false; }, 800);
    EXPECT_EQ(m_record.keys(), "1f07c");
    sendKey(VK_F13, false);
    EXPECT_TRUE(reports("1f07c /1f07c /0"));
}

TEST_F(HookLoss, NothingComesTwiceWhileTheHookIsThere) {
    std::string expected;
    for (int i = 0; i < 20; ++i) {
        pressKey(VK_F13);
        expected += std::string(i == 0 ? "" : " ") + "1f07c /1f07c";
    }
    ASSERT_TRUE(m_window.settle());
    EXPECT_TRUE(waitUntil([&] {
        std::string keys = m_record.keys();
        for (std::size_t at = keys.find(" /0"); at != std::string::npos; at = keys.find(" /0")) {
            keys.erase(at, 3);
        }
        return keys == expected;
    })) << m_record.keys();
    EXPECT_EQ(m_record.configTotal(), 0);
}

TEST_F(HookLoss, HookThatOthersHideEverythingFromComesFirstAgain) {
    const common::UniqueHook hook(
        ::SetWindowsHookExW(WH_KEYBOARD_LL, &hideFromOtherHooks, ::GetModuleHandleW(nullptr), 0));
    EXPECT_TRUE(waitUntil([this] {
        pressKey(VK_RCONTROL);
        return m_record.keys() != "";
    }));
    EXPECT_TRUE(told(ZEL_CONFIG_HOOK_LOST));
}

TEST_F(HookLoss, UnregisteredKeysAreFreeAgain) {
    setList(L"Mute;");
    ASSERT_TRUE(waitForConfig(1));
    pressKey(VK_F13);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_F13, -VK_F13}));
    ASSERT_TRUE(::RegisterHotKey(nullptr, 1, 0, VK_F13)) << "nobody else has it";
    ::UnregisterHotKey(nullptr, 1);
}

struct Message {
    UINT message;
    WPARAM wParam;
};

class KeyboardThatChangedHands : public HookLoss, public testing::WithParamInterface<Message> {};
INSTANTIATE_TEST_SUITE_P(Messages, KeyboardThatChangedHands,
                         testing::Values(Message{WM_WTSSESSION_CHANGE, WTS_SESSION_UNLOCK},
                                         Message{WM_WTSSESSION_CHANGE, WTS_CONSOLE_CONNECT},
                                         Message{WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC},
                                         Message{WM_POWERBROADCAST, PBT_APMRESUMESUSPEND}));

TEST_P(KeyboardThatChangedHands, ReleasesWhatIsDownAndRenewsTheHook) {
    sendKey(VK_RCONTROL, true);
    ASSERT_TRUE(reports("0"));
    ASSERT_GE(takeHooksAway(), 1);
    ASSERT_NE(newsWindow(), nullptr);
    ::SendMessageW(newsWindow(), GetParam().message, GetParam().wParam, 0);
    EXPECT_TRUE(told(ZEL_CONFIG_HOOK_RENEWED));
    EXPECT_EQ(m_record.keys(), "0 /0");
    sendKey(VK_RCONTROL, false);
    m_record.clear();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0")) << "at once";
    EXPECT_EQ(m_record.configCount(ZEL_CONFIG_HOOK_LOST), 0);
}

TEST_F(HookLoss, GoingToSleepIsNoReason) {
    ASSERT_NE(newsWindow(), nullptr);
    ::SendMessageW(newsWindow(), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
    EXPECT_EQ(m_record.configTotal(), 0);
}

TEST_F(HookLoss, WindowGoesWithTheLibrary) {
    ASSERT_NE(newsWindow(), nullptr);
    ASSERT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(newsWindow(), nullptr);
}

}  // namespace companions
