// Where favourites are stored, and how those of the old place get there.
#include "OutputFavourites.h"

#include <gtest/gtest.h>

#include <utility>

#include "common/Handle.h"
#include "companions/OutputSetup/store/RegistryChanges.h"
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

namespace {

// Fails from the given change on, as if the process had ended before it.
class EndedProcess : public favourites::IRegistryChanges {
 public:
    explicit EndedProcess(int changes) : m_left(changes) {}
    ~EndedProcess() override { favourites::registryChanges() = m_before; }
    EndedProcess(const EndedProcess&) = delete;
    EndedProcess& operator=(const EndedProcess&) = delete;

    LSTATUS set(HKEY key, const wchar_t* subKey, const wchar_t* value, DWORD type, const void* data,
                DWORD bytes) override {
        return ended() ? ERROR_PROCESS_ABORTED : IRegistryChanges::set(key, subKey, value, type, data, bytes);
    }
    // Where the process ends within a copy, part of the list has arrived.
    LSTATUS copy(HKEY from, HKEY key, const wchar_t* subKey) override {
        if (!ended()) {
            return IRegistryChanges::copy(from, key, subKey);
        }
        common::UniqueRegKey first;
        if (m_left == -1 && ::RegOpenKeyExW(from, L"0", 0, KEY_READ, first.put()) == ERROR_SUCCESS) {
            IRegistryChanges::copy(first.get(), key, (std::wstring(subKey) + L"\\0").c_str());
        }
        return ERROR_PROCESS_ABORTED;
    }
    LSTATUS remove(HKEY key, const wchar_t* subKey) override {
        return ended() ? ERROR_PROCESS_ABORTED : IRegistryChanges::remove(key, subKey);
    }

 private:
    bool ended() { return m_left-- <= 0; }

    int m_left;
    favourites::IRegistryChanges* m_before = std::exchange(favourites::registryChanges(), this);
};

favourites::Favourite twoScreens(const std::wstring& name, ULONG width) {
    favourites::Favourite favourite{name, FENWYN_MODE_EXTEND_LEFT, {}, {}};
    favourite.displays = {favourites::displayRecord(L"LCD", 0, width, 600),
                          favourites::displayRecord(L"HDMI 1", 1, width, 768)};
    favourite.positions = {{L"A" + name, {0, 0}}, {L"B" + name, {static_cast<LONG>(width), 5}}};
    return favourite;
}

bool same(const favourites::Favourite& one, const favourites::Favourite& other) {
    return one.text == other.text && one.displays.size() == other.displays.size() &&
           one.displays[1].uWidth == other.displays[1].uWidth && one.positions.size() == other.positions.size() &&
           one.positions[1].path == other.positions[1].path && one.positions[1].corner.x == other.positions[1].corner.x;
}

}  // namespace

TEST_F(KeptFavourites, AreTheOldOrTheNewOnesWhereverTheProcessEnds) {
    const std::vector<favourites::Favourite> before{twoScreens(L"Desk", 800), twoScreens(L"Home", 1024),
                                                    twoScreens(L"Hall", 1280)};
    const std::vector<favourites::Favourite> after{twoScreens(L"Sofa", 640), twoScreens(L"Bed", 320)};
    LSTATUS error = ERROR_PROCESS_ABORTED;
    int changes = 0;
    for (; error != ERROR_SUCCESS; ++changes) {
        // Also what one that ended leaves is no harm to the next, wherever that one ends.
        for (const int first : {1000, 0, 3, 7, 9, 14}) {
            ASSERT_EQ(favourites::store(before), ERROR_SUCCESS);
            {
                const EndedProcess ended(first);
                static_cast<void>(favourites::store(after));
            }
            const auto left = favourites::load();
            {
                const EndedProcess ended(changes);
                error = favourites::store(after);
            }
            const auto found = favourites::load();
            ASSERT_GE(found.size(), after.size()) << changes;
            for (std::size_t i = 0; i < found.size(); ++i) {
                EXPECT_TRUE(same(found[i], left[i]) || same(found[i], after[i])) << changes << ", number " << i;
            }
        }
    }
    EXPECT_GT(changes, 10) << "each value is a change";
    EXPECT_EQ(storedNames(), (Names{L"Sofa", L"Bed"}));
    EXPECT_FALSE(hasKey(OUTPUT_SETUP_REG_FAVOURITES L"\\0.new"));
    EXPECT_FALSE(hasKey(OUTPUT_SETUP_REG_FAVOURITES L"\\2"));
}

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

TEST_F(KeptFavourites, AreMovedWholeWhereverTheProcessEnds) {
    for (int changes = 0; changes < 6; ++changes) {
        ::RegDeleteTreeW(HKEY_CURRENT_USER, OUTPUT_SETUP_REG_FAVOURITES);
        keepInTheOldPlace(L"0", L"Desk");
        keepInTheOldPlace(L"1", L"Home");
        {
            const EndedProcess ended(changes);
            static_cast<void>(favourites::load());
        }
        EXPECT_EQ(storedNames(), (Names{L"Desk", L"Home"})) << changes;
        EXPECT_FALSE(hasKey(OUTPUT_SETUP_REG_OLD_FAVOURITES)) << changes;
    }
}

// It only made the key.
TEST_F(KeptFavourites, OldListCountsUntilAnythingStandsInTheNewPlace) {
    common::UniqueRegKey key;
    ASSERT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, OUTPUT_SETUP_REG_FAVOURITES, 0, nullptr, 0, KEY_READ, nullptr,
                                key.put(), nullptr),
              ERROR_SUCCESS);
    keepInTheOldPlace(L"0", L"Desk");
    EXPECT_EQ(storedNames(), Names{L"Desk"});
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
