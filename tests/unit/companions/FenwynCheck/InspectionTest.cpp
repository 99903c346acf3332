#include "Inspection.h"

#include <gtest/gtest.h>

#include "FenwynRegistry.h"
#include "Trial.h"
#include "plugins/InstrumentedPlugin.h"

namespace {

using instr::InstrumentedPlugin;
using machine::Finding;
using machine::Outcome;

std::string narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

#define EXPECT_SAYS(finding, words) EXPECT_NE((finding).text.find(words), std::wstring::npos) << narrow((finding).text)

class Inspection : public testing::Test {
 protected:
    [[nodiscard]] Finding inspect(const wchar_t* function) const { return machine::inspect(function, m_plugin.path()); }
    [[nodiscard]] Finding tryChange(const wchar_t* function) const {
        return machine::tryChange(function, m_plugin.path());
    }

    InstrumentedPlugin m_plugin;
};

TEST_F(Inspection, TellsStateAndTheTimeOfEachCallAndChangesNothing) {
    const Finding finding = inspect(L"Mute");
    EXPECT_EQ(finding.outcome, Outcome::Offered);
    EXPECT_SAYS(finding, L"offered\nstate: muted\n");
    EXPECT_SAYS(finding, L"calls: InitializeHotkeyDll 0.");
    EXPECT_SAYS(finding, L", FinalizeHotkeyDll 0.");
    EXPECT_EQ(m_plugin.count(instr::SelectItemId) + m_plugin.count(instr::FocusItemId), 0);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
}

TEST_F(Inspection, TellsWhyAFunctionIsNotOffered) {
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    EXPECT_SAYS(inspect(L"Mute"), L"not offered: it does not say why.\n");
    std::wstring(L"There is no device.").copy(m_plugin->reason, instr::kMaxText - 1);
    const Finding finding = inspect(L"Mute");
    EXPECT_EQ(finding.outcome, Outcome::Declined);
    EXPECT_SAYS(finding, L"not offered: There is no device.\n");
    EXPECT_EQ(finding.text.find(L"state:"), std::wstring::npos);
}

TEST_F(Inspection, WantsTheMachinesOwnAnswerAndNoneOfAnEarlierStart) {
    const DWORD offered = 0;
    for (const wchar_t* const name : {L"InstrPlugin", L"WinOther"}) {
        RegSetKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, name, REG_DWORD, &offered, sizeof offered);
    }
    static_cast<void>(inspect(L"Mute"));
    const auto remembered = [](const wchar_t* name) {
        return RegGetValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, name, RRF_RT_ANY, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(remembered(L"InstrPlugin"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(remembered(L"WinOther"), ERROR_SUCCESS) << "of other plug-ins nothing is forgotten";
    RegDeleteKeyW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED);
}

TEST_F(Inspection, TellsFaultsAndSlowCalls) {
    m_plugin->currentItem = 7;
    EXPECT_EQ(inspect(L"Mute").outcome, Outcome::Faulty);
    EXPECT_SAYS(inspect(L"Mute"), L"FAULT: GetCurrentItem gives 7");
    EXPECT_EQ(machine::inspect(L"Mute", L"C:\\none.dll").outcome, Outcome::Faulty);
    m_plugin.reset();
    m_plugin->exports[instr::GetDisplayItemInfoId].delay = 60;
    const Finding slow = inspect(L"Mute");
    EXPECT_EQ(slow.outcome, Outcome::Offered);
    EXPECT_SAYS(slow, L"note: GetDisplayItemInfo took ");
}

TEST_F(Inspection, ReadsTheEntriesOfTheDisplayOutput) {
    m_plugin->itemCount = 2;
    m_plugin->currentItem = 1;
    instr::setEntry(m_plugin->entries[0], FENWYN_MODE_CLONE);
    instr::setEntry(m_plugin->entries[1], FENWYN_MODE_SEVERAL, FENWYN_ENTRY_CUSTOM, L"Desk");
    EXPECT_SAYS(inspect(L"Output_2"), L"state: entry 1, \"Desk\"\n");
}

TEST_F(Inspection, OnlyTheHarmlessIsTried) {
    for (const wchar_t* const function : {L"Mute", L"brightness", L"Zoom", L"CursorOverlay", L"NumericOverlay"}) {
        EXPECT_NE(machine::trialQuestion(function), nullptr);
    }
    for (const wchar_t* const function :
         {L"Lock", L"Sleep", L"Hibernate", L"PowerPlan", L"Wireless", L"Touchpad", L"ODD", L"Output", L"Output_2"}) {
        EXPECT_EQ(machine::trialQuestion(function), nullptr);
        EXPECT_EQ(tryChange(function).outcome, Outcome::Faulty);
    }
    EXPECT_EQ(m_plugin->callCount, 0);
}

TEST_F(Inspection, AChangeIsMadeSeenAndTakenBack) {
    m_plugin->followSelection = TRUE;
    m_plugin->currentItem = 1;
    const Finding finding = tryChange(L"Mute");
    EXPECT_EQ(finding.outcome, Outcome::Offered) << narrow(finding.text);
    EXPECT_SAYS(finding, L"sound on -> muted: in effect after ");
    EXPECT_SAYS(finding, L"muted -> sound on: in effect after ");
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 2);
    EXPECT_EQ(m_plugin->currentItem, 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
}

TEST_F(Inspection, BrightnessGoesOneStepAndNeverBelowTheFirst) {
    m_plugin->followSelection = TRUE;
    m_plugin->info = 10;
    m_plugin->currentItem = 1;
    EXPECT_SAYS(tryChange(L"Brightness"), L"level 1 of 10 -> level 2 of 10: in effect");
    EXPECT_EQ(m_plugin.calls(instr::FocusItemId).at(0).arguments[0], 2);
    EXPECT_EQ(m_plugin.calls(instr::FocusItemId).at(1).arguments[0], 1);
    m_plugin->dual = 1;
    EXPECT_EQ(tryChange(L"Brightness").outcome, Outcome::Faulty) << "two screens cannot be put back";
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 2);
}

TEST_F(Inspection, AChangeWithoutEffectIsAFaultAndIsTakenBackAllTheSame) {
    const Finding finding = tryChange(L"Mute");
    EXPECT_EQ(finding.outcome, Outcome::Faulty);
    EXPECT_SAYS(finding, L"muted -> sound on: FAULT: no effect; the state is muted.\n");
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 2);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(1).arguments[0], 0);
}

TEST_F(Inspection, ARefusedChangeIsAFault) {
    m_plugin->info = 7;
    m_plugin->exports[instr::SelectItemId].result = 5;
    const Finding finding = tryChange(L"Zoom");
    EXPECT_SAYS(finding, L"normal -> larger: FAULT: refused (5).\n");
    EXPECT_EQ(finding.outcome, Outcome::Faulty);
}

TEST_F(Inspection, WhatIsNotOfferedOrWhollyThereIsNotTried) {
    m_plugin->info = 3;
    EXPECT_EQ(tryChange(L"Zoom").outcome, Outcome::Faulty) << "positions differ from states";
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    EXPECT_EQ(tryChange(L"Mute").outcome, Outcome::Declined);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

}  // namespace
