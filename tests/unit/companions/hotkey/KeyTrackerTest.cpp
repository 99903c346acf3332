#include "companions/hotkey/TrackerFixture.h"

namespace companions {

class KeyTracker : public TrackerTest {};

TEST_F(KeyTracker, ModifierIsReportedAsCodeZeroAndPasses) {
    EXPECT_FALSE(modifierDown());
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_FALSE(modifierUp());
    EXPECT_EQ(m_report.take(), "/0");
}

TEST_F(KeyTracker, ListedKeyWithModifierIsReportedAndSwallowedWithItsRelease) {
    modifierDown();
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 3b /3b /0");
}

TEST_F(KeyTracker, UnlistedKeyWithModifierIsReportedAndPasses) {
    modifierDown();
    EXPECT_FALSE(down(kF3));
    EXPECT_FALSE(up(kF3));
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 3d /3d /0");
}

TEST_F(KeyTracker, ExtendedKeyHasItsOwnCode) {
    modifierDown();
    EXPECT_TRUE(down(kLeftArrow));
    EXPECT_TRUE(up(kLeftArrow));
    EXPECT_FALSE(down(0x4B)) << "the same scan code without the prefix is another key";
    EXPECT_EQ(m_report.take(), "0 e04b /e04b 4b");
}

TEST_F(KeyTracker, KeyAlonePassesUnreported) {
    EXPECT_FALSE(down(kF1));
    EXPECT_FALSE(up(kF1));
    EXPECT_EQ(m_report.take(), "");
}

TEST_F(KeyTracker, KeyThatWasDownBeforeTheModifierPassesUnreported) {
    down(kF1);
    modifierDown();
    EXPECT_FALSE(down(kF1)) << "a repeat";
    EXPECT_FALSE(up(kF1));
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_report.take(), "3b");
}

TEST_F(KeyTracker, RepeatsAreNoPressesAndStaySwallowed) {
    modifierDown();
    modifierDown();
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(down(kF1));
    modifierDown();
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_report.take(), "0 3b");
    EXPECT_FALSE(down(kF3));
    EXPECT_FALSE(down(kF3));
    EXPECT_EQ(m_report.take(), "3d");
}

TEST_F(KeyTracker, ModifierReleasedFirstBreaksItsKeysInTheOrderOfTheirPresses) {
    modifierDown();
    down(kF2);
    down(kF3);
    down(kF1);
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 3c 3d 3b /3c /3d /3b /0");
    EXPECT_TRUE(down(kF1)) << "a repeat of a swallowed key";
    EXPECT_TRUE(up(kF1));
    EXPECT_TRUE(up(kF2));
    EXPECT_FALSE(up(kF3));
    EXPECT_EQ(m_report.take(), "");
    EXPECT_FALSE(down(kF1)) << "a new press, without the modifier";
    EXPECT_FALSE(up(kF1));
}

TEST_F(KeyTracker, KeyHeldFromOneModifierPressToTheNextIsNotReportedAgain) {
    modifierDown();
    down(kF1);
    modifierUp();
    modifierDown();
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    EXPECT_EQ(m_report.take(), "0 3b /3b /0 0");
}

TEST_F(KeyTracker, NothingHappensBeforeItIsEnabled) {
    hotkey::CKeyTracker fresh(m_report, m_presses);
    fresh.setSettings(m_settings);
    EXPECT_FALSE(fresh.handle({kModifier, 0x11D, true, 1}));
    EXPECT_FALSE(fresh.handle({VK_F1, kF1, true, 2}));
    fresh.enable();
    EXPECT_FALSE(fresh.handle({VK_F2, kF2, true, 3})) << "a modifier held since before does not count";
    EXPECT_FALSE(fresh.handle({VK_F2, kF2, false, 4}));
    EXPECT_FALSE(fresh.handle({kModifier, 0x11D, false, 5}));
    EXPECT_EQ(m_report.take(), "");
    EXPECT_FALSE(fresh.handle({kModifier, 0x11D, true, 6}));
    EXPECT_EQ(m_report.take(), "0");
}

TEST_F(KeyTracker, ReleaseOfAKeyThatWasNeverSeenDownPasses) {
    EXPECT_FALSE(up(kF1));
    EXPECT_FALSE(modifierUp());
    EXPECT_EQ(m_report.take(), "");
}

TEST_F(KeyTracker, KeysWithoutAScanCodeAndImpossibleSlotsPass) {
    modifierDown();
    EXPECT_FALSE(m_tracker.handle({VK_PACKET, 0, true, 5000}));
    EXPECT_FALSE(m_tracker.handle({0xFFFFFFFF, keyboard::kKeySlots, true, 5000}));
    EXPECT_FALSE(m_tracker.handle({0, 0xFFFFFFFF, false, 5000}));
    EXPECT_EQ(m_report.take(), "0");
}

TEST_F(KeyTracker, ModifierThatIsListedItselfIsNotSwallowed) {
    m_settings.listed.set(0x11D);
    m_tracker.setSettings(m_settings);
    EXPECT_FALSE(modifierDown());
    EXPECT_FALSE(modifierUp());
}

TEST_F(KeyTracker, NewModifierEndsWhatTheOldOneHeld) {
    modifierDown();
    down(kF1);
    m_settings.modifierKey = VK_F12;
    m_tracker.setSettings(m_settings);
    EXPECT_EQ(m_report.take(), "0 3b /3b /0");
    EXPECT_FALSE(m_tracker.anythingDown());
    EXPECT_FALSE(m_tracker.handle({VK_F12, 0x58, true, m_nTime}));
    EXPECT_EQ(m_report.take(), "0");
}

TEST_F(KeyTracker, NewListAppliesFromTheNextPress) {
    modifierDown();
    EXPECT_TRUE(down(kF1));
    m_settings.listed.reset();
    m_tracker.setSettings(m_settings);
    EXPECT_TRUE(up(kF1)) << "its press was hidden, so its release is";
    EXPECT_FALSE(down(kF1));
    EXPECT_EQ(m_report.take(), "0 3b /3b 3b");
}

TEST_F(KeyTracker, PressThatCannotBeReportedGetsNoBreak) {
    m_report.full = true;
    modifierDown();
    m_report.full = false;
    EXPECT_FALSE(down(kF1)) << "no modifier was reported";
    up(kF1);
    modifierUp();
    EXPECT_EQ(m_report.take(), "");

    modifierDown();
    m_report.full = true;
    EXPECT_TRUE(down(kF1)) << "other programs still must not see it";
    EXPECT_FALSE(down(kF3));
    m_report.full = false;
    EXPECT_TRUE(up(kF1));
    EXPECT_FALSE(up(kF3));
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 /0");
}

}  // namespace companions
