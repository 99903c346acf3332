// A change of the screens is verified, confirmed or taken back; and a picture comes back when there is none.
#include <gtest/gtest.h>

#include "functions/Arrangements.h"
#include "functions/PictureKeeper.h"
#include "plugins/windows/Waiting.h"
#include "support/ResourceCounters.h"
#include "system/fake/FakeDisplays.h"
#include "system/fake/FakePictureQuestion.h"

namespace win {
namespace {

using Event = IPictureQuestion::Event;

class PictureKeeper : public testing::Test {
 protected:
    void begin(DisplayState state = fakeNotebook()) {
        m_pDisplays = std::make_shared<CFakeDisplays>(std::move(state));
        begin(m_pDisplays);
    }
    void begin(std::shared_ptr<CFakeDisplays> pDisplays) {
        m_pDisplays = std::move(pDisplays);
        m_keeper.emplace(PictureTools{m_pDisplays, std::make_unique<CFakePictureQuestion>(m_pAnswers),
                                      std::make_unique<CFakeLastGood>(m_pMemory), 30});
        ASSERT_TRUE(soon([this] { return m_keeper->state().has_value(); }));
    }
    [[nodiscard]] bool isAsked(int nTimes) const {
        return soon([&] { return m_pAnswers->nAsked == nTimes; });
    }
    [[nodiscard]] bool becomes(LONG lArrangement) const {
        return soon([&] { return arrangementOf(m_pDisplays->read().screens) == lArrangement; });
    }
    [[nodiscard]] bool settles() const {
        return soon([&] { return !m_pMemory->bUnsettled && !m_pAnswers->bOpen; });
    }

    std::shared_ptr<FakeAnswers> m_pAnswers = std::make_shared<FakeAnswers>();
    std::shared_ptr<FakeMemory> m_pMemory = std::make_shared<FakeMemory>();
    std::shared_ptr<CFakeDisplays> m_pDisplays;
    std::optional<CPictureKeeper> m_keeper;
};

TEST_F(PictureKeeper, AKeptPictureStays) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_CLONE}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_TRUE(becomes(FENWYN_MODE_CLONE));
    EXPECT_TRUE(m_pMemory->bUnsettled);
    m_pAnswers->answer(Event::Keep);
    ASSERT_TRUE(settles());
    m_keeper.reset();
    EXPECT_EQ(m_pDisplays->active(), "own monitor ");
    EXPECT_EQ(m_pDisplays->asked(), "C");
}

TEST_F(PictureKeeper, WithoutAKeepThePictureBeforeComesBack) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(1));
    ASSERT_TRUE(becomes(FENWYN_MODE_EXTERNAL));
    m_pAnswers->answer(Event::GoBack);
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL));
    EXPECT_TRUE(settles());
    EXPECT_TRUE(soon([this] { return arrangementOf(m_keeper->state()->screens) == FENWYN_MODE_INTERNAL; }))
        << "and is known";
}

TEST_F(PictureKeeper, AnExtendedDesktopGoesToTheSideThatWasWanted) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTEND_LEFT}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_TRUE(becomes(FENWYN_MODE_EXTEND_LEFT));
    EXPECT_EQ(m_pDisplays->asked(), "E(own monitor)") << "the system extends to the right";
}

TEST_F(PictureKeeper, WhatIsInForceIsNotSetUpAgain) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_INTERNAL}));
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_CLONE}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_EQ(m_pDisplays->asked(), "C");
}

// Both extend the desktop to the right; a favourite is chosen from another.
const Layout kHighLayout{{L"own", {0, 0, 1000, 800}}, {L"monitor", {1000, 0, 2600, 900}}};
const Layout kOneStepLower{{L"own", {0, 0, 1000, 800}}, {L"monitor", {1000, 16, 2600, 916}}};
const Layout kLower{{L"own", {0, 0, 1000, 800}}, {L"monitor", {1000, 200, 2600, 1100}}};
const Layout kSmaller{{L"own", {0, 0, 1000, 800}}, {L"monitor", {1000, 0, 2280, 720}}};
const Layout kOtherMain{{L"own", {-1000, 0, 0, 800}}, {L"monitor", {0, 0, 1600, 900}}};

