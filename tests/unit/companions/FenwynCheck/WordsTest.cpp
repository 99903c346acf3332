#include "Words.h"

#include <gtest/gtest.h>

namespace {

using check::Answers;
using machine::itemText;
using machine::stateText;

const fenwyn::Function& rule(const wchar_t* name) {
    return *fenwyn::findFunction(name);
}

TEST(MachineWords, NameKeysAsTheLayoutDoesAndAlwaysTellTheCode) {
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0x40, 0x41}), L"F6 (0x40), F7 (0x41)");
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{}), L"no key");
    EXPECT_TRUE(machine::keyNames(std::vector<DWORD>{0xE04B}).ends_with(L" (0xE04B)"));
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0x12345678}), L"0x12345678");
}

TEST(MachineWords, NameKeysThatActWithoutTheModifierAndKeysWithoutAScanCode) {
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0x10040, 0x1E020}),
              L"F6 alone (0x10040), volume mute alone (0x1E020)");
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0x1F0AD, 0xF07C}), L"volume mute alone (0x1F0AD), F13 (0xF07C)");
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0xF0FE}), L"virtual key 0xFE (0xF0FE)");
    EXPECT_EQ(machine::keyNames(std::vector<DWORD>{0x11234}), L"0x11234 alone") << "no code of a key";
}

TEST(MachineWords, NameTheModifier) {
    EXPECT_EQ(machine::modifierName(VK_RCONTROL), L"right Ctrl");
    EXPECT_EQ(machine::modifierName(VK_LCONTROL), L"left Ctrl");
    EXPECT_EQ(machine::modifierName(VK_RMENU), L"right Alt");
    EXPECT_EQ(machine::modifierName(VK_CAPITAL), L"Caps Lock");
    EXPECT_EQ(machine::modifierName(VK_F13), L"F13");
    EXPECT_EQ(machine::modifierName(0xFE), L"virtual key 0xFE");
}

TEST(MachineWords, TellTheStateOfEachKindOfFunction) {
    Answers answers;
    EXPECT_EQ(stateText(rule(L"Mute"), answers), L"") << "it was not told";
    answers.current = 0;
    EXPECT_EQ(stateText(rule(L"Mute"), answers), L"muted");
    EXPECT_EQ(stateText(rule(L"NumericOverlay"), answers), L"on");
    answers.current = 2;
    EXPECT_EQ(stateText(rule(L"Zoom"), answers), L"largest");
    answers.current = 30 << 16 | 1;
    EXPECT_EQ(stateText(rule(L"KBB"), answers), L"on") << "the timer's seconds are no state";
    answers.current = 7;
    answers.info = 10;
    EXPECT_EQ(stateText(rule(L"Brightness"), answers), L"level 7 of 10");
    answers.dual = true;
    answers.current = 3 << 8 | 7;
    EXPECT_EQ(stateText(rule(L"Brightness"), answers), L"levels 7 and 3 of 10");
    answers.current = 1;
    EXPECT_EQ(stateText(rule(L"PowerPlan"), answers), L"item 1") << "a plan without a name";
    answers.planNames[1] = L"Balanced";
    EXPECT_EQ(stateText(rule(L"PowerPlan"), answers), L"\"Balanced\"");
    EXPECT_EQ(stateText(rule(L"Output_2"), answers), L"entry 1") << "an entry that is not there";
    answers.entries = {{FENWYN_MODE_CLONE, {}}, {FENWYN_MODE_SEVERAL, L"Desk"}, {77, {}}};
    EXPECT_EQ(stateText(rule(L"Output_2"), answers), L"entry 1, \"Desk\"");
    EXPECT_EQ(itemText(rule(L"Output_2"), answers, 0), L"entry 0, the same on all screens");
    EXPECT_EQ(itemText(rule(L"Output_2"), answers, 2), L"entry 2");
    EXPECT_EQ(itemText(rule(L"Output_2"), answers, -1), L"entry -1");
    EXPECT_EQ(itemText(rule(L"Mute"), answers, -1), L"item -1");
    EXPECT_EQ(itemText(rule(L"Mute"), answers, 4), L"item 4");
}

}  // namespace
