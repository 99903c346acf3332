// The display output with favourites: entries, texts, records, panic, and the stored favourites of the user.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "DisplaySource.h"
#include "OutputEntries.h"
#include "OutputFavourites.h"
#include "State.h"
#include "common/Handle.h"
#include "plugins/simulated/Plugin.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

std::set<void*> g_blocks;

void* WINAPI countingAllocate(LONG bytes) {
    void* const block = HeapAlloc(GetProcessHeap(), 0, static_cast<SIZE_T>(bytes));
    g_blocks.insert(block);
    return block;
}

void* WINAPI refusingAllocate(LONG) {
    return nullptr;
}

struct Info {
    LONG result = 0;
    LONG mode = -1;
    WCHAR* text = nullptr;
    ULONG recordCount = 0;
    ULONGLONG address = 0;
    ULONG flags = 0;

    [[nodiscard]] const FenwynDisplayRecord* records() const {
        return reinterpret_cast<const FenwynDisplayRecord*>(static_cast<ULONG_PTR>(address));
    }
};

class OutputWithFavourites : public testing::Test {
 protected:
    ~OutputWithFavourites() override {
        for (void* const block : g_blocks) {
            HeapFree(GetProcessHeap(), 0, block);
        }
        g_blocks.clear();
    }

    [[nodiscard]] LONG initialize(FenwynAllocate allocate = &countingAllocate) {
        return m_plugin.find<FenwynFnF5InitializeHotkeyDll>(FENWYN_FNF5_INITIALIZE)(0, &m_uReserved, allocate);
    }

    [[nodiscard]] LONG count() {
        LONG number = 0;
        m_plugin.find<FenwynFnF5GetDisplayItemCount>(FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT)(&number, &m_uReserved);
        return number;
    }

    [[nodiscard]] Info info(ULONG index) {
        Info entry;
        entry.result = m_plugin.find<FenwynFnF5GetDisplayItemInfo>(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO)(
            index, &entry.mode, &entry.text, &entry.recordCount, &entry.address, &entry.flags, &m_uReserved);
        return entry;
    }

    Sandbox m_sandbox;
    Plugin m_plugin{L"Output_2"};
    ULONG m_uReserved = 0;
};

TEST_F(OutputWithFavourites, OffersArrangementsThenFavouritesThenTheTwoPrograms) {
    ASSERT_EQ(initialize(), FENWYN_OK);
    ASSERT_EQ(count(), 8);
    const LONG modes[] = {0, 3, 4, 1, 6, 4, 9, 10};
    for (ULONG i = 0; i < 8; ++i) {
        const Info entry = info(i);
        EXPECT_EQ(entry.result, FENWYN_OK);
        EXPECT_EQ(entry.mode, modes[i]) << i;
        EXPECT_EQ(entry.text != nullptr, (entry.flags & FENWYN_ENTRY_CUSTOM) != 0) << i;
    }
    EXPECT_NE(info(8).result, FENWYN_OK);
    EXPECT_NE(info(0xFFFFFFFF).result, FENWYN_OK);
}

TEST_F(OutputWithFavourites, SavedFavouriteIsOfferedWithItsTextAndDisplays) {
    ASSERT_EQ(count(), 8);
    std::vector<favourites::Favourite> favourites = favourites::load();
    favourites.push_back({L"Stage", FENWYN_MODE_SEVERAL, {favourites::displayRecord(L"HDMI 2", 2, 3840, 2160)}});
    ASSERT_EQ(favourites::store(favourites), ERROR_SUCCESS);
    ASSERT_EQ(initialize(), FENWYN_OK);
    ASSERT_EQ(count(), 9);
    const Info entry = info(6);
    EXPECT_STREQ(entry.text, L"Stage");
    EXPECT_TRUE(g_blocks.contains(entry.text));
    EXPECT_EQ(entry.mode, FENWYN_MODE_SEVERAL);
    EXPECT_EQ(entry.flags, FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_SHOW_RESOLUTION);
    ASSERT_EQ(entry.recordCount, 1U);
    EXPECT_STREQ(entry.records()->szConnector, L"HDMI 2");
    EXPECT_EQ(entry.records()->uDisplayIndex, 2U);
    EXPECT_EQ(entry.records()->uHeight, 2160U);
}

TEST_F(OutputWithFavourites, RecordsStayWhileOtherIndexesAreAskedAndTheListIsCountedAgain) {
    ASSERT_EQ(initialize(), FENWYN_OK);
    ASSERT_EQ(count(), 8);
    const Info entry = info(2);
    ASSERT_EQ(entry.recordCount, 2U);
    ASSERT_EQ(favourites::store({}), ERROR_SUCCESS);
    ASSERT_EQ(count(), 7);
    for (ULONG i = 3; i < 7; ++i) {
        (void)info(i);
    }
    EXPECT_STREQ(entry.records()[0].szConnector, L"LCD");
    EXPECT_STREQ(entry.records()[1].szConnector, L"HDMI 1");
}

