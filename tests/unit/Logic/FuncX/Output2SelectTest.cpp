// The effect of choosing an entry of the output function with favourites.
#include <gmock/gmock.h>

#include "Logic/FuncX/Output2Fixture.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::wstring kProgram = L"C:\\Fenwyn Test\\OutputSetup.exe";
using Start = CRecordingOutput2::Start;

class Output2Select : public Output2Test {
 protected:
    void offer(const std::vector<std::pair<LONG, ULONG>>& modesAndFlags) {
        std::size_t i = 0;
        for (const auto& [lMode, uFlags] : modesAndFlags) {
            instr::setEntry(entry(i++), lMode, uFlags, (uFlags & FENWYN_ENTRY_CUSTOM) != 0 ? L"Favourite" : L"");
        }
        ASSERT_EQ(build(static_cast<LONG>(modesAndFlags.size()), 0), S_OK);
        m_log.clear();
    }
};

}  // namespace

TEST_F(Output2Select, APlainEntryGoesToThePluginByItsIndex) {
    offer({{0, 0}, {3, 0}, {4, FENWYN_ENTRY_CUSTOM}});
    FxOutput2Seam::entries(m_function).erase(FxOutput2Seam::entries(m_function).begin());
    bool bHideCard = false;
    EXPECT_EQ(m_function.selectItem(1, &bHideCard, -1), S_OK);
    EXPECT_TRUE(bHideCard);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 2);
    m_plugin->exports[instr::SelectItemId].result = 1;
    bHideCard = false;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), E_FAIL);
    EXPECT_TRUE(bHideCard);
    EXPECT_THAT(m_function.m_vecStarts, IsEmpty());
}

TEST_F(Output2Select, APlaceBeyondTheEntriesFailsAndLeavesTheFlag) {
    offer({{0, 0}});
    bool bHideCard = false;
    for (const LONG lItem : std::initializer_list<LONG>{-1, 1, 0x7FFFFFFF}) {
        EXPECT_EQ(m_function.selectItem(lItem, &bHideCard, -1), E_FAIL);
    }
    EXPECT_FALSE(bHideCard);
    EXPECT_EQ(m_function.selectItem(-1, nullptr, -1), E_FAIL);  // checked before the flag
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput_2::selectItem): Error Code: 0x80004005"), 4U);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Output2Select, TheHideFlagHasToBeThere) {
    offer({{0, 0}});
    EXPECT_EQ(m_function.selectItem(0, nullptr, -1), E_POINTER);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput_2::selectItem): ASSERT( (NULL != pbHideCard) )"));
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Output2Select, ConfigureStartsTheProgramAndHidesTheCard) {
    offer({{9, 0}});
    bool bHideCard = false;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_TRUE(bHideCard);
    EXPECT_THAT(m_function.m_vecStarts, ElementsAre(Start{kProgram, L"\\Config"}));
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Output2Select, SaveStartsTheProgramAndKeepsTheCard) {
    offer({{10, 0}});
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_FALSE(bHideCard);
    EXPECT_THAT(m_function.m_vecStarts, ElementsAre(Start{kProgram, L"\\Save"}));
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Output2Select, SetupStartsTheProgramWithTheModesAndKeepsTheCard) {
    offer({{0, 0}, {1, FENWYN_ENTRY_NEEDS_SETUP}, {2, FENWYN_ENTRY_NEEDS_SETUP}, {3, 0}});
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(2, &bHideCard, -1), S_OK);
    EXPECT_FALSE(bHideCard);
    EXPECT_THAT(m_function.m_vecStarts, ElementsAre(Start{kProgram, L"\\OutputConf 131078"}));
    EXPECT_TRUE(
        logged(L"[INF] (CFxOutput_2::showOutputConfDlg): Parameter for calling OutputSetup.exe: \\OutputConf 131078."));
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Output2Select, SetupComesBeforeConfigureAndSave) {
    offer({{9, FENWYN_ENTRY_NEEDS_SETUP}, {10, FENWYN_ENTRY_NEEDS_SETUP}});
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_FALSE(bHideCard);
    EXPECT_THAT(m_function.m_vecStarts, ElementsAre(Start{kProgram, L"\\OutputConf 591360"}));
}

TEST_F(Output2Select, WithoutAnySetupModeThereIsNothingToShow) {
    offer({{1, 0}});
    EXPECT_EQ(FxOutput2Seam::showDialog(m_function, 1), E_FAIL);
    EXPECT_THAT(m_function.m_vecStarts, IsEmpty());
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput_2::showOutputConfDlg): ASSERT( nSupportedModes != 0 )"));
}

TEST_F(Output2Select, TheInstallFolderIsExpanded) {
    m_function.finalize();
    ::SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", L"D:\\Programs");
    setInstallPath(L"%FENWYN_TEST_FOLDER%\\Fenwyn");
    ASSERT_EQ(init(L"InstrPlugin"), S_OK);
    ::SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", nullptr);
    offer({{9, 0}});
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_THAT(m_function.m_vecStarts, ElementsAre(Start{L"D:\\Programs\\Fenwyn\\OutputSetup.exe", L"\\Config"}));
}

TEST_F(Output2Select, WithoutAnInstallFolderNoOtherFolderIsTried) {
    for (const std::wstring& folder : {std::wstring(), std::wstring(300, L'x')}) {
        m_function.finalize();
        setInstallPath(folder.c_str());
        ASSERT_EQ(init(L"InstrPlugin"), S_OK) << "everything else works without it";
        offer({{9, 0}});
        bool bHideCard = true;
        EXPECT_EQ(m_function.selectItem(0, &bHideCard, -1), S_OK);
        EXPECT_TRUE(logged(L"[ERR] (CFxOutput_2::_startOutputSetup): Error Code: 0x80004005"));
    }
    EXPECT_THAT(m_function.m_vecStarts, IsEmpty());
}

TEST_F(Output2Select, AProgramThatIsNotThereIsNoFailure) {
    CFxOutput_2 function({kCode}, L"Output");
    function.setPlacement(m_placement);
    ASSERT_EQ(function.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    instr::setEntry(entry(0), 9);
    m_plugin->itemCount = 1;
    ASSERT_EQ(function.initItems(m_items.vec()), S_OK);
    bool bHideCard = false;
    EXPECT_EQ(function.selectItem(0, &bHideCard, -1), S_OK);
    EXPECT_TRUE(bHideCard);
    m_items.clear();
    function.finalize();
}

TEST_F(Output2Select, FinalizeForgetsTheEntries) {
    offer({{0, 0}});
    m_items.clear();
    m_function.finalize();
    EXPECT_TRUE(FxOutput2Seam::entries(m_function).empty());
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
}

}  // namespace functest
