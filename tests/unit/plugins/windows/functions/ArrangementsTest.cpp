// The rules of arrangements, on screens that exist in numbers only.
#include <gtest/gtest.h>

#include "functions/Arrangements.h"
#include "system/fake/FakeDisplays.h"

namespace win {
namespace {

constexpr RECT kRightOfOwn{1000, 0, 2600, 900};
constexpr RECT kLeftOfOwn{-1600, 0, 0, 900};

std::vector<Screen> both(RECT monitor) {
    return {fakeScreen(L"own", L"LCD", true, true), fakeScreen(L"monitor", L"HDMI 1", false, true, monitor)};
}

std::vector<Screen> onlyMonitor() {
    return {fakeScreen(L"own", L"LCD", true, false), fakeScreen(L"monitor", L"HDMI 1", false, true, {0, 0, 1600, 900})};
}

// A desktop computer: nothing is built in.
std::vector<Screen> twoMonitors(bool bFirst, bool bSecond) {
    return {fakeScreen(L"first", L"DVI 1", false, bFirst), fakeScreen(L"second", L"HDMI 1", false, bSecond)};
}

TEST(ScreenArrangement, IsToldByTheOwnScreenAndTheOthers) {
    EXPECT_EQ(arrangementOf(fakeNotebook().screens), FENWYN_MODE_INTERNAL);
    EXPECT_EQ(arrangementOf(onlyMonitor()), FENWYN_MODE_EXTERNAL);
    EXPECT_EQ(arrangementOf(both({0, 0, 1600, 900})), FENWYN_MODE_CLONE);
    EXPECT_EQ(arrangementOf(both(kRightOfOwn)), FENWYN_MODE_EXTEND_RIGHT);
    EXPECT_EQ(arrangementOf(both(kLeftOfOwn)), FENWYN_MODE_EXTEND_LEFT);
    EXPECT_EQ(arrangementOf(both({0, -900, 1600, 0})), FENWYN_MODE_EXTEND_ABOVE);
    EXPECT_EQ(arrangementOf(both({500, 100, 2100, 1000})), FENWYN_MODE_SEVERAL);
}

TEST(ScreenArrangement, WithoutAScreenThatIsOnThereIsNone) {
    EXPECT_EQ(arrangementOf({}), std::nullopt);
    EXPECT_EQ(arrangementOf({fakeScreen(L"own", L"LCD", true, false)}), std::nullopt);
    EXPECT_FALSE(isInForce(FENWYN_MODE_INTERNAL, {}));
}

TEST(ScreenArrangement, WhereNothingIsBuiltInTheFirstScreenIsTheOwnOne) {
    EXPECT_EQ(arrangementOf(twoMonitors(true, false)), FENWYN_MODE_INTERNAL);
    EXPECT_EQ(arrangementOf(twoMonitors(false, true)), FENWYN_MODE_EXTERNAL);
}

using Offered = std::vector<LONG>;

TEST(OfferedArrangements, OfOneScreenIsTheOneInForce) {
    DisplayState state = fakeNotebook();
    state.screens.pop_back();
    EXPECT_EQ(offeredArrangements(state), Offered{FENWYN_MODE_INTERNAL});
    state.screens = {fakeScreen(L"monitor", L"HDMI 1", false, true)};
    EXPECT_EQ(offeredArrangements(state), Offered{FENWYN_MODE_INTERNAL}) << "it is all that the machine has";
    state.screens.clear();
    EXPECT_TRUE(offeredArrangements(state).empty());
}

TEST(OfferedArrangements, OfTwoScreensAreAllThatTheInterfaceCanSetUp) {
    DisplayState state = fakeNotebook();
    EXPECT_EQ(offeredArrangements(state), (Offered{FENWYN_MODE_INTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT,
                                                   FENWYN_MODE_EXTEND_LEFT, FENWYN_MODE_EXTERNAL}));
    state.bEveryArrangement = false;
    EXPECT_EQ(offeredArrangements(state),
              (Offered{FENWYN_MODE_INTERNAL, FENWYN_MODE_EXTEND_RIGHT, FENWYN_MODE_EXTEND_LEFT}));
}

TEST(OfferedArrangements, HaveTheOneInForceWhateverItIs) {
    DisplayState state = fakeNotebook();
    state.screens = both({0, 800, 1600, 1700});
    EXPECT_EQ(offeredArrangements(state),
              (Offered{FENWYN_MODE_INTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT, FENWYN_MODE_EXTEND_LEFT,
                       FENWYN_MODE_EXTEND_BELOW, FENWYN_MODE_EXTERNAL}));
    state.screens = both({500, 100, 2100, 1000});
    EXPECT_EQ(offeredArrangements(state).back(), FENWYN_MODE_SEVERAL);
}

RECT placeIn(const std::optional<Layout>& layout, const std::wstring& path) {
    for (const PlacedScreen& screen : layout.value_or(Layout())) {
        if (screen.path == path) {
            return screen.place;
        }
    }
    ADD_FAILURE() << "not in the layout";
    return {};
}

TEST(ArrangementLayout, PlacesTheScreensThatItUses) {
    const std::vector<Screen> screens = fakeNotebook().screens;
    const std::optional<Layout> internal = layoutFor(FENWYN_MODE_INTERNAL, screens);
    ASSERT_EQ(internal.value_or(Layout()).size(), 1U);
    EXPECT_EQ(internal->front(), (PlacedScreen{L"own", {0, 0, 1000, 800}}));
    const std::optional<Layout> left = layoutFor(FENWYN_MODE_EXTEND_LEFT, screens);
    EXPECT_EQ(placeIn(left, L"own").left, 0);
    EXPECT_EQ(placeIn(left, L"monitor").left, -1600);
    const std::optional<Layout> right = layoutFor(FENWYN_MODE_EXTEND_RIGHT, screens);
    EXPECT_EQ(placeIn(right, L"monitor").left, 1000);
    EXPECT_EQ(placeIn(right, L"monitor").right, 2600);
    const std::optional<Layout> external = layoutFor(FENWYN_MODE_EXTERNAL, screens);
    ASSERT_EQ(external.value_or(Layout()).size(), 1U);
    EXPECT_EQ(external->front(), (PlacedScreen{L"monitor", {0, 0, 1600, 900}}));
}

// The desktop begins at the screen that is on: windows stay where they are.
TEST(ArrangementLayout, ExtendsFromTheScreenThatIsOn) {
    const std::optional<Layout> right = layoutFor(FENWYN_MODE_EXTEND_RIGHT, onlyMonitor());
    EXPECT_EQ(placeIn(right, L"monitor").left, 0);
    EXPECT_EQ(placeIn(right, L"own").left, -1000);
}

TEST(ArrangementLayout, NeedsTheScreensForIt) {
    const std::vector<Screen> own{fakeScreen(L"own", L"LCD", true, true)};
    EXPECT_TRUE(layoutFor(FENWYN_MODE_INTERNAL, own));
    for (const LONG lArrangement : {FENWYN_MODE_EXTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT}) {
        EXPECT_FALSE(layoutFor(lArrangement, own)) << lArrangement;
    }
    EXPECT_FALSE(layoutFor(FENWYN_MODE_SEVERAL, both(kRightOfOwn))) << "it says nothing about places";
    EXPECT_FALSE(layoutFor(FENWYN_MODE_INTERNAL, {}));
}

// Whatever is set up is recognised as what was wanted.
TEST(ArrangementLayout, IsTheArrangementThatItWasMadeFor) {
    for (const std::vector<Screen>& screens : {fakeNotebook().screens, both(kLeftOfOwn), onlyMonitor(),
                                               twoMonitors(true, false), twoMonitors(false, true)}) {
        for (const LONG lArrangement :
             {FENWYN_MODE_INTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT, FENWYN_MODE_EXTEND_LEFT,
              FENWYN_MODE_EXTEND_ABOVE, FENWYN_MODE_EXTEND_BELOW, FENWYN_MODE_EXTERNAL}) {
            DisplayState state;
            state.screens = screens;
            CFakeDisplays displays(state);
            const std::optional<Layout> layout = layoutFor(lArrangement, screens);
            ASSERT_TRUE(layout);
            ASSERT_TRUE(displays.apply(*layout));
            EXPECT_EQ(arrangementOf(displays.read().screens), lArrangement);
            EXPECT_TRUE(isInForce(*layout, displays.read().screens));
        }
    }
}

TEST(LayoutInForce, IsItsScreensOnAndTheOthersOff) {
    const Layout desk{{L"own", {0, 0, 1000, 800}}, {L"monitor", kLeftOfOwn}};
    EXPECT_TRUE(isInForce(desk, both(kLeftOfOwn)));
    EXPECT_TRUE(isInForce(desk, both({-1600, 60, 0, 960}))) << "the system may have moved it a little";
    EXPECT_FALSE(isInForce(desk, both(kRightOfOwn)));
    EXPECT_FALSE(isInForce(desk, fakeNotebook().screens));
    EXPECT_FALSE(isInForce(Layout{{L"own", {0, 0, 1000, 800}}}, both(kLeftOfOwn)));
    EXPECT_FALSE(isInForce(Layout{{L"own", {}}, {L"gone", {}}}, fakeNotebook().screens)) << "one is not there";
}

TEST(LayoutInForce, HasItsPlacesSizesAndMainScreen) {
    const Layout desk{{L"own", {0, 0, 1000, 800}}, {L"monitor", kLeftOfOwn}};
    EXPECT_FALSE(isInForce(desk, both({-1600, 300, 0, 1200}))) << "on the same side, elsewhere";
    EXPECT_FALSE(isInForce(desk, both({-1280, 0, 0, 720}))) << "of another size";
    std::vector<Screen> otherMain = both({0, 0, 1600, 900});
    otherMain[0].display.place = {1600, 0, 2600, 800};
    EXPECT_FALSE(isInForce(desk, otherMain));
    otherMain = both({-1600, 0, 0, 900});
    otherMain[0].display.place = {0, 20, 1000, 820};
    EXPECT_FALSE(isInForce(desk, otherMain)) << "a small move, but the desktop begins elsewhere";
}

TEST(LayoutInForce, IsExactlySoWhenItAgreesToThePixelInAnyOrder) {
    const Layout desk{{L"monitor", kLeftOfOwn}, {L"own", {0, 0, 1000, 800}}};
    EXPECT_TRUE(isExactly(desk, both(kLeftOfOwn)));
    EXPECT_FALSE(isExactly(desk, both({-1600, 1, 0, 901})));
    EXPECT_FALSE(isExactly(desk, fakeNotebook().screens));
    EXPECT_FALSE(isExactly(Layout{{L"monitor", kLeftOfOwn}}, both(kLeftOfOwn)));
}

TEST(FavouriteLayout, NeedsAllItsMonitors) {
    favourites::Favourite desk;
    desk.displays = {favourites::displayRecord(L"LCD", 0, 1000, 800),
                     favourites::displayRecord(L"HDMI 1", 1, 1600, 900)};
    EXPECT_FALSE(layoutFor(desk, both(kRightOfOwn))) << "it names none";
    desk.positions = {{L"own", {0, 0}}, {L"monitor", {-1600, 5}}};
    const std::optional<Layout> layout = layoutFor(desk, both(kRightOfOwn));
    EXPECT_EQ(placeIn(layout, L"monitor").left, -1600);
    EXPECT_EQ(placeIn(layout, L"monitor").top, 5);
    EXPECT_EQ(placeIn(layout, L"monitor").right, 0);
    EXPECT_FALSE(layoutFor(desk, {fakeScreen(L"own", L"LCD", true, true)}));
}

TEST(OlderNumbers, AreTheOnesOfTheOtherScreensConnector) {
    const std::vector<Screen> screens = both(kRightOfOwn);
    EXPECT_EQ(olderNumber(FENWYN_MODE_INTERNAL, screens), 0);
    EXPECT_EQ(olderNumber(FENWYN_MODE_EXTERNAL, screens), 3);
    EXPECT_EQ(olderNumber(FENWYN_MODE_CLONE, screens), 8);
    EXPECT_EQ(olderNumber(FENWYN_MODE_EXTEND_LEFT, screens), 13);
    EXPECT_EQ(olderNumber(FENWYN_MODE_EXTERNAL, {fakeScreen(L"own", L"LCD", true, true)}), std::nullopt);
}

}  // namespace
}  // namespace win
