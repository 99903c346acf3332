// The checker's messages to the author of a plug-in that breaks the contract.
#include "PluginChecker.h"

#include <gtest/gtest.h>

#include <climits>

#include "FenwynFunctions.h"
#include "plugins/InstrumentedPlugin.h"
#include "support/DependentPlugin.h"

namespace plugintest {
namespace {

using check::Weight;
using instr::InstrumentedPlugin;

bool tells(const check::CReport& report, Weight weight, const std::wstring& words) {
    for (const check::Finding& finding : report.findings()) {
        if (finding.weight == weight && finding.text.find(words) != std::wstring::npos) {
            return true;
        }
    }
    return false;
}

std::string narrow(const check::CReport& report) {
    const std::wstring text = report.text();
    return {text.begin(), text.end()};
}

#define EXPECT_TELLS(report, weight, words) EXPECT_TRUE(tells(report, weight, words)) << narrow(report)

class PluginChecker : public testing::Test {
 protected:
    [[nodiscard]] check::CReport check(const wchar_t* function, std::optional<long> item = std::nullopt) const {
        return check::checkPlugin(m_plugin.path(), function, item);
    }
    [[nodiscard]] check::CReport checkEntry(LONG mode, ULONG flags, const std::wstring& text = {}) const {
        m_plugin->itemCount = 1;
        instr::setEntry(m_plugin->entries[0], mode, flags, text);
        return check(L"Output_2");
    }

    InstrumentedPlugin m_plugin;
};

TEST_F(PluginChecker, NamesEachMissingExportOfEachFunction) {
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        for (const char* const name : function.exports) {
            if (name == nullptr) {
                continue;
            }
            const std::wstring path = InstrumentedPlugin::pathOf(L"InstrNo" + check::wide(name));
            EXPECT_TELLS(check::checkPlugin(path, function.name), Weight::Error,
                         L"The export " + check::wide(name) + L" is missing.");
        }
    }
}

TEST_F(PluginChecker, PointsAtADecoratedName) {
    EXPECT_TELLS(check::checkPlugin(InstrumentedPlugin::pathOf(L"InstrDecorated"), L"Mute"), Weight::Error,
                 L"There is \"_Z10SelectItemlPm\"");
}

TEST_F(PluginChecker, FindsNothingWrongWithAPlainPluginWhateverTheLetterCase) {
    EXPECT_EQ(check(L"mUTE", 1).count(Weight::Error), 0U);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
}

TEST_F(PluginChecker, ChangesNothingUnlessAnItemIsGiven) {
    (void)check(L"Mute");
    (void)check(L"Brightness");
    (void)checkEntry(0, 0);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 0);
    EXPECT_EQ(m_plugin.count(instr::FnF5_SetCurrentForPanicId), 0);
}

TEST_F(PluginChecker, RefusesFilesAndFunctionsThatAreNone) {
    EXPECT_TELLS(check::checkPlugin(L"C:\\none.dll", L"Mute"), Weight::Error, L"cannot be loaded");
    EXPECT_TELLS(check(L"Muet"), Weight::Error, L"knows no function \"Muet\"");
}

TEST_F(PluginChecker, SearchesWhatAPluginNeedsWhereTheProgramDoes) {
    using Place = support::DependentPlugin::Place;
    {
        const support::DependentPlugin plugin(Place::BesideThePlugin);
        EXPECT_FALSE(tells(check::checkPlugin(plugin.path(), L"Lock"), Weight::Error, L"cannot be loaded"));
    }
    for (const Place place : {Place::InTheCurrentFolder, Place::AlongPath}) {
        const support::DependentPlugin plugin(place);
        EXPECT_TELLS(check::checkPlugin(plugin.path(), L"Lock"), Weight::Error,
                     L"a library that it needs, is not there");
    }
}

TEST_F(PluginChecker, TellsThatAnUnsupportedFunctionGetsNoCard) {
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    m_plugin->exports[instr::FnF5_InitializeHotkeyDllId].result = 1;
    EXPECT_TELLS(check(L"Mute"), Weight::Warning, L"no card");
    EXPECT_TELLS(check(L"Output_2"), Weight::Warning, L"no card");
    EXPECT_EQ(m_plugin.count(instr::GetDisplayItemInfoId), 0);
}

TEST_F(PluginChecker, PassesOnWhyAFunctionIsNotSupported) {
    EXPECT_EQ(check(L"Mute").text().find(L"Its reason"), std::wstring::npos) << "not asked of one that is";
    EXPECT_EQ(m_plugin.count(instr::GetUnsupportedReasonId), 0);
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    m_plugin->exports[instr::FnF5_InitializeHotkeyDllId].result = 1;
    std::wstring(L"There is no device.").copy(m_plugin->reason, instr::kMaxText - 1);
    EXPECT_TELLS(check(L"Mute"), Weight::Note, L"Its reason: There is no device.");
    EXPECT_TELLS(check(L"Output_2"), Weight::Note, L"Its reason: There is no device.");
}

