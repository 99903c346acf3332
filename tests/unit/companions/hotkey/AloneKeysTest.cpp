// Keys that act without the modifier, on played events.
#include "companions/hotkey/TrackerFixture.h"

namespace companions {
namespace {

constexpr std::size_t kMute = 0x120;  // extended
constexpr std::size_t kF13 = 0x64;
constexpr std::size_t kLaunch = 0x2B7;  // without a scan code

using Alone = hotkey::CKeyTracker::Alone;

}  // namespace

class AloneKeys : public TrackerTest {
 protected:
    AloneKeys() {
        m_settings.alone.set(kMute).set(kF13).set(kLaunch);
        m_tracker.setSettings(m_settings);
    }
};

TEST_F(AloneKeys, PressIsReportedAndSwallowedAndTheModifiersBreakFollowsLater) {
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    EXPECT_TRUE(down(kMute));
    EXPECT_EQ(m_tracker.alone(), Alone::Held);
    EXPECT_TRUE(up(kMute));
    EXPECT_EQ(m_tracker.alone(), Alone::Released);
    EXPECT_EQ(m_report.take(), "1e020 /1e020");
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "/0");
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    EXPECT_FALSE(m_tracker.anythingDown());
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "");
}

TEST_F(AloneKeys, EveryKindOfKeyHasItsCode) {
    down(kF13);
    up(kF13);
    down(kLaunch);
    up(kLaunch);
    EXPECT_EQ(m_report.take(), "10064 /10064 1f0b7 /1f0b7");
}

TEST_F(AloneKeys, ListMayNameAKeyByItsVirtualKey) {
    m_settings.alone.reset().set(keyboard::slotOfVirtualKey(virtualKey(kA)));
    m_settings.listed.set(keyboard::slotOfVirtualKey(virtualKey(kF3))).set(kF2);
    m_settings.listed.set(keyboard::slotOfVirtualKey(virtualKey(kF2)));
    m_tracker.setSettings(m_settings);
    EXPECT_TRUE(down(kA));
    EXPECT_TRUE(up(kA));
    EXPECT_EQ(m_report.take(), "1f04e /1f04e");
    modifierDown();
    EXPECT_TRUE(down(kF3));
    EXPECT_TRUE(up(kF3));
    EXPECT_TRUE(down(kF2));
    EXPECT_TRUE(up(kF2));
    EXPECT_EQ(m_report.take(), "/0 0 f06d /f06d 3c /3c") << "a listed scan code counts before the virtual key";
}

TEST_F(AloneKeys, FurtherPressesComeBeforeTheOneBreak) {
    for (int i = 0; i < 3; ++i) {
        down(kMute);
        down(kMute);  // a repeat
        up(kMute);
    }
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 1e020 /1e020 1e020 /1e020 /0");
}

TEST_F(AloneKeys, NothingEndsWhileOneIsHeld) {
    down(kMute);
    down(kF13);
    up(kMute);
    EXPECT_EQ(m_tracker.alone(), Alone::Held);
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "1e020 10064 /1e020");
    up(kF13);
    EXPECT_EQ(m_tracker.alone(), Alone::Released);
}

TEST_F(AloneKeys, OtherKeysAreNobodysBusiness) {
    EXPECT_FALSE(down(kF1)) << "listed for use with the modifier";
    EXPECT_FALSE(up(kF1));
    down(kMute);
    EXPECT_FALSE(down(kF1));
    EXPECT_FALSE(down(kA));
    up(kMute);
    EXPECT_FALSE(up(kA));
    EXPECT_FALSE(up(kF1));
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0");
}

TEST_F(AloneKeys, WithTheModifierTheyOpenTheirCardToo) {
    modifierDown();
    EXPECT_TRUE(down(kMute));
    EXPECT_TRUE(up(kMute));
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 1e020 /1e020 /0");
}

TEST_F(AloneKeys, WithTheModifierTheListedPlainCodeCounts) {
    m_settings.listed.set(kMute);
    m_tracker.setSettings(m_settings);
    modifierDown();
    EXPECT_TRUE(down(kMute));
    EXPECT_TRUE(up(kMute));
    modifierUp();
    EXPECT_TRUE(down(kMute));
    EXPECT_TRUE(up(kMute));
    EXPECT_EQ(m_report.take(), "0 e020 /e020 /0 1e020 /1e020");
}

TEST_F(AloneKeys, ModifierAppliesTheChoiceBeforeItsOwnMake) {
    down(kMute);
    up(kMute);
    modifierDown();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0 0");
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    modifierUp();
    EXPECT_EQ(m_report.take(), "/0");
}

TEST_F(AloneKeys, ModifierThatIsTappedRightAfterOneKeepsItsOwnMeaning) {
    setModifier(VK_CAPITAL);
    down(kMute);
    up(kMute);
    modifierDown();
    modifierUp();
    EXPECT_EQ(m_presses.keys, std::vector<DWORD>{VK_CAPITAL});
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0 0 /0");
    setModifier(VK_RCONTROL);
    setSticky(true);
    down(kMute);
    up(kMute);
    modifierDown();
    modifierUp();
    EXPECT_TRUE(m_tracker.latched());
}

