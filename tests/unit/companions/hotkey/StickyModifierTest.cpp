#include "companions/hotkey/TrackerFixture.h"

namespace companions {

class StickyModifier : public TrackerTest {
 protected:
    StickyModifier() { setSticky(true); }
    void tap() {
        modifierDown();
        modifierUp();
    }
};

TEST_F(StickyModifier, TapLatchesAndWithholdsTheBreak) {
    tap();
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_TRUE(m_tracker.latched());
    EXPECT_EQ(m_report.latches, std::vector<bool>{true});
}

TEST_F(StickyModifier, SecondTapReleases) {
    tap();
    tap();
    EXPECT_EQ(m_report.take(), "0 /0");
    EXPECT_FALSE(m_tracker.latched());
    EXPECT_EQ(m_report.latches, (std::vector<bool>{true, false}));
    tap();
    EXPECT_EQ(m_report.take(), "0");
}

TEST_F(StickyModifier, KeysActAsIfItWereHeldUntilTheNextTap) {
    tap();
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    EXPECT_EQ(m_report.take(), "0 3b /3b 3b /3b");
    tap();
    EXPECT_EQ(m_report.take(), "/0");
    EXPECT_FALSE(down(kF1));
}

TEST_F(StickyModifier, ModifierThatWasHeldForAKeyDoesNotLatch) {
    modifierDown();
    down(kF1);
    up(kF1);
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 3b /3b /0");
    EXPECT_TRUE(m_report.latches.empty());
}

TEST_F(StickyModifier, HoldingItForAKeyWhileLatchedReleasesAtTheEnd) {
    tap();
    modifierDown();
    EXPECT_TRUE(down(kF1));
    up(kF1);
    modifierUp();
    EXPECT_EQ(m_report.take(), "0 3b /3b /0");
    EXPECT_FALSE(m_tracker.latched());
}

TEST_F(StickyModifier, KeyThatWasAlreadyDownDoesNotSpoilTheTap) {
    down(kA);
    tap();
    EXPECT_TRUE(m_tracker.latched());
}

TEST_F(StickyModifier, CancelReleasesOnce) {
    tap();
    down(kF1);
    m_tracker.cancelLatch();
    EXPECT_EQ(m_report.take(), "0 3b /3b /0");
    m_tracker.cancelLatch();
    EXPECT_EQ(m_report.take(), "");
    EXPECT_EQ(m_report.latches, (std::vector<bool>{true, false}));
}

TEST_F(StickyModifier, CancelWithoutALatchChangesNothing) {
    m_tracker.cancelLatch();
    modifierDown();
    m_tracker.cancelLatch();
    EXPECT_EQ(m_report.take(), "0") << "a held modifier is no latch";
    modifierUp();
    EXPECT_TRUE(m_tracker.latched());
}

TEST_F(StickyModifier, CancelWhileItIsHeldAgainWaitsForItsRelease) {
    tap();
    modifierDown();
    m_tracker.cancelLatch();
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_FALSE(m_tracker.latched());
    modifierUp();
    EXPECT_EQ(m_report.take(), "/0");
    EXPECT_FALSE(m_tracker.latched());
}

TEST_F(StickyModifier, SwitchingItOffReleasesTheLatch) {
    tap();
    setSticky(false);
    EXPECT_EQ(m_report.take(), "0 /0");
    tap();
    EXPECT_EQ(m_report.take(), "0 /0");
}

TEST_F(StickyModifier, LostModifierDoesNotLatch) {
    modifierDown();
    const auto nothingIsDown = [](DWORD) noexcept { return false; };
    m_tracker.checkLostKeys(nothingIsDown);
    m_tracker.checkLostKeys(nothingIsDown);
    EXPECT_EQ(m_report.take(), "0 /0");
    EXPECT_TRUE(m_report.latches.empty());
}

TEST_F(StickyModifier, LatchIsNotTakenForALostKey) {
    tap();
    const auto nothingIsDown = [](DWORD) noexcept { return false; };
    m_tracker.checkLostKeys(nothingIsDown);
    m_tracker.checkLostKeys(nothingIsDown);
    EXPECT_TRUE(m_tracker.latched());
}

TEST_F(StickyModifier, KeyboardThatGoesElsewhereReleasesTheLatch) {
    tap();
    m_tracker.releaseAll();
    EXPECT_EQ(m_report.take(), "0 /0");
    EXPECT_FALSE(m_tracker.latched());
}

TEST_F(StickyModifier, TapThatCouldNotBeReportedDoesNotLatch) {
    m_report.full = true;
    tap();
    m_report.full = false;
    EXPECT_FALSE(m_tracker.latched());
    EXPECT_FALSE(down(kF1));
}

}  // namespace companions
