// Both display outputs over screens that exist in numbers only.
#include <gtest/gtest.h>

#include <thread>

#include "functions/Arrangements.h"
#include "functions/Output.h"
#include "plugins/windows/Waiting.h"
#include "support/RegistryRoom.h"
#include "system/SlowState.h"
#include "system/fake/FakeDisplays.h"
#include "system/fake/FakeOfferMemory.h"
#include "system/fake/FakePictureQuestion.h"

namespace win {
namespace {

class DisplayOutput : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_registry.redirected()); }

    PictureTools tools(DisplayState state = fakeNotebook()) {
        m_pDisplays = std::make_shared<CFakeDisplays>(std::move(state));
        return {m_pDisplays, std::make_unique<CFakePictureQuestion>(m_pAnswers),
                std::make_unique<CFakeLastGood>(std::make_shared<FakeMemory>()), 30};
    }
    [[nodiscard]] bool becomes(LONG lArrangement) const {
        return soon([&] { return arrangementOf(m_pDisplays->read().screens) == lArrangement; });
    }
    static std::vector<LONG> modes(const std::vector<OutputEntry>& rEntries) {
        std::vector<LONG> found;
        for (const OutputEntry& entry : rEntries) {
            found.push_back(entry.lMode);
        }
        return found;
    }

    support::RegistryRoom m_registry;
    std::shared_ptr<FakeAnswers> m_pAnswers = std::make_shared<FakeAnswers>();
    std::shared_ptr<CFakeDisplays> m_pDisplays;
};

TEST_F(DisplayOutput, IsOfferedWithTwoConnectors) {
    COutputWithFavourites function(tools());
    EXPECT_EQ(function.initialize(), L"");
}

// A monitor may be connected later; the cards are made once.
TEST_F(DisplayOutput, IsOfferedWithAFreeConnector) {
    DisplayState state = fakeNotebook();
    state.screens.pop_back();
    COutputWithFavourites function(tools(state));
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(modes(function.entries()),
              (std::vector<LONG>{FENWYN_MODE_INTERNAL, FENWYN_MODE_CONFIGURE, FENWYN_MODE_SAVE}));
    EXPECT_EQ(function.currentItem(), 0);
}

TEST_F(DisplayOutput, SaysThatThereAreNotTwo) {
    DisplayState state = fakeNotebook();
    state.nConnectors = 1;
    COutputWithFavourites function(tools(state));
    EXPECT_EQ(function.initialize(), L"There are not two screens or connectors for screens.");
    COlderOutput older(tools(state));
    EXPECT_EQ(older.initialize(), L"There are not two screens or connectors for screens.");
}

TEST_F(DisplayOutput, LeavesTheScreensOfARemoteSessionAlone) {
    DisplayState state = fakeNotebook();
    state.bRemote = true;
    COutputWithFavourites function(tools(state));
    EXPECT_EQ(function.initialize(), L"The session is shown on the screens of another machine.");
}

// Screens that are looked at only after the test says so.
class CWakingDisplays final : public IDisplays {
 public:
    DisplayState read() override {
        ::WaitForSingleObject(hAwake.get(), kDeadlineMs);
        return fakeNotebook();
    }
    bool apply(Topology /*topology*/) override { return false; }
    bool apply(const Layout& /*rLayout*/) override { return false; }

