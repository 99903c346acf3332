// The behaviour of every plug-in of the simulated notebook, row by row of the table.
#include <gtest/gtest.h>

#include <climits>

#include <algorithm>

#include "Functions.h"
#include "Plugin.h"
#include "PluginChecker.h"
#include "State.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

std::string narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

class EachPlugin : public testing::TestWithParam<sim::Function> {
 protected:
    Sandbox m_sandbox;
};

INSTANTIATE_TEST_SUITE_P(Simulated, EachPlugin, testing::ValuesIn(sim::kFunctions),
                         [](const testing::TestParamInfo<sim::Function>& row) { return narrow(row.param.name); });

TEST_P(EachPlugin, KeepsTheContractWithoutAnyWarning) {
    const check::CReport report = check::checkPlugin(pathOf(GetParam().name), GetParam().name);
    EXPECT_EQ(report.count(check::Weight::Error) + report.count(check::Weight::Warning), 0U) << narrow(report.text());
}

TEST_P(EachPlugin, ExportsNothingThatItsFunctionDoesNotNeed) {
    const Plugin plugin(GetParam().name);
    ASSERT_TRUE(plugin.loaded());
    const bool favourites = GetParam().kind == sim::Kind::Favourites;
    const bool slider = GetParam().kind == sim::Kind::Slider;
    EXPECT_EQ(plugin.find<FARPROC>(FENWYN_INITIALIZE) != nullptr, !favourites);
    EXPECT_EQ(plugin.find<FARPROC>(FENWYN_FNF5_INITIALIZE) != nullptr, favourites);
    EXPECT_EQ(plugin.find<FARPROC>(FENWYN_SELECT_ITEM) != nullptr, !slider);
    EXPECT_EQ(plugin.find<FARPROC>(FENWYN_FOCUS_ITEM) != nullptr, slider);
    EXPECT_EQ(plugin.find<FARPROC>(FENWYN_GET_CUSTOM_ITEM_TEXT) != nullptr, GetParam().kind == sim::Kind::Plans);
}

TEST_P(EachPlugin, RecordsItsCallsInOrderWithTheCallingThread) {
    const Plugin plugin(GetParam().name);
    ASSERT_TRUE(plugin.loaded());
    (void)plugin.currentItem();
    plugin.finalize();
    const auto lines = m_sandbox.record();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0][1], narrow(GetParam().name));
    EXPECT_EQ(lines[0][2], "GetCurrentItem");
    EXPECT_EQ(lines[0][4], "0");
    EXPECT_EQ(lines[0][5], std::to_string(GetCurrentThreadId()));
    EXPECT_EQ(lines[1][2], "FinalizeHotkeyDll");
}

TEST_P(EachPlugin, GivesTheResultThatTheStateNamesAndDoesNothing) {
    sim::writeNumber(GetParam().name, L"GetCurrentItem.Result", 7);
    EXPECT_EQ(Plugin(GetParam().name).currentItem(), -1007);
}

TEST_P(EachPlugin, WaitsAsLongAsTheStateNames) {
    sim::writeNumber(GetParam().name, L"GetCurrentItem.Delay", 60);
    const ULONGLONG start = GetTickCount64();
    (void)Plugin(GetParam().name).currentItem();
    EXPECT_GE(GetTickCount64() - start, 50U);
}

TEST_P(EachPlugin, SurvivesNullArguments) {
    const Plugin plugin(GetParam().name);
    EXPECT_NE(plugin.find<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM)(nullptr, nullptr), FENWYN_OK);
    if (const auto info = plugin.find<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO); info != nullptr) {
        EXPECT_LT(info(nullptr, nullptr, nullptr), 0);
    }
}

TEST_P(EachPlugin, RefusesAnItemThatItDoesNotOffer) {
    const Plugin plugin(GetParam().name);
    const LONG before = plugin.currentItem();
    const auto choose =
        plugin.find<FenwynSelectItem>(GetParam().kind == sim::Kind::Slider ? FENWYN_FOCUS_ITEM : FENWYN_SELECT_ITEM);
    ULONG reserved = 0;
    for (const LONG item : {-2L, 31L, 64L, LONG_MAX, LONG_MIN}) {
        EXPECT_NE(choose(item, &reserved), FENWYN_OK) << item;
    }
    EXPECT_EQ(plugin.currentItem(), before);
}

TEST_P(EachPlugin, KeepsItsLibraryNoLongerThanItIsHeld) {
    { const Plugin plugin(GetParam().name); }
    EXPECT_EQ(GetModuleHandleW(pathOf(GetParam().name).c_str()), nullptr);
}

TEST(SimulatedPlugins, SampleListHasFourteenCardsAndBrightnessHasTwoAdjacentKeys) {
    EXPECT_EQ(std::count_if(std::begin(sim::kFunctions), std::end(sim::kFunctions),
                            [](const sim::Function& function) { return function.inSample; }),
              14);
    const sim::Function& brightness = *sim::findFunction(L"Brightness");
    ASSERT_EQ(brightness.keyCount(), 2U);
    EXPECT_EQ(brightness.keys[1].code, brightness.keys[0].code + 1);
    EXPECT_EQ(sim::findFunction(L"mute"), nullptr);
}

}  // namespace
}  // namespace plugintest