TEST_F(PictureKeeper, AnotherLayoutOfTheSameKindIsSetUpAndTakenBack) {
    for (const Layout& wanted : {kOneStepLower, kLower, kSmaller, kOtherMain}) {
        auto pDisplays = std::make_shared<CFakeDisplays>(fakeNotebook());
        ASSERT_TRUE(pDisplays->apply(kHighLayout));
        m_pAnswers->nAsked = 0;
        begin(pDisplays);
        ASSERT_TRUE(m_keeper->change(wanted));
        ASSERT_TRUE(isAsked(1));
        EXPECT_EQ(layoutOf(m_pDisplays->read().screens), wanted);
        EXPECT_TRUE(becomes(FENWYN_MODE_EXTEND_RIGHT));
        m_pAnswers->answer(Event::GoBack);
        EXPECT_TRUE(soon([this] { return layoutOf(m_pDisplays->read().screens) == kHighLayout; }));
        EXPECT_TRUE(settles());
    }
}

TEST_F(PictureKeeper, ALayoutOfTheSameKindThatDoesNotComeAboutIsSeen) {
    for (const Layout& wanted : {kLower, kSmaller, kOtherMain}) {
        auto pDisplays = std::make_shared<CFakeDisplays>(fakeNotebook());
        ASSERT_TRUE(pDisplays->apply(kHighLayout));
        pDisplays->bLayoutsIgnored = true;
        m_pAnswers->nFailures = 0;
        begin(pDisplays);
        ASSERT_TRUE(m_keeper->change(wanted));
        EXPECT_TRUE(soon([this] { return m_pAnswers->nFailures == 1; }));
        EXPECT_EQ(m_pAnswers->nAsked, 0);
    }
}

// The next choice comes while the question of the first is still open.
TEST_F(PictureKeeper, OfTwoChangesTheOneBeforeBothIsWhatComesBack) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_CLONE}));
    ASSERT_TRUE(isAsked(1));
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(2));
    ASSERT_TRUE(becomes(FENWYN_MODE_EXTERNAL));
    m_pAnswers->answer(Event::GoBack);
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL)) << "nobody confirmed the clone";
}

TEST_F(PictureKeeper, AChangeThatTheSystemRefusesIsTold) {
    begin();
    m_pDisplays->bTopologiesRefused = true;
    m_pDisplays->bLayoutsRefused = true;
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_CLONE}));
    EXPECT_TRUE(soon([this] { return m_pAnswers->nFailures == 1; }));
    EXPECT_TRUE(m_pAnswers->bAsBefore);
    EXPECT_EQ(m_pAnswers->nAsked, 0);
    EXPECT_EQ(m_pDisplays->active(), "own ");
    EXPECT_TRUE(settles());
}

// Accepted, and nothing happened: only looking tells.
TEST_F(PictureKeeper, AChangeThatDoesNotComeAboutIsSeen) {
    auto pDisplays = std::make_shared<CFakeDisplays>(fakeNotebook());
    pDisplays->lying = {Topology::External};
    pDisplays->bLayoutsRefused = true;
    begin(pDisplays);
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    EXPECT_TRUE(soon([this] { return m_pAnswers->nFailures == 1; }));
    EXPECT_EQ(m_pAnswers->nAsked, 0);
}

// The first change was made and not confirmed yet; the second fails, and there is no way back.
TEST_F(PictureKeeper, AFailureFromWhichThereIsNoWayBackIsNotToldAsOne) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_CLONE}));
    ASSERT_TRUE(isAsked(1));
    m_pDisplays->bTopologiesRefused = true;
    m_pDisplays->bLayoutsRefused = true;
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    EXPECT_TRUE(soon([this] { return m_pAnswers->nFailures == 1; }));
    EXPECT_FALSE(m_pAnswers->bAsBefore) << "the clone is still there";
}

TEST_F(PictureKeeper, WhereTheSystemsWordDoesNothingALayoutIsTried) {
    auto pDisplays = std::make_shared<CFakeDisplays>(fakeNotebook());
    pDisplays->lying = {Topology::External};
    begin(pDisplays);
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_EQ(m_pDisplays->active(), "monitor ");
    EXPECT_EQ(m_pDisplays->asked(), "X(monitor)");
}

TEST_F(PictureKeeper, WithoutAWindowToAskInThePictureBeforeComesBack) {
    begin();
    m_pAnswers->bNoWindow = true;
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL));
}

TEST_F(PictureKeeper, ItsEndTakesBackWhatNobodyKept) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(1));
    const ULONGLONG ullStart = ::GetTickCount64();
    m_keeper.reset();
    EXPECT_LT(::GetTickCount64() - ullStart, 1000U);
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL));
    EXPECT_TRUE(settles());
}

