#include <gtest/gtest.h>

#include "functions/Brightness.h"
#include "plugins/windows/Sleeping.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeBacklight.h"

namespace win {
namespace {

std::vector<BYTE> everyPercent() {
    std::vector<BYTE> levels;
    for (BYTE n = 0; n <= 100; ++n) {
        levels.push_back(n);
    }
    return levels;
}

TEST(BrightnessLevels, APercentageBelongsToTheNearestLevel) {
    EXPECT_EQ(levelOf(0), 0);
    EXPECT_EQ(levelOf(4), 0);
    EXPECT_EQ(levelOf(5), 1);
    EXPECT_EQ(levelOf(54), 5);
    EXPECT_EQ(levelOf(100), 10);
    EXPECT_EQ(levelOf(255), 10) << "a screen that says nonsense";
}

TEST(BrightnessLevels, ALevelIsTheNearestPercentageThatTheScreenHas) {
    EXPECT_EQ(percentOf(7, everyPercent()), 70);
    EXPECT_EQ(percentOf(10, {0, 12, 25, 37, 50, 62, 75, 87}), 87);
    EXPECT_EQ(percentOf(1, {87, 12, 0}), 12);
    EXPECT_EQ(percentOf(5, {40, 60}), 60) << "between two, the brighter";
    EXPECT_EQ(percentOf(0, {30}), 30);
}

// Whatever the screen supports, a brighter level is never darker.
TEST(BrightnessLevels, RiseWithTheScreen) {
    for (const std::vector<BYTE>& levels :
         {everyPercent(), std::vector<BYTE>{100}, std::vector<BYTE>{3, 9, 10, 11, 97}, std::vector<BYTE>{80, 20, 50}}) {
        for (LONG level = 1; level <= kBrightnessLevels; ++level) {
            EXPECT_GE(percentOf(level, levels), percentOf(level - 1, levels));
        }
    }
}

class WindowsBrightness : public testing::Test {
 protected:
    WindowsBrightness() { m_pScreen->levels = everyPercent(); }

    std::shared_ptr<CFakeBacklight> m_pScreen = std::make_shared<CFakeBacklight>();
};

TEST_F(WindowsBrightness, IsOfferedForAScreenThatCanBeSet) {
    CBrightness function(m_pScreen);
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.items(), 10U);
    EXPECT_EQ(function.currentItem(), 5);
}

TEST_F(WindowsBrightness, SaysThatThereIsNone) {
    m_pScreen->bThere = false;
    CBrightness function(m_pScreen);
    EXPECT_EQ(function.initialize(),
              L"There is no built-in screen whose brightness the system can set, and no other that you allow.");
    EXPECT_FALSE(function.select(3));
}

TEST_F(WindowsBrightness, ALevelCountsAtOnceAndIsSet) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_TRUE(function.select(8));
    EXPECT_EQ(function.currentItem(), 8);
    EXPECT_TRUE(soon([&] { return m_pScreen->nPercent == 80; }));
    EXPECT_FALSE(function.select(11));
    EXPECT_FALSE(function.select(-1));
}

// The slider steps faster than the screen follows.
TEST_F(WindowsBrightness, EndsAtTheLastOfManySteps) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    for (LONG level = 1; level <= 10; ++level) {
        EXPECT_TRUE(function.select(level));
    }
    EXPECT_TRUE(soon([&] { return m_pScreen->nPercent == 100; }));
    EXPECT_LE(m_pScreen->nSets, 10);
}

TEST_F(WindowsBrightness, AScreenThatRefusesKeepsItsLevel) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    m_pScreen->bRefuses = true;
    EXPECT_TRUE(function.select(9));
    EXPECT_TRUE(soon([&] { return function.currentItem() == 5; }));
}

TEST_F(WindowsBrightness, ChangesMadeElsewhereAreReadWhenTheCardOpens) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    m_pScreen->nPercent = 20;
    (void)function.items();
    EXPECT_TRUE(soon([&] { return function.currentItem() == 2; }));
}

TEST_F(WindowsBrightness, OpensWithAChangeThatWasMadeElsewhere) {
    m_pScreen->dwReadMs = 5;
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_TRUE(someTime([&](int nTry) {
        const LONG level = nTry % 2 == 0 ? 2 : 9;
        m_pScreen->nPercent = percentOf(level, m_pScreen->levels);
        (void)function.items();
        const bool bAtOnce = function.currentItem() == level;
        return soon([&] { return function.currentItem() == level; }) && bAtOnce;
    }));
}

// Many screens are dimmed or brightened while the machine sleeps.
TEST_F(WindowsBrightness, IsReadAfterTheMachinesSleepBeforeTheCardOpens) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    for (const WPARAM news : kResumes) {
        m_pScreen->nPercent = m_pScreen->nPercent == 20 ? 90 : 20;
        wakeUp(news);
        EXPECT_TRUE(soon([&] { return function.currentItem() == levelOf(m_pScreen->nPercent); })) << news;
    }
}

TEST_F(WindowsBrightness, NothingIsReadBecauseOfOtherNewsOfThePower) {
    CBrightness function(m_pScreen);
    ASSERT_EQ(function.initialize(), L"");
    const int nReads = m_pScreen->nReads;
    wakeUp(PBT_APMSUSPEND);
    wakeUp(PBT_APMPOWERSTATUSCHANGE);
    ::Sleep(50);  // for a read that does not come there is nothing to wait for
    EXPECT_EQ(m_pScreen->nReads, nReads);
}

TEST_F(WindowsBrightness, LeavesNoWindowBehind) {
    {
        CBrightness function(m_pScreen);
        ASSERT_EQ(function.initialize(), L"");
        EXPECT_NE(sleepWindow(), nullptr);
    }
    EXPECT_EQ(sleepWindow(), nullptr);
    WNDCLASSW windowClass{};
    EXPECT_FALSE(::GetClassInfoW(::GetModuleHandleW(nullptr), kSleepWindowClass, &windowClass))
        << "its procedure may be gone by then";
}

}  // namespace
}  // namespace win
