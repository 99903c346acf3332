// Keys that are the modifier and keep their usual function when they are only tapped.
#include "ModifierUse.h"

#include "companions/hotkey/TrackerFixture.h"
#include "keyboard/OwnInput.h"

namespace companions {
namespace {

using Keys = std::vector<DWORD>;

constexpr DWORD kMask = keyboard::kMeaninglessKey;

}  // namespace

class PassingModifier : public TrackerTest, public testing::WithParamInterface<DWORD> {
 protected:
    PassingModifier() { setModifier(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Keys, PassingModifier, testing::Values(VK_RCONTROL, VK_LCONTROL, VK_RSHIFT, VK_F9));

TEST_P(PassingModifier, IsSeenByTheSystemAsAlways) {
    EXPECT_FALSE(modifierDown());
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    EXPECT_FALSE(modifierUp());
    EXPECT_FALSE(modifierDown());
    EXPECT_FALSE(modifierUp());
    EXPECT_TRUE(m_presses.keys.empty());
}

class WithheldModifier : public TrackerTest, public testing::WithParamInterface<DWORD> {
 protected:
    WithheldModifier() { setModifier(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Keys, WithheldModifier, testing::Values(VK_CAPITAL, VK_APPS, VK_F13, VK_F24));

TEST_P(WithheldModifier, TapComesOnceItIsOver) {
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(m_presses.keys.empty());
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{GetParam()});
    EXPECT_EQ(m_report.take(), "0 /0");
}

TEST_P(WithheldModifier, HasNoOtherMeaningOnceAKeyCameBetween) {
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(down(kF1));
    EXPECT_TRUE(up(kF1));
    EXPECT_TRUE(modifierUp());
    EXPECT_TRUE(modifierDown());
    EXPECT_FALSE(down(kF3)) << "a key that is not listed passes";
    EXPECT_FALSE(up(kF3));
    EXPECT_TRUE(modifierUp());
    EXPECT_TRUE(m_presses.keys.empty());
    EXPECT_EQ(m_report.take(), "0 3b /3b /0 0 3d /3d /0");
}

TEST_P(WithheldModifier, LongHoldIsNoTap) {
    EXPECT_TRUE(modifierDown());
    m_nTime += hotkey::CKeyTracker::kLongestTap - 10;
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{GetParam()}) << "the longest tap";
    EXPECT_TRUE(modifierDown());
    m_nTime += hotkey::CKeyTracker::kLongestTap - 9;
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_presses.keys.size(), 1u);
}

TEST_P(WithheldModifier, RepeatsStayHidden) {
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{GetParam()});
    EXPECT_EQ(m_report.take(), "0 /0");
}

TEST_P(WithheldModifier, StickyTapMeansTheLatchAlone) {
    setSticky(true);
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_report.take(), "/0");
    EXPECT_TRUE(m_presses.keys.empty());
}

TEST_P(WithheldModifier, PassesUntilItIsEnabled) {
    hotkey::CKeyTracker fresh(m_report, m_presses);
    fresh.setSettings(m_settings);
    EXPECT_FALSE(fresh.handle({GetParam(), 0x3A, true, 1}));
    fresh.enable();
    EXPECT_FALSE(fresh.handle({GetParam(), 0x3A, true, 2})) << "a repeat of what the system has seen";
    EXPECT_FALSE(fresh.handle({GetParam(), 0x3A, false, 3}));
    EXPECT_TRUE(m_presses.keys.empty());
}

TEST_P(WithheldModifier, ReleaseStaysHiddenWhenAnotherKeyBecomesTheModifier) {
    const DWORD former = m_settings.modifierKey;
    EXPECT_TRUE(modifierDown());
    setModifier(VK_RCONTROL);
    EXPECT_EQ(m_report.take(), "0 /0");
    EXPECT_TRUE(m_tracker.handle({former, 0x3A, true, m_nTime + 1})) << "a repeat";
    EXPECT_TRUE(m_tracker.handle({former, 0x3A, false, m_nTime + 2}));
    EXPECT_FALSE(m_tracker.handle({former, 0x3A, true, m_nTime + 3})) << "from here on it is a key as any other";
    EXPECT_TRUE(m_presses.keys.empty());
}

TEST_P(WithheldModifier, IsNotTakenForLostBecauseTheSystemNeverSawIt) {
    EXPECT_TRUE(modifierDown());
    for (int i = 0; i < 3; ++i) {
        m_tracker.checkLostKeys([](DWORD) { return false; });
    }
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_report.take(), "0 3b");
}

TEST_P(WithheldModifier, KeyboardThatWentElsewhereLeavesNothingBehind) {
    EXPECT_TRUE(modifierDown());
    m_tracker.releaseAll();
    EXPECT_FALSE(modifierUp()) << "what is not known to be down passes";
    EXPECT_TRUE(m_presses.keys.empty());
    EXPECT_TRUE(modifierDown());
    EXPECT_TRUE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{GetParam()});
}

class MaskedModifier : public TrackerTest, public testing::WithParamInterface<DWORD> {
 protected:
    MaskedModifier() { setModifier(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Keys, MaskedModifier, testing::Values(VK_RMENU, VK_LMENU, VK_RWIN, VK_LWIN));

TEST_P(MaskedModifier, TapPassesAsAlways) {
    EXPECT_FALSE(modifierDown());
    EXPECT_FALSE(modifierUp());
    EXPECT_TRUE(m_presses.keys.empty());
    EXPECT_EQ(m_report.take(), "0 /0");
}

TEST_P(MaskedModifier, SystemIsShownAKeyInPlaceOfTheSwallowedOnes) {
    EXPECT_FALSE(modifierDown());
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_presses.keys, Keys{kMask});
    EXPECT_TRUE(up(kF1));
    EXPECT_TRUE(down(kF2));
    EXPECT_TRUE(up(kF2));
    EXPECT_FALSE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{kMask}) << "one is enough";
    EXPECT_FALSE(modifierDown());
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_presses.keys, (Keys{kMask, kMask})) << "the next time it needs another";
}

TEST_P(MaskedModifier, LongHoldIsNoTap) {
    EXPECT_FALSE(modifierDown());
    m_nTime += hotkey::CKeyTracker::kLongestTap;
    EXPECT_FALSE(modifierUp());
    EXPECT_EQ(m_presses.keys, Keys{kMask});
}

TEST_P(MaskedModifier, StickyTapMeansTheLatchAlone) {
    setSticky(true);
    EXPECT_FALSE(modifierDown());
    EXPECT_FALSE(modifierUp());
    EXPECT_EQ(m_report.take(), "0");
    EXPECT_EQ(m_presses.keys, Keys{kMask});
    EXPECT_TRUE(down(kF1));
    EXPECT_EQ(m_presses.keys, Keys{kMask}) << "nothing is held";
}

TEST_P(MaskedModifier, NeedsNoMaskBeforeItIsEnabled) {
    hotkey::CKeyTracker fresh(m_report, m_presses);
    fresh.setSettings(m_settings);
    EXPECT_FALSE(fresh.handle({GetParam(), 0x138, true, 1}));
    fresh.enable();
    EXPECT_FALSE(fresh.handle({GetParam(), 0x138, false, 3000}));
    EXPECT_TRUE(m_presses.keys.empty());
}

}  // namespace companions
