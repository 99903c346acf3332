#include <gmock/gmock.h>

#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/FxPowerPlan.h"
#include "common/ResourceFunc.h"

struct FxPowerPlanSeam {
    static HRESULT name(const CFxPowerPlan& function, DWORD dwPlan, std::wstring* pstrName) {
        return function.getPowerPlanItemName(dwPlan, pstrName);
    }
    static const std::vector<DWORD>& used(const CFxPowerPlan& function) { return function.m_vecUsedPowerPlans; }
};

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PowerPlan : public FunctionTest {
 protected:
    void SetUp() override { ASSERT_EQ(init(L"InstrPlugin"), S_OK); }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
    }
    HRESULT init(const std::wstring& strPlugin) {
        return m_function.initHotkeyDll(instr::InstrumentedPlugin::pathOf(strPlugin).c_str());
    }
    HRESULT build(DWORD dwMask, LONG lCurrent) {
        m_plugin->info = dwMask;
        m_plugin->currentItem = lCurrent;
        m_items.clear();
        return m_function.initItems(m_items.vec());
    }

    CFxPowerPlan m_function{{kCode}, L"Plans"};
    Items m_items;
};

const std::vector<ItemView> kPlans{
    {L"Plan 0", 159, 158}, {L"Plan 1", 155, 154}, {L"Plan 2", 153, 152}, {L"Plan 3", 157, 156}};

}  // namespace

TEST_F(PowerPlan, HasItsPicturesAndDescription) {
    EXPECT_EQ(m_function.getSmallPngID(), 151U);
    EXPECT_EQ(m_function.getLargePngID(), 150U);
    EXPECT_EQ(m_function.getDesc(), loadResString(231));
}

TEST_F(PowerPlan, OffersThePlansOfTheMaskByName) {
    for (DWORD dwMask = 0; dwMask < 16; ++dwMask) {
        ASSERT_EQ(build(dwMask | 0xFFFFFFF0, 0), S_OK);  // bits above the plans are ignored
        std::vector<ItemView> expected;
        std::vector<DWORD> used;
        for (DWORD dwPlan = 0; dwPlan < 4; ++dwPlan) {
            if ((dwMask >> dwPlan & 1) != 0) {
                expected.push_back(kPlans[dwPlan]);
                used.push_back(dwPlan);
            }
        }
        EXPECT_EQ(m_items.views(), expected);
        EXPECT_EQ(FxPowerPlanSeam::used(m_function), used);
    }
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PowerPlan, APlaceOnTheCardSelectsItsPlan) {
    ASSERT_EQ(build(0x5, 2), S_OK);
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, 1);
    EXPECT_EQ(m_function.getCurrentStatus(), L"Plan 2");
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(1, &bHideCard, 9), S_OK);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 2);
    m_plugin->exports[instr::SelectItemId].result = 1;
    EXPECT_EQ(m_function.selectItem(0, 9), E_FAIL);
}

TEST_F(PowerPlan, APlaceBeyondTheItemsNeverReachesThePlugin) {
    ASSERT_EQ(build(0x5, 2), S_OK);
    for (const LONG lItem : std::initializer_list<LONG>{-1, 2, 0x7FFFFFFF}) {
        EXPECT_EQ(m_function.selectItem(lItem, -1), E_FAIL);
    }
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxPowerPlan::selectItem): ASSERT( indexInContainer(nItem, m_vecUsedPowerPlans) )"),
              3U);
}

TEST_F(PowerPlan, NoDefaultWithoutItemsOrWithAnotherPlan) {
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxPowerPlan::getDefaultSelectItem): ASSERT( INVALID_CURRENT_ITEM != "
                                      L"m_lCurrentItem )"));
    m_log.clear();
    ASSERT_EQ(build(0, 0), S_OK);
    EXPECT_EQ(m_items.size(), 0U);
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    ASSERT_EQ(build(0x5, 1), S_OK);
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_EQ(lItem, 77);
    const std::wstring line = L"[ERR] (CFxPowerPlan::getDefaultSelectItem): Error Code: 0x80004005";
    EXPECT_THAT(errors(), ElementsAre(line, line));
}