TEST_F(OutputWithFavourites, WithoutAnAllocatorItIsNotSupportedAndAnEmptyHeapGivesNoText) {
    EXPECT_NE(initialize(nullptr), FENWYN_OK);
    ASSERT_EQ(initialize(&refusingAllocate), FENWYN_OK);
    ASSERT_EQ(count(), 8);
    EXPECT_EQ(info(5).result, FENWYN_OK);
    EXPECT_EQ(info(5).text, nullptr);
}

TEST_F(OutputWithFavourites, OnlyArrangementsBecomeCurrent) {
    ASSERT_EQ(m_plugin.currentItem(), 0);
    EXPECT_EQ(m_plugin.select(5), FENWYN_OK);
    EXPECT_EQ(m_plugin.currentItem(), 5);
    for (const LONG entry : {4L, 6L, 7L, 8L}) {  // needs setup, two programs, none
        EXPECT_NE(m_plugin.select(entry), FENWYN_OK) << entry;
    }
    EXPECT_EQ(m_plugin.currentItem(), 5);
}

TEST_F(OutputWithFavourites, CurrentFavouriteThatWasDeletedGivesWayToTheBuiltInScreen) {
    ASSERT_EQ(m_plugin.select(5), FENWYN_OK);
    ASSERT_EQ(favourites::store({}), ERROR_SUCCESS);
    EXPECT_EQ(m_plugin.currentItem(), 0);
}

TEST_F(OutputWithFavourites, PanicBringsBackTheBuiltInScreenOnAnyThread) {
    ASSERT_EQ(m_plugin.select(3), FENWYN_OK);
    std::thread([&] {
        EXPECT_EQ(m_plugin.find<FenwynFnF5SetCurrentForPanic>(FENWYN_FNF5_SET_CURRENT_FOR_PANIC)(), FENWYN_OK);
    }).join();
    EXPECT_EQ(m_plugin.currentItem(), 0);
    EXPECT_EQ(sim::readNumber(L"Output_2", L"PanicCount", 0), 1U);
    const auto lines = m_sandbox.record();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1][2], "FnF5_SetCurrentForPanic");
    EXPECT_NE(lines[1][5], lines[0][5]);
}

TEST_F(OutputWithFavourites, FactoryFavouriteIsKeptForTheOtherProgramsOnce) {
    EXPECT_FALSE(favourites::exist());
    ASSERT_EQ(count(), 8);
    ASSERT_EQ(favourites::load().size(), 1U);
    EXPECT_EQ(favourites::load()[0].text, L"Desk");
    ASSERT_EQ(favourites::store({}), ERROR_SUCCESS);
    EXPECT_EQ(count(), 7) << "the user has deleted it";
    EXPECT_TRUE(favourites::load().empty());
}

TEST_F(OutputWithFavourites, NewMachineHasTheFactoryFavouriteAgain) {
    ASSERT_EQ(favourites::store({}), ERROR_SUCCESS);
    ASSERT_TRUE(sim::resetState());
    EXPECT_FALSE(favourites::exist());
    EXPECT_EQ(count(), 8);
}

TEST_F(OutputWithFavourites, TooManyFavouritesAndTooLongNamesAreCut) {
    std::vector<favourites::Favourite> many(favourites::kMost + 5);
    for (favourites::Favourite& favourite : many) {
        favourite.text = std::wstring(500, L'x');
        favourite.displays.resize(100);
    }
    ASSERT_EQ(favourites::store(many), ERROR_SUCCESS);
    const std::vector<favourites::Favourite> loaded = favourites::load();
    ASSERT_EQ(loaded.size(), favourites::kMost);
    EXPECT_EQ(loaded.front().text.size(), favourites::kMostTextChars);
    EXPECT_EQ(loaded.front().displays.size(), favourites::kMostDisplays);
}

TEST_F(OutputWithFavourites, FavouritesThatMakeNoSenseAreLeftOut) {
    ASSERT_EQ(favourites::store({{L"a", 0, {}}, {L"b", FENWYN_MODE_SAVE, {}}, {L"c", -1, {}}, {L"d", 8, {}}}),
              ERROR_SUCCESS);
    const std::vector<favourites::Favourite> loaded = favourites::load();
    ASSERT_EQ(loaded.size(), 2U);
    EXPECT_EQ(loaded[0].text, L"a");
    EXPECT_EQ(loaded[1].text, L"d");
}