TEST_F(AloneKeys, ModifierEndsAlsoTheHeldOnesAndTheirReleaseStaysHidden) {
    down(kMute);
    modifierDown();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0 0");
    EXPECT_TRUE(up(kMute));
    modifierUp();
    EXPECT_EQ(m_report.take(), "/0");
}

TEST_F(AloneKeys, LatchedModifierTakesThem) {
    setSticky(true);
    modifierDown();
    modifierUp();
    down(kMute);
    up(kMute);
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    EXPECT_EQ(m_report.take(), "0 1e020 /1e020");
    modifierDown();
    modifierUp();
    EXPECT_EQ(m_report.take(), "/0");
}

TEST_F(AloneKeys, KeyThatIsTheModifierIsTheModifier) {
    setModifier(virtualKey(kF13));
    EXPECT_FALSE(down(kF13));
    EXPECT_FALSE(up(kF13));
    EXPECT_EQ(m_report.take(), "0 /0");
}

TEST_F(AloneKeys, NothingHappensBeforeTheTrackerIsEnabled) {
    hotkey::CKeyTracker fresh(m_report, m_presses);
    fresh.setSettings(m_settings);
    EXPECT_FALSE(fresh.handle({virtualKey(kMute), kMute, true, 1}));
    fresh.enable();
    EXPECT_FALSE(fresh.handle({virtualKey(kMute), kMute, false, 2}));
    EXPECT_EQ(m_report.take(), "");
}

TEST_F(AloneKeys, KeyboardThatGoesElsewhereEndsThem) {
    down(kMute);
    m_tracker.releaseAll();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0");
    EXPECT_EQ(m_tracker.alone(), Alone::None);
}

TEST_F(AloneKeys, KeyWhoseReleaseWasLostIsReleasedByItsNextPress) {
    down(kMute);
    m_nTime += keyboard::kRepeatGap;
    EXPECT_TRUE(down(kMute));
    EXPECT_TRUE(up(kMute));
    EXPECT_EQ(m_report.take(), "1e020 /1e020 1e020 /1e020");
}

// As in a window of an administrator's program: the hook is called neither for the press nor for the release.
TEST_F(AloneKeys, KeyThatTheHookDidNotSeeIsReleasedWhenTheSystemSaysThatItIsUp) {
    m_tracker.handleUnhooked({virtualKey(kMute), kMute, true, m_nTime});
    EXPECT_EQ(m_report.take(), "1e020");
    EXPECT_EQ(m_tracker.alone(), Alone::Held);
    m_tracker.checkLostKeys([](DWORD) noexcept { return true; });
    m_tracker.checkLostKeys([](DWORD) noexcept { return false; });
    EXPECT_EQ(m_tracker.alone(), Alone::Held) << "once is not enough";
    m_tracker.checkLostKeys([](DWORD) noexcept { return false; });
    EXPECT_EQ(m_report.take(), "/1e020");
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "/0");
    EXPECT_FALSE(m_tracker.anythingDown());
}

TEST_F(AloneKeys, KeyThatTheHookDidNotSeePasses) {
    m_tracker.handleUnhooked({virtualKey(kMute), kMute, true, m_nTime});
    EXPECT_FALSE(up(kMute)) << "the system saw its press";
    EXPECT_EQ(m_report.take(), "1e020 /1e020");
}

TEST_F(AloneKeys, HiddenOnesAreReleasedWhenTheHookWasLost) {
    down(kMute);
    m_tracker.releaseHidden();
    EXPECT_EQ(m_report.take(), "1e020 /1e020");
    EXPECT_EQ(m_tracker.alone(), Alone::Released);
    EXPECT_FALSE(up(kMute)) << "nobody waits for it any more";
}

TEST_F(AloneKeys, WithheldModifierIsReleasedWhenTheHookWasLost) {
    setModifier(VK_CAPITAL);
    EXPECT_TRUE(modifierDown());
    m_tracker.releaseHidden();
    EXPECT_EQ(m_report.take(), "0 /0");
    EXPECT_FALSE(modifierUp());
    EXPECT_TRUE(m_presses.keys.empty()) << "that was no tap";
}

TEST_F(AloneKeys, PressThatCannotBeReportedIsStillHiddenAndBreaksNothing) {
    m_report.full = true;
    EXPECT_TRUE(down(kMute));
    EXPECT_TRUE(up(kMute));
    m_report.full = false;
    EXPECT_EQ(m_tracker.alone(), Alone::None);
    EXPECT_EQ(m_report.take(), "");
    down(kMute);
    up(kMute);
    m_report.full = true;
    down(kMute);
    m_report.full = false;
    up(kMute);
    m_tracker.endAlone();
    EXPECT_EQ(m_report.take(), "1e020 /1e020 /0");
}

}  // namespace companions