TEST_F(PowerPlan, NoStatusWithoutPlanOrName) {
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_TRUE(logged(L"[ERR] (CFxPowerPlan::getCurrentStatus): ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItem )"));
    ASSERT_EQ(build(1, 0), S_OK);
    m_plugin->exports[instr::GetCustomItemTextId].result = 1;
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_TRUE(logged(L"[ERR] (CFxPowerPlan::getCurrentStatus): Error Code: 0x80004005"));
}

TEST_F(PowerPlan, AFailureLeavesNoItems) {
    for (const instr::ExportId id :
         {instr::GetDisplayItemInfoId, instr::GetCustomItemTextId, instr::GetCurrentItemId}) {
        ASSERT_EQ(build(0xF, 0), S_OK);
        m_plugin->exports[id].result = -1;
        EXPECT_EQ(m_function.initItems(m_items.vec()), E_FAIL);
        EXPECT_EQ(m_items.alive(), 0U);
        m_plugin->exports[id].result = 0;
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFxPowerPlan::initItems): Error Code: 0x80004005"), 3U);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxPowerPlan::addItem): Error Code: 0x80004005"), 1U);
}

TEST_F(PowerPlan, WithoutTheNameExportTheFirstPlanFails) {
    m_function.finalize();
    const instr::InstrumentedPlugin plugin(L"InstrNoGetCustomItemText");
    plugin->info = 0xC;
    ASSERT_EQ(init(L"InstrNoGetCustomItemText"), S_OK);
    EXPECT_EQ(m_function.initItems(m_items.vec()), E_POINTER);
    EXPECT_EQ(m_items.alive(), 0U);
    EXPECT_TRUE(FxPowerPlanSeam::used(m_function).empty());
    const std::wstring code = L"): Error Code: 0x80004003";
    EXPECT_THAT(errors(),
                ElementsAre(L"[ERR] (CFxPowerPlan::getPowerPlanItemName" + code, L"[ERR] (CFxPowerPlan::addItem" + code,
                            L"[ERR] (CFxPowerPlan::initItems" + code));
}

TEST_F(PowerPlan, NameIsAskedWithAZeroedScratchValue) {
    std::wstring strName;
    m_log.clear();
    EXPECT_EQ(FxPowerPlanSeam::name(m_function, 3, &strName), S_OK);
    EXPECT_EQ(strName, L"Plan 3");
    const auto calls = m_plugin.calls(instr::GetCustomItemTextId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 3);
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_THAT(m_log.lines(),
                ElementsAre(L"[TRC] (CFxPowerPlan::getPowerPlanItemName): ENTER CFxPowerPlan::getPowerPlanItemName",
                            L"[TRC] (CFxPowerPlan::getPowerPlanItemName): LEAVE CFxPowerPlan::getPowerPlanItemName"));
}

TEST_F(PowerPlan, NullNameIsEmptyAndNullOutPointerFails) {
    std::wstring strName = L"before";
    m_plugin->nullPlanText = TRUE;
    EXPECT_EQ(FxPowerPlanSeam::name(m_function, 0, &strName), S_OK);
    EXPECT_EQ(strName, L"");
    m_plugin->nullPlanText = FALSE;
    EXPECT_EQ(FxPowerPlanSeam::name(m_function, 0, nullptr), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CFxPowerPlan::getPowerPlanItemName): Error Code: 0x80004003"));
}

TEST_F(PowerPlan, APluginThatSucceedsWithoutATextGivesItemsWithoutCaption) {
    m_plugin->nullPlanText = TRUE;
    ASSERT_EQ(build(0x5, 2), S_OK);
    EXPECT_EQ(m_items.views(), (std::vector<ItemView>{{L"", 159, 158}, {L"", 153, 152}}));
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_EQ(m_function.selectItem(1, -1), S_OK);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 2);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PowerPlan, NoNameWithoutALibrary) {
    m_function.finalize();
    std::wstring strName = L"before";
    EXPECT_EQ(FxPowerPlanSeam::name(m_function, 0, &strName), E_HANDLE);
    EXPECT_EQ(strName, L"before");
    EXPECT_TRUE(logged(L"[ERR] (CFxPowerPlan::getPowerPlanItemName): ASSERT( m_hFuncDll )"));
}

}  // namespace functest
