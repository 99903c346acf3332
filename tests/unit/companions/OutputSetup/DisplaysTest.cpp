// How the displays form the desktop, and how they are arranged.
#include <gtest/gtest.h>

#include "Displays.h"

using setup::Display;

namespace {

Display own(RECT place) {
    return {L"\\\\.\\DISPLAY1", L"Panel", L"LCD", true, place};
}
Display other(RECT place) {
    return {L"\\\\.\\DISPLAY2", L"Monitor", L"HDMI 1", false, place};
}

constexpr RECT kOwn{0, 0, 1920, 1080};

std::vector<std::pair<LONG, LONG>> placesFor(LONG arrangement, const std::vector<Display>& displays) {
    std::vector<std::pair<LONG, LONG>> places;
    for (const POINT& place : setup::placesFor(arrangement, displays)) {
        places.emplace_back(place.x, place.y);
    }
    return places;
}

using Places = std::vector<std::pair<LONG, LONG>>;

}  // namespace

TEST(Arrangement, OfOneDisplayDependsOnItsConnector) {
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn)}), FENWYN_MODE_INTERNAL);
    EXPECT_EQ(setup::arrangementOf(std::vector{other(kOwn)}), FENWYN_MODE_EXTERNAL);
    EXPECT_EQ(setup::arrangementOf({}), FENWYN_MODE_INTERNAL);
}

TEST(Arrangement, SamePlaceIsTheSamePicture) {
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other(kOwn)}), FENWYN_MODE_CLONE);
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other(kOwn), other(kOwn)}), FENWYN_MODE_CLONE);
}

TEST(Arrangement, OfAnExtendedDesktopIsTheSideOfTheOthers) {
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other({1920, -200, 4480, 1240})}), FENWYN_MODE_EXTEND_RIGHT);
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other({-2560, 0, 0, 1440})}), FENWYN_MODE_EXTEND_LEFT);
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other({0, -1440, 2560, 0})}), FENWYN_MODE_EXTEND_ABOVE);
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other({-10, 1080, 2550, 2520})}), FENWYN_MODE_EXTEND_BELOW);
}

TEST(Arrangement, IsToldFromTheNotebooksOwnScreenWhereverItComesInTheList) {
    EXPECT_EQ(setup::arrangementOf(std::vector{other({0, 0, 2560, 1440}), own({2560, 0, 4480, 1080})}),
              FENWYN_MODE_EXTEND_LEFT);
}

TEST(Arrangement, ThatNoneDescribesIsSeveral) {
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other({1920, 0, 2920, 800}), other({-800, 0, 0, 600})}),
              FENWYN_MODE_SEVERAL);
    EXPECT_EQ(setup::arrangementOf(std::vector{own(kOwn), other(kOwn), other({1920, 0, 2920, 800})}),
              FENWYN_MODE_SEVERAL);
}

TEST(Places, TheOthersLieInARowFromTheOwnScreenOutwards) {
    const std::vector displays{own(kOwn), other({0, 0, 2560, 1440}), other({0, 0, 800, 600})};
    // Only the first display begins the desktop.
    std::vector<Display> apart = displays;
    apart[1].place = {5000, 0, 7560, 1440};
    apart[2].place = {9000, 0, 9800, 600};
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_RIGHT, apart), (Places{{0, 0}, {1920, 0}, {4480, 0}}));
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_LEFT, apart), (Places{{0, 0}, {-2560, 0}, {-3360, 0}}));
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_ABOVE, apart), (Places{{0, 0}, {0, -1440}, {0, -2040}}));
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_BELOW, apart), (Places{{0, 0}, {0, 1080}, {0, 2520}}));
}

TEST(Places, TheDisplayThatBeginsTheDesktopStaysThere) {
    const std::vector displays{other({0, 0, 2560, 1440}), own({2560, 0, 4480, 1080})};
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_RIGHT, displays), (Places{{0, 0}, {-1920, 0}}));
    EXPECT_EQ(placesFor(FENWYN_MODE_EXTEND_LEFT, displays), (Places{{0, 0}, {2560, 0}}));
}

TEST(Places, WhatIsPlacedIsRecognised) {
    for (LONG mode = FENWYN_MODE_EXTEND_RIGHT; mode <= FENWYN_MODE_EXTEND_BELOW; ++mode) {
        std::vector displays{own(kOwn), other({1920, 0, 4480, 1440}), other({4480, 0, 5280, 600})};
        const std::vector<POINT> places = setup::placesFor(mode, displays);
        ASSERT_EQ(places.size(), displays.size());
        for (std::size_t i = 0; i < displays.size(); ++i) {
            RECT& place = displays[i].place;
            ::OffsetRect(&place, places[i].x - place.left, places[i].y - place.top);
        }
        EXPECT_EQ(setup::arrangementOf(displays), mode);
    }
}

TEST(Places, OnlyForAnExtendedDesktop) {
    const std::vector displays{own(kOwn), other({1920, 0, 4480, 1440})};
    for (const LONG mode : {LONG{FENWYN_MODE_INTERNAL}, LONG{FENWYN_MODE_CLONE}, LONG{FENWYN_MODE_SEVERAL}, -1L, 99L}) {
        EXPECT_TRUE(setup::placesFor(mode, displays).empty()) << mode;
    }
    EXPECT_TRUE(setup::placesFor(FENWYN_MODE_EXTEND_LEFT, {}).empty());
}

