// Keys that act without the modifier, through the real library.
#include "companions/hotkey/HotkeyLibraryFixture.h"

namespace companions {
namespace {

constexpr DWORD kDelay = 400;
// By its virtual key, because not every layout has a scan code for it.
constexpr DWORD kF13Alone = ZEL_CODE_ALONE | ZEL_CODE_VIRTUAL_KEY | VK_F13;

// As the keyboard sends it, and as the function list names it.
struct AloneKey {
    WORD key;
    WORD scan;
    bool extended;
    DWORD code;
    const char* reported;
};

void PrintTo(const AloneKey& key, std::ostream* stream) {
    *stream << "virtual key " << key.key;
}

void press(const AloneKey& key) {
    INPUT inputs[2]{};
    for (INPUT& input : inputs) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key.key;
        input.ki.wScan = key.scan;
        input.ki.dwFlags = key.extended ? DWORD{KEYEVENTF_EXTENDEDKEY} : 0;
    }
    inputs[1].ki.dwFlags |= KEYEVENTF_KEYUP;
    ::SendInput(2, inputs, sizeof(INPUT));
}

}  // namespace

class AloneLibrary : public HotkeyLibraryTest {
 protected:
    void SetUp() override {
        HotkeyLibraryTest::SetUp();
        setNumber(ZEL_VALUE_RELEASE_DELAY, kDelay);
        setFunction(L"Zoom", kF13Alone);
        setList(L"Mute;Zoom;");
        startAndEnable();
    }
};

class AloneKeysLibrary : public AloneLibrary, public testing::WithParamInterface<AloneKey> {
 protected:
    void SetUp() override {
        AloneLibrary::SetUp();
        ASSERT_EQ(m_pfnStop(), 0);
        setFunction(L"Zoom", GetParam().code);
        startAndEnable();
    }
};

INSTANTIATE_TEST_SUITE_P(Keys, AloneKeysLibrary,
                         testing::Values(AloneKey{VK_VOLUME_MUTE, 0x20, true, 0x1E020, "1e020 /1e020"},
                                         AloneKey{VK_LAUNCH_APP2, 0x21, true, 0x1E021, "1e021 /1e021"},
                                         AloneKey{VK_F13, 0x64, false, 0x10064, "10064 /10064"},
                                         AloneKey{VK_F24, 0x76, false, 0x10076, "10076 /10076"},
                                         AloneKey{VK_VOLUME_MUTE, 0x20, true, 0x1F0AD, "1f0ad /1f0ad"},
                                         AloneKey{0xB9, 0, false, 0x1F0B9, "1f0b9 /1f0b9"}));

TEST_P(AloneKeysLibrary, PressIsReportedAndHiddenAndTheBreakOfTheModifierFollows) {
    const ULONGLONG start = ::GetTickCount64();
    press(GetParam());
    EXPECT_TRUE(reports(GetParam().reported));
    ASSERT_TRUE(m_window.settle());
    EXPECT_TRUE(reports(GetParam().reported + std::string(" /0")));
    EXPECT_GE(::GetTickCount64() - start, kDelay);
    EXPECT_EQ(m_window.keys(), std::vector<int>{});
}

TEST_F(AloneLibrary, DelayBeginsWithTheLastRelease) {
    pressKey(VK_F13);
    waitUntil([] { return false; }, kDelay / 2);
    sendKey(VK_F13, true);
    waitUntil([] { return false; }, kDelay + 100);
    EXPECT_EQ(m_record.keys(), "1f07c /1f07c 1f07c") << "it is held";
    const ULONGLONG release = ::GetTickCount64();
    sendKey(VK_F13, false);
    EXPECT_TRUE(reports("1f07c /1f07c 1f07c /1f07c /0"));
    EXPECT_GE(::GetTickCount64() - release, kDelay);
}

TEST_F(AloneLibrary, ModifierAppliesTheChoiceAtOnce) {
    pressKey(VK_F13);
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(reports("1f07c /1f07c /0 0 3b /3b /0"));
    waitUntil([] { return false; }, kDelay + 100);
    EXPECT_EQ(m_record.keys(), "1f07c /1f07c /0 0 3b /3b /0") << "nothing is left to be applied";
}

TEST_F(AloneLibrary, NewDelayHoldsAtOnce) {
    setNumber(ZEL_VALUE_RELEASE_DELAY, 0);
    ASSERT_TRUE(waitForConfig(1));
    pressKey(VK_F13);
    EXPECT_TRUE(reports("1f07c /1f07c /0"));
}

TEST_F(AloneLibrary, WhileDisabledTheKeyIsAnOrdinaryOne) {
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, ZEL_VALUE_DISABLE, 1);
    ASSERT_TRUE(waitForConfig(1));
    pressKey(VK_F13);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_F13, -VK_F13}));
    EXPECT_EQ(m_record.keys(), "");
}

TEST_F(AloneLibrary, StopBreaksWhatIsHeld) {
    sendKey(VK_F13, true);
    ASSERT_TRUE(reports("1f07c"));
    ASSERT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(m_record.keys(), "1f07c /1f07c /0");
    sendKey(VK_F13, false);
}

}  // namespace companions