    common::UniqueHandle hAwake{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

TEST_F(DisplayOutput, GoesByAnEarlierStartWhileItsScreensWakeUpAndRemembersThem) {
    for (const auto before : {CFakeOfferMemory::Yes, CFakeOfferMemory::No}) {
        const auto pWaking = std::make_shared<CWakingDisplays>();
        PictureTools waking = tools();
        waking.pDisplays = pWaking;
        const auto pMemory = std::make_shared<CFakeOfferMemory>(before);
        {
            COutputWithFavourites function(std::move(waking));
            function.remember(pMemory);
            const ULONGLONG start = ::GetTickCount64();
            EXPECT_EQ(function.initialize(),
                      reasonWithoutAnswer(before == CFakeOfferMemory::Yes,
                                          L"There are not two screens or connectors for screens."));
            EXPECT_LT(::GetTickCount64() - start, kFirstLookMs / 2);
            ::SetEvent(pWaking->hAwake.get());
            EXPECT_TRUE(soon([&] { return pMemory->answer == CFakeOfferMemory::Yes; }));
        }
    }
}

TEST_F(DisplayOutput, ARemoteSessionSaysNothingAboutTheMachinesScreens) {
    DisplayState state = fakeNotebook();
    state.bRemote = true;
    const auto pMemory = std::make_shared<CFakeOfferMemory>();
    COutputWithFavourites function(tools(state));
    function.remember(pMemory);
    EXPECT_NE(function.initialize(), L"");
    EXPECT_EQ(pMemory->answer, CFakeOfferMemory::Unknown);
}

TEST_F(DisplayOutput, OffersTheArrangementsWithTheirScreens) {
    COutputWithFavourites function(tools());
    ASSERT_EQ(function.initialize(), L"");
    const std::vector<OutputEntry> entries = function.entries();
    EXPECT_EQ(modes(entries), (std::vector<LONG>{FENWYN_MODE_INTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT,
                                                 FENWYN_MODE_EXTEND_LEFT, FENWYN_MODE_EXTERNAL, FENWYN_MODE_CONFIGURE,
                                                 FENWYN_MODE_SAVE}));
    ASSERT_EQ(entries[0].records.size(), 1U);
    EXPECT_STREQ(entries[0].records[0].szConnector, L"LCD");
    EXPECT_EQ(entries[0].records[0].uWidth, 1000U);
    ASSERT_EQ(entries[2].records.size(), 2U);
    EXPECT_STREQ(entries[2].records[1].szConnector, L"HDMI 1");
    EXPECT_EQ(entries[2].records[1].uDisplayIndex, 1U);
    EXPECT_EQ(entries[2].records[1].uHeight, 900U);
    ASSERT_EQ(entries[4].records.size(), 1U);
    EXPECT_EQ(entries[4].records[0].uDisplayIndex, 1U);
    EXPECT_TRUE(entries[5].records.empty());
}

TEST_F(DisplayOutput, AChosenArrangementIsSetUpAndCurrent) {
    COutputWithFavourites function(tools());
    ASSERT_EQ(function.initialize(), L"");
    (void)function.entries();
    EXPECT_EQ(function.currentItem(), 0);
    EXPECT_TRUE(function.select(3));
    EXPECT_TRUE(becomes(FENWYN_MODE_EXTEND_LEFT));
    EXPECT_TRUE(soon([&] { return function.entries().size() == 7 && function.currentItem() == 3; }));
    EXPECT_EQ(m_pAnswers->nAsked, 1);
    EXPECT_FALSE(function.select(5)) << "opens a program";
    EXPECT_FALSE(function.select(7));
    EXPECT_FALSE(function.select(-1));
}

TEST_F(DisplayOutput, FavouritesAreOfferedWhileAllTheirMonitorsAreConnected) {
    favourites::Favourite desk{L"Desk", FENWYN_MODE_EXTEND_RIGHT, {}, {}};
    desk.displays = {favourites::displayRecord(L"LCD", 0, 1000, 800),
                     favourites::displayRecord(L"HDMI 1", 1, 1600, 900)};
    desk.positions = {{L"own", {0, 0}}, {L"monitor", {1000, 0}}};
    favourites::Favourite elsewhere = desk;
    elsewhere.text = L"Elsewhere";
    elsewhere.positions[1].path = L"another";
    const favourites::Favourite old{L"Old", FENWYN_MODE_CLONE, {}, {}};
    ASSERT_EQ(favourites::store({desk, elsewhere, old}), ERROR_SUCCESS);
    COutputWithFavourites function(tools());
    ASSERT_EQ(function.initialize(), L"");
    const std::vector<OutputEntry> entries = function.entries();
    ASSERT_EQ(entries.size(), 9U);
    EXPECT_EQ(entries[5].text, L"Desk");
    EXPECT_EQ(entries[5].uFlags, FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_SHOW_RESOLUTION);
    EXPECT_EQ(entries[6].text, L"Old") << "kept without its monitors: its arrangement counts";
    EXPECT_TRUE(function.select(5));
    EXPECT_TRUE(soon([&] { return function.entries().size() == 9 && function.currentItem() == 5; }));
    EXPECT_EQ(m_pDisplays->asked(), "(own monitor)");
}

TEST_F(DisplayOutput, BringsAPictureBackOnAnotherThread) {
    COutputWithFavourites function(tools());
    ASSERT_EQ(function.initialize(), L"");
    (void)function.entries();
    ASSERT_TRUE(function.select(4));
    ASSERT_TRUE(becomes(FENWYN_MODE_EXTERNAL));
    bool bDone = false;
    std::thread([&] { bDone = function.bringPictureBack(); }).join();
    EXPECT_TRUE(bDone);
    EXPECT_EQ(m_pDisplays->active(), "own ");
}

TEST_F(DisplayOutput, OlderOneNumbersByConnector) {
    COlderOutput function(tools());
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.items(), 1U << 0 | 1U << 3 | 1U << 8 | 1U << 13);
    EXPECT_EQ(function.currentItem(), 0);
    EXPECT_TRUE(function.select(8));
    EXPECT_TRUE(becomes(FENWYN_MODE_CLONE));
    EXPECT_FALSE(function.select(5)) << "there is no television";
}

TEST_F(DisplayOutput, OlderOneKeepsTheSideToWhichTheDesktopIsExtended) {
    DisplayState state = fakeNotebook();
    state.screens[1].bActive = true;
    state.screens[1].display.place = {-1600, 0, 0, 900};
    COlderOutput function(tools(state));
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.currentItem(), 13);
    EXPECT_TRUE(function.select(13));
    EXPECT_TRUE(function.select(0));
    ASSERT_TRUE(becomes(FENWYN_MODE_INTERNAL));
    EXPECT_EQ(m_pDisplays->asked(), "I");
}