TEST(Topology, IsKnownForEveryArrangementThatCanBeSet) {
    for (LONG mode = FENWYN_MODE_INTERNAL; mode <= FENWYN_MODE_EXTEND_BELOW; ++mode) {
        EXPECT_TRUE(setup::topologyOf(mode).has_value()) << mode;
    }
    EXPECT_EQ(setup::topologyOf(FENWYN_MODE_INTERNAL), static_cast<UINT32>(SDC_TOPOLOGY_INTERNAL));
    EXPECT_EQ(setup::topologyOf(FENWYN_MODE_PROJECTOR), static_cast<UINT32>(SDC_TOPOLOGY_EXTERNAL));
    EXPECT_EQ(setup::topologyOf(FENWYN_MODE_CLONE), static_cast<UINT32>(SDC_TOPOLOGY_CLONE));
    EXPECT_EQ(setup::topologyOf(FENWYN_MODE_EXTEND_BELOW), static_cast<UINT32>(SDC_TOPOLOGY_EXTEND));
    EXPECT_FALSE(setup::topologyOf(FENWYN_MODE_SEVERAL).has_value());
    EXPECT_FALSE(setup::topologyOf(-1).has_value());
}

TEST(Connector, NamesAreThoseThatThePreviewKnows) {
    EXPECT_STREQ(setup::connectionOf(static_cast<DWORD>(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_INTERNAL), false).word, L"LCD");
    EXPECT_STREQ(setup::connectionOf(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_HD15, true).word, L"RGB");
    EXPECT_STREQ(setup::connectionOf(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DVI, true).word, L"DVI");
    EXPECT_STREQ(setup::connectionOf(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_HDMI, true).word, L"HDMI");
    EXPECT_STREQ(setup::connectionOf(DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DISPLAYPORT_EXTERNAL, true).word, L"DisplayPort");
}

TEST(Connector, UnknownOnesAreTheOwnScreenFirstAndExternalThen) {
    EXPECT_TRUE(setup::connectionOf(setup::kUnknownTechnology, true).builtIn);
    EXPECT_FALSE(setup::connectionOf(setup::kUnknownTechnology, false).builtIn);
}

TEST(Connector, ExternalOnesAreCountedByKind) {
    std::vector<Display> displays;
    std::vector<std::wstring> names;
    const setup::Connection lcd{L"LCD", true};
    const setup::Connection hdmi{L"HDMI", false};
    const setup::Connection dvi{L"DVI", false};
    for (const setup::Connection& connection : {lcd, hdmi, dvi, hdmi, lcd}) {
        Display display;
        setup::nameConnector(displays, display, connection);
        displays.push_back(display);
        names.push_back(display.connector);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"LCD", L"HDMI 1", L"DVI 1", L"HDMI 2", L"LCD 2"}));
}

TEST(Favourite, CarriesOneRecordPerDisplay) {
    const std::vector displays{own(kOwn), other({1920, 0, 4480, 1440})};
    const favourites::Favourite favourite = setup::favouriteOf(L"Desk", displays);
    EXPECT_EQ(favourite.text, L"Desk");
    EXPECT_EQ(favourite.mode, FENWYN_MODE_EXTEND_RIGHT);
    ASSERT_EQ(favourite.displays.size(), 2U);
    EXPECT_STREQ(favourite.displays[1].szConnector, L"HDMI 1");
    EXPECT_EQ(favourite.displays[1].uDisplayIndex, 1U);
    EXPECT_EQ(favourite.displays[1].uWidth, 2560U);
    EXPECT_EQ(favourite.displays[1].uHeight, 1440U);
    EXPECT_TRUE(favourite.positions.empty()) << "these monitors have no paths";
}

TEST(Favourite, CarriesWhichMonitorsItMeansWhenAllHaveAPath) {
    std::vector displays{own(kOwn), other({1920, 40, 4480, 1480})};
    displays[0].path = L"a";
    displays[1].path = L"b";
    const favourites::Favourite favourite = setup::favouriteOf(L"Desk", displays);
    ASSERT_EQ(favourite.positions.size(), 2U);
    EXPECT_EQ(favourite.positions[1].path, L"b");
    EXPECT_EQ(favourite.positions[1].corner.x, 1920);
    EXPECT_EQ(favourite.positions[1].corner.y, 40);
}

TEST(Machine, ListsTheDisplaysOfThisComputer) {
    const std::vector<Display> displays = setup::attachedDisplays();
    ASSERT_FALSE(displays.empty());
    EXPECT_FALSE(displays[0].name.empty());
    EXPECT_FALSE(displays[0].connector.empty());
    EXPECT_TRUE(displays[0].path.starts_with(L"\\\\?\\DISPLAY#"));
    EXPECT_EQ(displays[0].place.right - displays[0].place.left, ::GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(displays[0].place.bottom - displays[0].place.top, ::GetSystemMetrics(SM_CYSCREEN));
}