TEST_F(PluginChecker, JudgesTheInformationByTheFunction) {
    m_plugin->info = 2;
    EXPECT_TELLS(check(L"Mute"), Weight::Error, L"gives 2 as info; this function needs 3");
    m_plugin->info = 0;
    EXPECT_TELLS(check(L"Zoom"), Weight::Error, L"offers no items");
    EXPECT_TELLS(check(L"Brightness"), Weight::Error, L"0 brightness levels");
    m_plugin->info = 0x80000000;
    EXPECT_TELLS(check(L"Brightness"), Weight::Error, L"2147483648 brightness levels");
    m_plugin->info = 0x11;
    EXPECT_TELLS(check(L"Zoom"), Weight::Warning, L"Bits 0x10 of \"info\" mean nothing");
    m_plugin->info = 0;
    m_plugin->info2 = 0x80000000;
    m_plugin->currentItem = 63;
    EXPECT_EQ(check(L"Output").count(Weight::Error), 0U);
}

TEST_F(PluginChecker, FailureOfTheInformationIsAnErrorNoticeForWirelessOnly) {
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    EXPECT_TELLS(check(L"Mute"), Weight::Error, L"GetDisplayItemInfo failed (-1)");
    const check::CReport wireless = check(L"Wireless");
    EXPECT_EQ(wireless.count(Weight::Error), 0U);
    EXPECT_TELLS(wireless, Weight::Warning, L"error notice");
    m_plugin->exports[instr::GetDisplayItemInfoId].result = 5;
    EXPECT_EQ(check(L"Mute").count(Weight::Error), 0U);
}

TEST_F(PluginChecker, WarnsOfItemsThatAreLeftOutWherePositionsAreChosen) {
    for (const wchar_t* const function : {L"Zoom", L"KBB"}) {
        for (const ULONG mask : {1UL, 2UL, 3UL, 4UL, 5UL, 6UL}) {
            m_plugin->info = mask;
            const check::CReport report = check(function);
            EXPECT_EQ(report.count(Weight::Error), 0U) << narrow(report);
            EXPECT_TELLS(report, Weight::Warning, L"SelectItem gets positions among the items that exist");
        }
        m_plugin->info = 7;
        EXPECT_EQ(check(function).count(Weight::Warning), 0U);
    }
    m_plugin->info = 5;
    m_plugin->currentItem = 1;
    EXPECT_TELLS(check(L"Zoom"), Weight::Warning, L"No item stands for the current state 1");
    m_plugin->currentItem = 2;
    const check::CReport largest = check(L"Zoom");
    EXPECT_FALSE(tells(largest, Weight::Warning, L"No item stands")) << narrow(largest);
    m_plugin->info = 6;
    m_plugin->currentItem = 0x000F0000;
    EXPECT_TELLS(check(L"KBB"), Weight::Warning, L"No item stands for the current state 0");
    // Where values are chosen, a mask may have gaps.
    m_plugin->info = 0x11;
    m_plugin->currentItem = 4;
    EXPECT_EQ(check(L"ODD").count(Weight::Warning), 0U);
}

TEST_F(PluginChecker, TellsACurrentItemThatIsNone) {
    m_plugin->currentItem = 2;
    EXPECT_TELLS(check(L"Touchpad"), Weight::Error, L"GetCurrentItem gives 2, which is none");
    EXPECT_TELLS(check(L"PowerPlan"), Weight::Error, L"GetCurrentItem gives 2, which is none");
    m_plugin->info = 10;
    m_plugin->currentItem = 11;
    EXPECT_TELLS(check(L"Brightness"), Weight::Error, L"GetCurrentItem gives 11");
    m_plugin->info = 7;
    m_plugin->currentItem = 0x000F0002;
    EXPECT_EQ(check(L"KBB").count(Weight::Error), 0U);
    m_plugin->currentItem = 0x000F0003;
    EXPECT_TELLS(check(L"KBB"), Weight::Error, L"which is none");
    m_plugin->info = FENWYN_TWO_ITEMS;
    m_plugin->exports[instr::GetCurrentItemId].result = 1;
    EXPECT_TELLS(check(L"Mute"), Weight::Error, L"GetCurrentItem failed (1)");
}

TEST_F(PluginChecker, NoticesMoreThanOneByteBehindTheDualFlag) {
    m_plugin->info = 10;
    m_plugin->dualAsLong = TRUE;
    EXPECT_TELLS(check(L"Brightness"), Weight::Error, L"IsDualBrtCtrl writes more than 1 byte");
}

