// Releases that are never seen.
#include <set>

#include "companions/hotkey/TrackerFixture.h"

namespace companions {

class LostKeys : public TrackerTest {
 protected:
    void check() {
        m_tracker.checkLostKeys([this](DWORD vk) noexcept { return m_setDown.contains(vk); });
    }
    std::set<DWORD> m_setDown;  // the keys that the keyboard reports as down
};

TEST_F(LostKeys, LostModifierBreaksItsKeysAndItselfAtTheSecondCheck) {
    modifierDown();
    down(kF1);
    check();
    EXPECT_EQ(m_report.take(), "0 3b") << "the press may not have reached the keyboard's state yet";
    check();
    EXPECT_EQ(m_report.take(), "/3b /0");
    EXPECT_TRUE(up(kF1)) << "its press was hidden, so its release is";
}

TEST_F(LostKeys, KeyThatIsReallyDownIsNeverLost) {
    modifierDown();
    down(kF3);
    m_setDown = {kModifier, virtualKey(kF3)};
    for (int i = 0; i < 5; ++i) {
        check();
    }
    EXPECT_EQ(m_report.take(), "0 3d");
}

TEST_F(LostKeys, SightingBetweenTwoMissesCountsAnew) {
    modifierDown();
    check();
    m_setDown = {kModifier};
    check();
    m_setDown.clear();
    check();
    EXPECT_EQ(m_report.take(), "0");
    check();
    EXPECT_EQ(m_report.take(), "/0");
}

TEST_F(LostKeys, RepeatBetweenTwoMissesCountsAnew) {
    modifierDown();
    down(kF3);
    check();
    modifierDown();
    down(kF3);
    check();
    EXPECT_EQ(m_report.take(), "0 3d");
}

TEST_F(LostKeys, LostPassedKeyIsBrokenAloneAndMayBePressedAgain) {
    m_setDown = {kModifier};
    modifierDown();
    down(kF3);
    check();
    check();
    EXPECT_EQ(m_report.take(), "0 3d /3d");
    down(kF3);
    EXPECT_EQ(m_report.take(), "3d");
}

TEST_F(LostKeys, SwallowedKeyIsNotAskedAbout) {
    m_setDown = {kModifier};
    modifierDown();
    down(kF1);
    check();
    check();
    check();
    EXPECT_EQ(m_report.take(), "0 3b");
}

TEST_F(LostKeys, KeyPressedAloneIsForgottenWhenLost) {
    down(kF1);
    check();
    check();
    EXPECT_FALSE(m_tracker.anythingDown());
    modifierDown();
    EXPECT_TRUE(down(kF1)) << "a new press, not a repeat";
}

TEST_F(LostKeys, PressAfterALongSilenceIsANewPress) {
    modifierDown();
    down(kF1);
    m_nTime += keyboard::kRepeatGap;
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_report.take(), "0 3b /3b 3b");
    m_nTime += keyboard::kRepeatGap;
    modifierDown();
    EXPECT_EQ(m_report.take(), "/3b /0 0");
}

TEST_F(LostKeys, SlowRepeatIsNotANewPress) {
    modifierDown();
    down(kF1);
    m_nTime += keyboard::kRepeatGap - 10;
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_report.take(), "0 3b");
}

TEST_F(LostKeys, SilenceIsMeasuredAcrossTheWrapOfTheClock) {
    m_nTime = 0xFFFFFFFFu - 15;
    modifierDown();
    down(kF1);
    down(kF1);
    EXPECT_EQ(m_report.take(), "0 3b");
}

TEST_F(LostKeys, KeyboardThatGoesElsewhereReleasesEverything) {
    modifierDown();
    down(kF1);
    down(kF3);
    m_tracker.releaseAll();
    EXPECT_EQ(m_report.take(), "0 3b 3d /3b /3d /0");
    EXPECT_FALSE(m_tracker.anythingDown());
    m_tracker.releaseAll();
    EXPECT_EQ(m_report.take(), "");
}

}  // namespace companions
