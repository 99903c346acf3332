// The simulated machine's state, function by function, through the exports.
#include <gtest/gtest.h>

#include "Functions.h"
#include "Machine.h"
#include "Plugin.h"
#include "State.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

class Machine : public testing::Test {
 protected:
    static std::wstring textOf(const wchar_t* function) { return sim::stateText(*sim::findFunction(function)); }

    Sandbox m_sandbox;
};

TEST_F(Machine, ToggleKeepsItsItemOverARestart) {
    ASSERT_EQ(Plugin(L"Mute").currentItem(), 1);
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    EXPECT_EQ(Plugin(L"Mute").currentItem(), 0);
    EXPECT_EQ(textOf(L"Mute"), L"muted");
}

TEST_F(Machine, ActionsOnlyCountAndCancelCountsNothing) {
    for (const wchar_t* const name : {L"Lock", L"Sleep", L"Hibernate"}) {
        const Plugin plugin(name);
        EXPECT_EQ(plugin.select(1), FENWYN_OK);
        EXPECT_EQ(textOf(name), L"not yet");
        EXPECT_EQ(plugin.select(0), FENWYN_OK);
        EXPECT_EQ(plugin.select(0), FENWYN_OK);
        EXPECT_EQ(textOf(name), L"2 times");
    }
}

TEST_F(Machine, ZoomCountsPositionsAmongTheItemsThatExist) {
    sim::writeNumber(L"Zoom", L"Items", 5);
    const Plugin plugin(L"Zoom");
    EXPECT_EQ(plugin.firstInfo(), 5U);
    EXPECT_EQ(plugin.select(1), FENWYN_OK);
    EXPECT_EQ(plugin.currentItem(), 2);
    EXPECT_NE(plugin.select(2), FENWYN_OK);
}

TEST_F(Machine, KeyboardLightCarriesItsTimerInTheHighHalf) {
    const Plugin plugin(L"KBB");
    EXPECT_EQ(plugin.select(0), FENWYN_OK);
    EXPECT_EQ(plugin.currentItem(), 0x000F0000);
    sim::writeNumber(L"KBB", L"Timer", 30);
    EXPECT_EQ(plugin.currentItem(), 30 << 16);
    EXPECT_EQ(textOf(L"KBB"), L"timer, 30 s");
}

TEST_F(Machine, CancelLeavesTheDriveAsItIs) {
    const Plugin plugin(L"ODD");
    EXPECT_EQ(plugin.select(2), FENWYN_OK);
    EXPECT_EQ(plugin.select(4), FENWYN_OK);
    EXPECT_EQ(plugin.currentItem(), 2);
}

TEST_F(Machine, PowerPlanNamesAreSystemStringsThatTheStateMayReplace) {
    const Plugin plugin(L"PowerPlan");
    const auto nameOf = plugin.find<FenwynGetCustomItemText>(FENWYN_GET_CUSTOM_ITEM_TEXT);
    ULONGLONG reserved = 0;
    BSTR text = nullptr;
    ASSERT_EQ(nameOf(1, &text, &reserved), FENWYN_OK);
    EXPECT_STREQ(text, L"Balanced");
    EXPECT_EQ(SysStringLen(text), 8U);
    SysFreeString(text);
    sim::writeText(L"PowerPlan", L"Name1", L"Quiet");
    text = nullptr;
    ASSERT_EQ(nameOf(1, &text, &reserved), FENWYN_OK);
    EXPECT_STREQ(text, L"Quiet");
    SysFreeString(text);
    EXPECT_NE(nameOf(4, &text, &reserved), FENWYN_OK);
    EXPECT_NE(nameOf(0xFFFFFFFF, &text, &reserved), FENWYN_OK);
    EXPECT_NE(nameOf(0, nullptr, &reserved), FENWYN_OK);
}

TEST_F(Machine, EachRadioOffersToBeSwitchedTheOtherWay) {
    const Plugin plugin(L"Wireless");
    EXPECT_EQ(plugin.firstInfo(), 0x4000U | 1U << 0 | 1U << 3);
    EXPECT_EQ(plugin.select(0), FENWYN_OK);
    EXPECT_EQ(plugin.firstInfo(), 0x4000U | 1U << 1 | 1U << 3);
    EXPECT_EQ(plugin.select(3), FENWYN_OK);
    EXPECT_EQ(textOf(L"Wireless"), L"LAN off, short-range on");
    EXPECT_NE(plugin.select(3), FENWYN_OK);
    EXPECT_EQ(plugin.select(14), FENWYN_OK);
    EXPECT_EQ(textOf(L"Wireless"), L"LAN off, short-range on");
}

TEST_F(Machine, AllFifteenWirelessStatesCanBeOfferedAndChosen) {
    sim::writeNumber(L"Wireless", L"Items", 0x7FFF);
    sim::writeNumber(L"Wireless", L"Fitted", 0x3F);
    const Plugin plugin(L"Wireless");
    EXPECT_EQ(plugin.firstInfo(), 0x7FFFU);
    for (LONG state = 0; state < 15; ++state) {
        EXPECT_EQ(plugin.select(state), FENWYN_OK) << state;
    }
    EXPECT_EQ(plugin.select(12), FENWYN_OK);
    EXPECT_EQ(sim::readNumber(L"Wireless", L"Radios", 0), 0x3FU);
    EXPECT_EQ(plugin.select(13), FENWYN_OK);
    EXPECT_EQ(sim::readNumber(L"Wireless", L"Radios", 1), 0U);
}