TEST_F(PluginChecker, TellsAPlanWithoutAName) {
    m_plugin->nullPlanText = TRUE;
    EXPECT_TELLS(check(L"PowerPlan"), Weight::Error, L"GetCustomItemText for plan 0 gives no text");
    m_plugin->exports[instr::GetCustomItemTextId].result = 1;
    EXPECT_TELLS(check(L"PowerPlan"), Weight::Error, L"GetCustomItemText for plan 1 failed");
}

TEST_F(PluginChecker, WarnsOfASlowExport) {
    m_plugin->exports[instr::GetCurrentItemId].delay = 150;
    EXPECT_TELLS(check(L"Mute"), Weight::Warning, L"GetCurrentItem took");
}

TEST_F(PluginChecker, JudgesTheEntriesOfTheDisplayOutput) {
    EXPECT_EQ(checkEntry(0, 0).count(Weight::Error), 0U);
    EXPECT_TELLS(checkEntry(11, 0), Weight::Error, L"there is no mode 11");
    EXPECT_TELLS(checkEntry(0, 0x101), Weight::Warning, L"flags 0x101");
    EXPECT_TELLS(checkEntry(0, FENWYN_ENTRY_CUSTOM), Weight::Error, L"no text");
    EXPECT_TELLS(checkEntry(0, FENWYN_ENTRY_CUSTOM, L"Desk"), Weight::Note, L"\"Desk\"");
    EXPECT_TELLS(checkEntry(0, 0, L"Desk"), Weight::Warning, L"thrown away");
    m_plugin->textsOfOwnHeap = TRUE;
    EXPECT_TELLS(checkEntry(0, FENWYN_ENTRY_CUSTOM, L"Desk"), Weight::Error, L"damage the heap");
    m_plugin->textsOfOwnHeap = FALSE;
    m_plugin->currentItem = 1;
    EXPECT_TELLS(checkEntry(0, 0), Weight::Error, L"which is no entry");
}

TEST_F(PluginChecker, JudgesTheCountOfEntries) {
    for (const LONG count : {0L, -1L, LONG_MIN}) {
        m_plugin->itemCount = count;
        EXPECT_TELLS(check(L"Output_2"), Weight::Error, L"FnF5_GetDisplayItemCount gives " + std::to_wstring(count));
    }
    m_plugin->itemCount = FENWYN_MAX_ENTRIES;
    EXPECT_TELLS(check(L"Output_2"), Weight::Warning, L"only the first 64");
    EXPECT_FALSE(tells(check(L"Output_2"), Weight::Error, L"more than")) << "that many may be";
    for (const LONG count : {FENWYN_MAX_ENTRIES + 1L, LONG_MAX}) {
        m_plugin->itemCount = count;
        EXPECT_TELLS(check(L"Output_2"), Weight::Error, L"more than 10000 entries");
    }
}

TEST_F(PluginChecker, JudgesDisplayRecordsWithoutTrustingTheirAddress) {
    m_plugin->itemCount = 1;
    instr::Entry& entry = m_plugin->entries[0];
    instr::setEntry(entry, 0);
    instr::addRecord(entry, std::wstring(FENWYN_CONNECTOR_CHARS, L'X'), 0, 0, 5);
    const check::CReport report = check(L"Output_2");
    EXPECT_TELLS(report, Weight::Error, L"has no end");
    EXPECT_TELLS(report, Weight::Warning, L"no picture");
    EXPECT_TELLS(report, Weight::Warning, L"0 x 5");
    entry.recordsInstead = 8;
    EXPECT_TELLS(check(L"Output_2"), Weight::Error, L"cannot be read");
    for (const ULONG count : {FENWYN_MAX_RECORDS + 1UL, 0xFFFFFFFFUL}) {
        entry.recordCount = count;
        EXPECT_TELLS(check(L"Output_2"), Weight::Error, L"claims " + std::to_wstring(count) + L" displays");
    }
    entry.recordsInstead = 0;
    entry.recordCount = FENWYN_MAX_RECORDS;
    EXPECT_FALSE(tells(check(L"Output_2"), Weight::Error, L"claims"));
}

TEST_F(PluginChecker, TellsOfBlocksThatAreLost) {
    m_plugin->probeAllocation = TRUE;
    m_plugin->probeSize = 10;
    EXPECT_TELLS(checkEntry(0, 0), Weight::Warning, L"1 block(s)");
    m_plugin->probeSize = -1;
    (void)checkEntry(0, 0);
    EXPECT_EQ(m_plugin->probeAnswer, nullptr);
}

}  // namespace
}  // namespace plugintest