// The held key of the older function chooses its first arrangement, on a thread of its own.
TEST_F(DisplayOutput, OlderOnesChoiceOnAnotherThreadBringsAPictureBackWithoutAQuestion) {
    COlderOutput function(tools());
    ASSERT_EQ(function.initialize(), L"");
    ASSERT_TRUE(function.select(3));
    ASSERT_TRUE(becomes(FENWYN_MODE_EXTERNAL));
    ASSERT_TRUE(soon([this] { return m_pAnswers->nAsked == 1; }));
    bool bDone = false;
    std::thread([&] { bDone = function.select(0); }).join();
    EXPECT_TRUE(bDone);
    EXPECT_EQ(m_pDisplays->active(), "own ");
    EXPECT_EQ(m_pAnswers->nAsked, 1);
}

TEST(RealDisplays, TellTheScreenOfTheTestsAndRefuseWhatTheyCannotDo) {
    const std::shared_ptr<IDisplays> pDisplays = makeWindowsDisplays();
    const DisplayState state = pDisplays->read();
    ASSERT_FALSE(state.screens.empty());
    EXPECT_FALSE(state.bRemote);
    EXPECT_EQ(arrangementOf(state.screens), FENWYN_MODE_INTERNAL);
    EXPECT_EQ(state.screens[0].display.place.right, ::GetSystemMetrics(SM_CXSCREEN));
    EXPECT_TRUE(state.screens[0].display.path.starts_with(L"\\\\?\\DISPLAY#"));
    // The system of the tests accepts every configuration and changes nothing.
    EXPECT_FALSE(state.bEveryArrangement);
    EXPECT_FALSE(pDisplays->apply(Topology::Clone));
    EXPECT_FALSE(pDisplays->apply(Layout{{L"not connected", {0, 0, 800, 600}}}));
    EXPECT_EQ(layoutOf(pDisplays->read().screens), layoutOf(state.screens));
}

}  // namespace
}  // namespace win
