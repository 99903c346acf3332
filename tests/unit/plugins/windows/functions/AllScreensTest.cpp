#include "functions/AllScreens.h"

#include <gtest/gtest.h>

#include "functions/Brightness.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeBacklight.h"
#include "system/fake/FakeExternalScreens.h"

namespace win {
namespace {

class AllScreens : public testing::Test {
 protected:
    AllScreens() { m_pBuiltIn->levels = {0, 50, 100}; }

    std::shared_ptr<CFakeBacklight> m_pBuiltIn = std::make_shared<CFakeBacklight>();
    std::shared_ptr<CFakeExternalScreens> m_pExternal = std::make_shared<CFakeExternalScreens>();
    WakeTime m_time{1000, 0};
    CAllScreens m_screens{m_pBuiltIn, m_pExternal, [this] { return m_time; }};
};

TEST_F(AllScreens, WithABuiltInScreenItsBrightnessCountsAndNoOtherIsAsked) {
    m_pExternal->put(L"desk", 20);
    const std::optional<Backlight> state = m_screens.read();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nPercent, 50);
    EXPECT_EQ(m_pExternal->asked(), 0);
}

TEST_F(AllScreens, TheAllowedOnesFollowTheBuiltInOne) {
    m_pExternal->put(L"desk", 20);
    m_pExternal->put(L"wall", 30);
    ASSERT_TRUE(m_screens.read());
    m_screens.set(80);
    EXPECT_EQ(m_pBuiltIn->nPercent, 80);
    EXPECT_TRUE(
        soon([this] { return m_pExternal->percentOf(L"desk") == 80 && m_pExternal->percentOf(L"wall") == 80; }));
}

TEST_F(AllScreens, WithoutABuiltInOneTheFirstThatAnswersCounts) {
    m_pBuiltIn->bThere = false;
    EXPECT_FALSE(m_screens.read());
    m_pExternal->put(L"a", std::nullopt);
    m_pExternal->put(L"b", 40);
    const std::optional<Backlight> state = m_screens.read();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nPercent, 40);
    EXPECT_EQ(percentOf(7, state->levels), 70);
    m_screens.set(70);
    EXPECT_EQ(m_pExternal->percentOf(L"b"), 70) << "set before the call returns: it is read again right after it";
    EXPECT_EQ(m_pBuiltIn->nSets, 0);
}

TEST_F(AllScreens, OneThatFailedIsLeftAloneUntilThePauseIsOver) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", std::nullopt);
    EXPECT_FALSE(m_screens.read());
    EXPECT_EQ(m_pExternal->asked(), 1);
    m_time.ullNow += CPatientScreens::kPauseMs - 1;
    m_pExternal->put(L"desk", 40);
    EXPECT_FALSE(m_screens.read());
    m_screens.set(50);
    EXPECT_EQ(m_pExternal->asked(), 0);
    m_time.ullNow += 1;
    EXPECT_TRUE(m_screens.read());
    EXPECT_EQ(m_pExternal->asked(), 1);
}

TEST_F(AllScreens, OneThatFailedIsAskedAgainAfterTheMachinesSleep) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", std::nullopt);
    m_screens.set(50);
    EXPECT_EQ(m_pExternal->asked(), 1);
    m_time.ullNow += 5000;
    m_time.ullAsleep += 3000;
    m_pExternal->put(L"desk", 40);
    EXPECT_TRUE(m_screens.read());
}

// The machine tells of its resume before the screens are on again.
TEST_F(AllScreens, OneThatIsStillWakingIsAskedUntilItAnswers) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", 40);
    ASSERT_TRUE(m_screens.read());
    m_pExternal->put(L"desk", std::nullopt);
    m_time.ullNow += 60000;
    m_time.ullAsleep += 50000;
    EXPECT_FALSE(m_screens.read());
    m_time.ullNow += CPatientScreens::kWakingMs - 1;
    EXPECT_FALSE(m_screens.read());
    m_pExternal->put(L"desk", 40);
    EXPECT_TRUE(m_screens.read());
    m_pExternal->put(L"desk", std::nullopt);
    m_time.ullNow += 1;
    EXPECT_FALSE(m_screens.read()) << "by now it should be awake";
    m_pExternal->put(L"desk", 40);
    EXPECT_FALSE(m_screens.read());
}

// Of a card without a built-in screen: the function as a whole.
TEST_F(AllScreens, AnAllowedExternalScreenMakesBrightnessAFunction) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", 40);
    CBrightness function(std::make_shared<CAllScreens>(m_pBuiltIn, m_pExternal));
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.currentItem(), 4);
    EXPECT_TRUE(function.select(9));
    EXPECT_TRUE(soon([this] { return m_pExternal->percentOf(L"desk") == 90; }));
}

}  // namespace
}  // namespace win
