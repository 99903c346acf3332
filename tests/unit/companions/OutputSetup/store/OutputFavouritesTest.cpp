// Where favourites are stored, and how those of the old place get there.
#include "OutputFavourites.h"

#include <gtest/gtest.h>

#include "common/Handle.h"
#include "support/RegistryRoom.h"

namespace {

using Names = std::vector<std::wstring>;

Names storedNames() {
    Names names;
    for (const favourites::Favourite& favourite : favourites::load()) {
        names.push_back(favourite.text);
    }
    return names;
}

bool hasKey(const wchar_t* path) {
    common::UniqueRegKey key;
    return ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

class KeptFavourites : public testing::Test {
 protected:
    // As an earlier version left them.
    static void keepInTheOldPlace(const std::wstring& number, const std::wstring& name) {
        const std::wstring key = std::wstring(OUTPUT_SETUP_REG_OLD_FAVOURITES) + L"\\" + number;
        const DWORD mode = FENWYN_MODE_EXTEND_LEFT;
        const FenwynDisplayRecord record = favourites::displayRecord(L"LCD", 0, 800, 600);
        ::RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"Text", REG_SZ, name.c_str(),
                          static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t)));
        ::RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"Mode", REG_DWORD, &mode, sizeof mode);
        ::RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"Displays", REG_BINARY, &record, sizeof record);
    }

    support::RegistryRoom m_registry;
};

}  // namespace

TEST_F(KeptFavourites, StandBelowTheProductsKey) {
    EXPECT_FALSE(favourites::exist());
    ASSERT_EQ(favourites::store({{L"Desk", FENWYN_MODE_CLONE, {}}}), ERROR_SUCCESS);
    EXPECT_TRUE(favourites::exist());
    EXPECT_TRUE(hasKey(L"SOFTWARE\\KESTOVA\\Fenwyn\\Favourites\\0"));
    EXPECT_EQ(storedNames(), Names{L"Desk"});
}

TEST_F(KeptFavourites, OldPlaceIsReadOnceAndMoved) {
    keepInTheOldPlace(L"0", L"Desk");
    keepInTheOldPlace(L"1", L"Home");
    ASSERT_EQ(storedNames(), (Names{L"Desk", L"Home"}));
    EXPECT_FALSE(hasKey(OUTPUT_SETUP_REG_OLD_FAVOURITES));
    const favourites::Favourite moved = favourites::load()[1];
    EXPECT_EQ(moved.mode, FENWYN_MODE_EXTEND_LEFT);
    ASSERT_EQ(moved.displays.size(), 1U);
    EXPECT_EQ(moved.displays[0].uWidth, 800U);
}

TEST_F(KeptFavourites, EmptyListOfTheOldPlaceCountsToo) {
    common::UniqueRegKey key;
    ASSERT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, OUTPUT_SETUP_REG_OLD_FAVOURITES, 0, nullptr, 0, KEY_READ, nullptr,
                                key.put(), nullptr),
              ERROR_SUCCESS);
    EXPECT_TRUE(favourites::exist()) << "the user has deleted what there was";
    EXPECT_TRUE(favourites::load().empty());
}

TEST_F(KeptFavourites, OldPlaceIsNotLookedAtOnceThereIsANewList) {
    ASSERT_EQ(favourites::store({{L"New", FENWYN_MODE_CLONE, {}}}), ERROR_SUCCESS);
    keepInTheOldPlace(L"0", L"Old");
    keepInTheOldPlace(L"1", L"Older");
    EXPECT_EQ(storedNames(), Names{L"New"});
    EXPECT_TRUE(hasKey(OUTPUT_SETUP_REG_OLD_FAVOURITES));
}

TEST_F(KeptFavourites, KeepWhichMonitorIsMeantAndWhereItLies) {
    favourites::Favourite desk{L"Desk", FENWYN_MODE_EXTEND_LEFT, {}, {}};
    desk.displays = {favourites::displayRecord(L"LCD", 0, 800, 600),
                     favourites::displayRecord(L"HDMI 1", 1, 1024, 768)};
    desk.positions = {{L"\\\\?\\DISPLAY#A", {0, 0}}, {L"\\\\?\\DISPLAY#B", {-1024, 5}}};
    ASSERT_EQ(favourites::store({desk}), ERROR_SUCCESS);
    const std::vector<favourites::Favourite> kept = favourites::load();
    ASSERT_EQ(kept.size(), 1U);
    ASSERT_EQ(kept[0].positions.size(), 2U);
    EXPECT_EQ(kept[0].positions[0].path, L"\\\\?\\DISPLAY#A");
    EXPECT_EQ(kept[0].positions[1].path, L"\\\\?\\DISPLAY#B");
    EXPECT_EQ(kept[0].positions[1].corner.x, -1024);
    EXPECT_EQ(kept[0].positions[1].corner.y, 5);
}

// Favourites of earlier versions, and values that do not belong together.
TEST_F(KeptFavourites, WithoutAMonitorForEachDisplayOnlyTheModeCounts) {
    favourites::Favourite desk{L"Desk", FENWYN_MODE_CLONE, {favourites::displayRecord(L"LCD", 0, 800, 600)}, {}};
    ASSERT_EQ(favourites::store({desk}), ERROR_SUCCESS);
    EXPECT_TRUE(favourites::load()[0].positions.empty());
    desk.positions = {{L"\\\\?\\DISPLAY#A", {0, 0}}};
    ASSERT_EQ(favourites::store({desk}), ERROR_SUCCESS);
    ASSERT_EQ(favourites::load()[0].positions.size(), 1U);
    const LONG corners[4]{};
    ::RegSetKeyValueW(HKEY_CURRENT_USER, OUTPUT_SETUP_REG_FAVOURITES L"\\0", OUTPUT_SETUP_VALUE_CORNERS, REG_BINARY,
                      corners, sizeof corners);
    EXPECT_TRUE(favourites::load()[0].positions.empty());
}