TEST_F(Machine, WirelessErrorModeFailsTheInformationCall) {
    sim::writeNumber(L"Wireless", L"ErrorMode", 1);
    ULONG first = 0;
    ULONG second = 0;
    EXPECT_LT(Plugin(L"Wireless").info(first, second), 0);
    EXPECT_EQ(textOf(L"Wireless"), L"states unknown");
}

TEST_F(Machine, BrightnessFollowsFocusItemAndIgnoresNoChoice) {
    const Plugin plugin(L"Brightness");
    EXPECT_EQ(plugin.firstInfo(), 10U);
    EXPECT_EQ(plugin.currentItem(), 7);
    EXPECT_EQ(plugin.focus(10), FENWYN_OK);
    EXPECT_EQ(plugin.focus(-1), FENWYN_OK);
    EXPECT_EQ(plugin.currentItem(), 10);
    EXPECT_NE(plugin.focus(11), FENWYN_OK);
    EXPECT_EQ(textOf(L"Brightness"), L"level 10 of 10");
}

TEST_F(Machine, DualControlPacksBothLevelsAndWritesOneByte) {
    sim::writeNumber(L"Brightness", L"Dual", 1);
    sim::writeNumber(L"Brightness", L"Item", 5);
    sim::writeNumber(L"Brightness", L"Item2", 3);
    const Plugin plugin(L"Brightness");
    EXPECT_EQ(plugin.currentItem(), 0x0305);
    BYTE bytes[4] = {0, 0xA5, 0xA5, 0xA5};
    EXPECT_EQ(plugin.find<FenwynIsDualBrtCtrl>(FENWYN_IS_DUAL_BRT_CTRL)(bytes), FENWYN_OK);
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 0xA5);
    EXPECT_EQ(textOf(L"Brightness"), L"level 5 and 3 of 10");
}

TEST_F(Machine, OlderOutputTakesTheArrangementsOfBothMasks) {
    sim::writeNumber(L"Output", L"Items", 0x5);
    sim::writeNumber(L"Output", L"Items2", 0x80000001);
    const Plugin plugin(L"Output");
    for (const LONG number : {0L, 2L, 32L, 63L}) {
        EXPECT_EQ(plugin.select(number), FENWYN_OK) << number;
        EXPECT_EQ(plugin.currentItem(), number);
    }
    for (const LONG number : {1L, 19L, 33L, 58L, 62L, 64L}) {
        EXPECT_NE(plugin.select(number), FENWYN_OK) << number;
    }
}

TEST_F(Machine, OlderOutputNamesWhatItShows) {
    const std::pair<DWORD, const wchar_t*> arrangements[] = {
        {0, L"LCD"},        {3, L"HDMI"},       {11, L"LCD › CRT"}, {18, L"DVI + HDMI"},
        {32, L"CRT › LCD"}, {33, L"DVI › LCD"}, {57, L"automatic"}, {63, L"swapped"}};
    for (const auto& [number, words] : arrangements) {
        sim::writeNumber(L"Output", L"Item", number);
        EXPECT_EQ(textOf(L"Output"), words);
    }
    sim::writeNumber(L"Output", L"Item", 20);
    EXPECT_EQ(textOf(L"Output"), L"item 20");
}

TEST_F(Machine, RememberedCallIsTheLastThatWasToChangeSomething) {
    const auto last = [] {
        return std::pair(sim::readText({}, sim::kLastFunction, {}), sim::readNumber({}, sim::kLastResult, 99));
    };
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    EXPECT_EQ(last(), std::pair(std::wstring(L"Mute"), DWORD{0}));
    EXPECT_NE(Plugin(L"Zoom").select(7), FENWYN_OK);
    EXPECT_EQ(last(), std::pair(std::wstring(L"Zoom"), DWORD{1}));
    EXPECT_EQ(Plugin(L"Brightness").focus(3), FENWYN_OK);
    EXPECT_EQ(Plugin(L"Mute").currentItem(), 0);
    EXPECT_EQ(last(), std::pair(std::wstring(L"Brightness"), DWORD{0}));
    EXPECT_EQ(Plugin(L"Mute").select(1), FENWYN_OK);
    EXPECT_EQ(Plugin(L"Brightness").focus(-1), FENWYN_OK) << "no choice";
    EXPECT_EQ(last(), std::pair(std::wstring(L"Mute"), DWORD{0}));
}

TEST_F(Machine, IsNewUntilAFunctionHasAState) {
    EXPECT_TRUE(sim::isNewMachine());
    sim::writeNumber(L"Mute", L"Item", 1);
    EXPECT_FALSE(sim::isNewMachine());
    EXPECT_TRUE(sim::resetState());
    EXPECT_TRUE(sim::isNewMachine());
}

TEST_F(Machine, ValuesOfAnotherTypeCountAsMissing) {
    sim::writeText(L"Mute", L"Item", L"zero");
    EXPECT_EQ(Plugin(L"Mute").currentItem(), 1);
}

TEST_F(Machine, ResetGivesANewMachineAndKeepsTheRecordFile) {
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    EXPECT_TRUE(sim::resetState());
    EXPECT_EQ(Plugin(L"Mute").currentItem(), 1);
    EXPECT_EQ(sim::readText({}, L"RecordFile", {}), m_sandbox.recordFile());
    EXPECT_TRUE(sim::resetState());
}

}  // namespace
}  // namespace plugintest