TEST_F(OutputWithFavourites, StoredConnectorWithoutAnEndGetsOneAndAHalfRecordIsDropped) {
    favourites::Favourite favourite{L"a", 0, {favourites::displayRecord(L"LCD", 0, 1, 1)}};
    std::fill(std::begin(favourite.displays[0].szConnector), std::end(favourite.displays[0].szConnector), L'X');
    ASSERT_EQ(favourites::store({favourite, favourite}), ERROR_SUCCESS);
    EXPECT_EQ(favourites::load()[0].displays[0].szConnector[FENWYN_CONNECTOR_CHARS - 1], L'\0');
    const std::wstring second = std::wstring(OUTPUT_SETUP_REG_FAVOURITES) + L"\\1";
    RegSetKeyValueW(HKEY_CURRENT_USER, second.c_str(), L"Displays", REG_BINARY, &favourite.displays[0], 75);
    EXPECT_TRUE(favourites::load()[1].displays.empty());
}

// The display source that the display-configuration program asks.
class SimulatedDisplays : public testing::Test {
 protected:
    [[nodiscard]] std::vector<DisplaySourceDisplay> displays() const {
        const auto get = find<DisplaySourceGetDisplays>(DISPLAY_SOURCE_GET_DISPLAYS);
        std::vector<DisplaySourceDisplay> list(8);
        ULONG count = 0;
        EXPECT_EQ(get(list.data(), 8, &count), ERROR_SUCCESS);
        list.resize(count);
        return list;
    }
    [[nodiscard]] LONG set(LONG mode) const {
        return find<DisplaySourceSetArrangement>(DISPLAY_SOURCE_SET_ARRANGEMENT)(mode);
    }
    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_module.get(), name)));
    }

    Sandbox m_sandbox;
    common::UniqueModule m_module{LoadLibraryW(STAGE_DIR L"\\plugins\\SimDisplays.dll")};
};

TEST_F(SimulatedDisplays, AreThoseOfTheCardsCurrentEntry) {
    const Plugin card(L"Output_2");
    std::vector<DisplaySourceDisplay> list = displays();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_STREQ(list[0].szConnector, L"LCD");
    EXPECT_NE(list[0].bBuiltIn, 0);
    EXPECT_EQ(list[0].lWidth, 1920);
    EXPECT_EQ(card.select(2), FENWYN_OK);
    list = displays();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_STREQ(list[1].szConnector, L"HDMI 1");
    EXPECT_EQ(list[1].bBuiltIn, 0);
    EXPECT_EQ(list[1].lLeft, 1920);
    EXPECT_EQ(list[1].lTop, 0);
    EXPECT_EQ(card.select(1), FENWYN_OK);
    list = displays();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1].lLeft, 0) << "the same picture lies at the same place";
    EXPECT_EQ(card.select(5), FENWYN_OK);
    EXPECT_STREQ(displays()[1].szConnector, L"DisplayPort 1") << "a favourite's own displays";
}

TEST_F(SimulatedDisplays, ArrangementThatNeedsSetupBecomesTheCardsCurrentEntry) {
    const Plugin card(L"Output_2");
    EXPECT_NE(card.select(4), FENWYN_OK);
    EXPECT_EQ(set(FENWYN_MODE_EXTEND_ABOVE), ERROR_SUCCESS);
    EXPECT_EQ(card.currentItem(), 4);
    ASSERT_EQ(displays().size(), 2U);
    EXPECT_EQ(displays()[1].lTop, -1440);
    EXPECT_EQ(sim::readText({}, sim::kLastFunction, {}), L"Output_2");
}

TEST_F(SimulatedDisplays, ArrangementThatThereIsNotIsRefusedAndNothingChanges) {
    const Plugin card(L"Output_2");
    EXPECT_EQ(card.select(1), FENWYN_OK);
    for (const LONG mode : {LONG{FENWYN_MODE_EXTEND_LEFT}, LONG{FENWYN_MODE_SEVERAL}, LONG{FENWYN_MODE_SAVE}, -1L}) {
        EXPECT_EQ(set(mode), ERROR_NOT_SUPPORTED) << mode;
    }
    EXPECT_EQ(card.currentItem(), 1);
    EXPECT_EQ(set(FENWYN_MODE_PROJECTOR), ERROR_SUCCESS) << "the other screen, whatever it is";
    EXPECT_EQ(card.currentItem(), 3);
}

TEST_F(SimulatedDisplays, RoomAndPlacesAreMinded) {
    EXPECT_EQ(Plugin(L"Output_2").select(2), FENWYN_OK);
    const auto get = find<DisplaySourceGetDisplays>(DISPLAY_SOURCE_GET_DISPLAYS);
    DisplaySourceDisplay two[2] = {};
    ULONG count = 9;
    EXPECT_EQ(get(two, 1, &count), ERROR_SUCCESS);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(two[1].lWidth, 0);
    EXPECT_EQ(get(nullptr, 1, &count), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(get(two, 1, nullptr), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace plugintest
