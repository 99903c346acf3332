#include <gtest/gtest.h>

#include "functions/TouchpadSwitch.h"
#include "plugins/windows/Sleeping.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeTouchpad.h"

namespace win {
namespace {

class TouchpadSwitch : public testing::Test {
 protected:
    std::shared_ptr<CFakeTouchpad> m_pTouchpad = std::make_shared<CFakeTouchpad>();
    CTouchpadSwitch m_function{m_pTouchpad};
};

TEST_F(TouchpadSwitch, IsOfferedForAPrecisionTouchpadThatTellsItsState) {
    EXPECT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.items(), FENWYN_TWO_ITEMS);
    EXPECT_EQ(m_function.currentItem(), 0);
    m_pTouchpad->bTells = false;
    EXPECT_EQ(CTouchpadSwitch(m_pTouchpad).initialize(), L"The system does not tell whether the touchpad is on.");
    m_pTouchpad->bPresent = false;
    EXPECT_EQ(CTouchpadSwitch(m_pTouchpad).initialize(), L"There is no precision touchpad.");
}

TEST_F(TouchpadSwitch, TogglesOnceAndWaitsForTheState) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(m_function.select(1));
    EXPECT_EQ(m_function.currentItem(), 1);
    EXPECT_TRUE(soon([&] { return !m_pTouchpad->bEnabled; }));
    EXPECT_TRUE(m_function.select(0));
    EXPECT_TRUE(soon([&] { return m_pTouchpad->bEnabled.load(); }));
    EXPECT_EQ(m_pTouchpad->nToggles, 2);
}

// An extra toggle would do the opposite of the choice.
TEST_F(TouchpadSwitch, SendsNothingWhenItIsSoAlready) {
    ASSERT_EQ(m_function.initialize(), L"");
    m_pTouchpad->bEnabled = false;  // elsewhere; the card does not know yet
    EXPECT_TRUE(m_function.select(1));
    EXPECT_TRUE(soon([&] { return m_function.currentItem() == 1; }));
    ::Sleep(20);
    EXPECT_EQ(m_pTouchpad->nToggles, 0);
}

TEST_F(TouchpadSwitch, AToggleWithoutEffectIsSeen) {
    ASSERT_EQ(m_function.initialize(), L"");
    m_pTouchpad->bDeaf = true;
    EXPECT_TRUE(m_function.select(1));
    EXPECT_TRUE(soon([&] { return m_function.currentItem() == 0; }));
    EXPECT_EQ(m_pTouchpad->nToggles, 1);
}

TEST_F(TouchpadSwitch, RefusesItemsThatThereAreNot) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_FALSE(m_function.select(2));
    EXPECT_FALSE(m_function.select(-1));
}

TEST_F(TouchpadSwitch, OpensWithAChangeThatWasMadeElsewhere) {
    m_pTouchpad->dwReadMs = 5;
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(someTime([&](int nTry) {
        const LONG item = nTry % 2 == 0 ? 1 : 0;
        m_pTouchpad->bEnabled = item == 0;
        (void)m_function.items();
        const bool bAtOnce = m_function.currentItem() == item;
        return soon([&] { return m_function.currentItem() == item; }) && bAtOnce;
    }));
}

// Many machines switch the touchpad off when they become a tablet.
TEST_F(TouchpadSwitch, IsReadAfterTheMachinesSleepBeforeTheCardOpens) {
    ASSERT_EQ(m_function.initialize(), L"");
    for (const WPARAM news : kResumes) {
        m_pTouchpad->bEnabled = !m_pTouchpad->bEnabled;
        wakeUp(news);
        EXPECT_TRUE(soon([&] { return m_function.currentItem() == (m_pTouchpad->bEnabled ? 0 : 1); })) << news;
    }
}

}  // namespace
}  // namespace win