// As after a loss of power or a crash while the question was open.
TEST_F(PictureKeeper, WhatAnEndWithoutNoticeLeftIsTakenBack) {
    DisplayState state = fakeNotebook();
    m_pMemory->layout = layoutOf(state.screens);
    m_pMemory->bUnsettled = true;
    state.screens[0].bActive = false;
    state.screens[1].bActive = true;
    begin(state);
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL));
    EXPECT_TRUE(settles());
}

// The monitor was pulled out while its question was open.
TEST_F(PictureKeeper, WhereThePictureBeforeIsGoneSomePictureComesBack) {
    DisplayState state = fakeNotebook();
    state.screens[0].bActive = false;
    state.screens[1].bActive = true;
    begin(state);
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_INTERNAL}));
    ASSERT_TRUE(isAsked(1));
    state.screens.pop_back();
    state.screens[0].bActive = false;
    m_pDisplays->set(state);
    m_pAnswers->answer(Event::GoBack);
    EXPECT_TRUE(becomes(FENWYN_MODE_INTERNAL));
    EXPECT_TRUE(settles());
}

TEST_F(PictureKeeper, PanicTakesTheFirstArrangementThatComesAbout) {
    begin();
    EXPECT_TRUE(m_keeper->panic(kDeadlineMs));
    EXPECT_EQ(m_pDisplays->asked(), "I") << "also when it seems to be in force: the picture may be dark all the same";
    EXPECT_EQ(m_pAnswers->nAsked, 0);
}

TEST_F(PictureKeeper, PanicGoesThroughAllArrangementsInOrderAndThenToTheLastGoodOne) {
    auto pDisplays = std::make_shared<CFakeDisplays>(fakeNotebook());
    pDisplays->lying = {Topology::Internal};
    pDisplays->refused = {Topology::Extend, Topology::Clone, Topology::External};
    pDisplays->bLayoutsRefused = true;
    DisplayState state = fakeNotebook();
    state.screens[0].bActive = false;
    pDisplays->set(state);
    m_pMemory->layout = Layout{{L"monitor", {0, 0, 1600, 900}}};
    begin(pDisplays);
    EXPECT_FALSE(m_keeper->panic(kDeadlineMs));
    EXPECT_EQ(m_pDisplays->asked(), "I(own)E(own monitor)C(own monitor)X(monitor)(monitor)");
    EXPECT_EQ(m_pDisplays->active(), "");
}

// The first layouts are for screens of which one is never accepted; the kept one does without it.
TEST_F(PictureKeeper, PanicEndsWithTheLastGoodArrangementWhenNothingElseWorks) {
    DisplayState state = fakeNotebook();
    state.screens.push_back(fakeScreen(L"projector", L"RGB 1", false, false));
    state.screens[0].bActive = false;
    auto pDisplays = std::make_shared<CFakeDisplays>(state);
    pDisplays->bTopologiesRefused = true;
    pDisplays->broken = {L"own", L"projector"};
    m_pMemory->layout = Layout{{L"monitor", {0, 0, 1600, 900}}};
    begin(pDisplays);
    EXPECT_TRUE(m_keeper->panic(kDeadlineMs));
    EXPECT_EQ(m_pDisplays->active(), "monitor ");
}

TEST_F(PictureKeeper, PanicDoesNotWaitForTheQuestion) {
    begin();
    ASSERT_TRUE(m_keeper->change(LONG{FENWYN_MODE_EXTERNAL}));
    ASSERT_TRUE(isAsked(1));
    EXPECT_TRUE(m_keeper->panic(kDeadlineMs));
    EXPECT_EQ(m_pDisplays->active(), "own ");
    EXPECT_FALSE(m_pAnswers->bOpen);
    EXPECT_FALSE(m_pMemory->bUnsettled);
}

TEST_F(PictureKeeper, LeavesNoHandleBehind) {
    begin();
    m_keeper.reset();
    const std::size_t nBefore = testsupport::kernelHandles();
    ASSERT_GT(nBefore, 0U);
    for (int i = 0; i < 5; ++i) {
        begin();
        EXPECT_TRUE(m_keeper->panic(kDeadlineMs));
        m_keeper.reset();
    }
    EXPECT_TRUE(soon([nBefore] { return testsupport::kernelHandles() <= nBefore + 2; }));
}

}  // namespace
}  // namespace win
