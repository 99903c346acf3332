#include <gmock/gmock.h>

#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/FxBrightness.h"
#include "UI/ItemDlg/SliderItemDlg.h"
#include "common/ResourceFunc.h"

struct SliderItemSeam {
    static std::vector<LONG> arguments(const CSliderItemDlg& item) {
        return {static_cast<LONG>(item.m_dwDecreaseCode), static_cast<LONG>(item.m_dwIncreaseCode), item.m_lLevelCount,
                item.m_lCurrentLevel};
    }
};

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Brightness : public FunctionTest {
 protected:
    void SetUp() override { ASSERT_EQ(init(m_function, L"InstrPlugin"), S_OK); }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
    }
    static HRESULT init(CFuncX& rFunction, const std::wstring& strPlugin) {
        return rFunction.initHotkeyDll(instr::InstrumentedPlugin::pathOf(strPlugin).c_str());
    }
    HRESULT build(DWORD dwSteps, LONG lCurrent) {
        m_plugin->info = dwSteps;
        m_plugin->currentItem = lCurrent;
        m_items.clear();
        return m_function.initItems(m_items.vec());
    }

    CFxBrightness m_function{{0x41, 0x42}, L"Brightness"};
    Items m_items;
};

}  // namespace

TEST_F(Brightness, HasItsPicturesAndDescription) {
    EXPECT_EQ(m_function.getSmallPngID(), 321U);
    EXPECT_EQ(m_function.getLargePngID(), 320U);
    EXPECT_EQ(m_function.getDesc(), loadResString(501));
    EXPECT_FALSE(m_function.needRefreshSmallPng());
}

TEST_F(Brightness, OneSliderOverTheReportedLevels) {
    m_log.clear();
    ASSERT_EQ(build(10, 7), S_OK);
    ASSERT_EQ(m_items.size(), 1U);
    const auto* const pSlider = dynamic_cast<CSliderItemDlg*>(m_items[0]);
    ASSERT_NE(pSlider, nullptr);
    EXPECT_THAT(SliderItemSeam::arguments(*pSlider), ElementsAre(0x41, 0x42, 10, 7));
    EXPECT_TRUE(::IsWindow(pSlider->windowHandle()));
    EXPECT_TRUE(logged(L"[TRC] (CFxBrightness::initItems): ENTER CFxBrightness::initItems"));
    EXPECT_TRUE(logged(L"[TRC] (CFxBrightness::initItems): LEAVE CFxBrightness::initItems"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Brightness, AFailureOfThePluginLeavesTheCallersItemsAlone) {
    ASSERT_EQ(build(10, 7), S_OK);
    for (const instr::ExportId id : {instr::GetDisplayItemInfoId, instr::GetCurrentItemId, instr::IsDualBrtCtrlId}) {
        m_plugin->exports[id].result = -1;
        EXPECT_EQ(m_function.initItems(m_items.vec()), E_FAIL);
        EXPECT_EQ(m_items.alive(), 1U);
        m_plugin->exports[id].result = 0;
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFxBrightness::initItems): Error Code: 0x80004005"), 3U);
}

TEST_F(Brightness, ALevelBeyondTheCountGivesNoSlider) {
    EXPECT_EQ(build(10, 11), E_FAIL);
    EXPECT_EQ(build(10, -5), E_FAIL);
    EXPECT_EQ(build(0x80000000, 3), E_FAIL);  // as a signed number it is below every level
    EXPECT_EQ(m_items.size(), 0U);
    EXPECT_EQ(build(10, 0), S_OK);
}

TEST_F(Brightness, NeedsExactlyTwoKeys) {
    for (const auto& codes : {std::vector<DWORD>{1}, std::vector<DWORD>{1, 2, 3}}) {
        CFxBrightness function(codes, L"Brightness");
        ASSERT_EQ(init(function, L"InstrPlugin"), S_OK);
        m_log.clear();
        EXPECT_EQ(function.initItems(m_items.vec()), E_FAIL);
        EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxBrightness::initItems): ASSERT( m_vecHotkeyCodes.size() == 2 )"));
        EXPECT_EQ(m_items.size(), 0U);
        function.finalize();
    }
}

TEST_F(Brightness, NoSliderForTwoScreens) {
    m_plugin->dual = 1;
    EXPECT_EQ(build(10, 0x7F110305), E_OUTOFMEMORY);
    EXPECT_EQ(m_items.size(), 0U);
    EXPECT_TRUE(logged(L"[INF] (CFxBrightness::initItems): Individual brightness adjust for dual-screen"));
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::initItems): Error Code: 0x8007000e"));
    const std::wstring strLabel = loadResString(502);
    EXPECT_EQ(m_function.getCurrentStatus(), strLabel + L" 5\n" + strLabel + L" 3");
}

TEST_F(Brightness, AnyNonZeroByteMeansTwoScreens) {
    m_plugin->dual = 0xFF;
    bool bDual = false;
    EXPECT_EQ(m_function.isDualBrtCtrl(bDual), S_OK);
    EXPECT_TRUE(bDual);
    EXPECT_EQ(m_plugin.calls(instr::IsDualBrtCtrlId).at(0).arguments[0], 0);  // preset false
}

TEST_F(Brightness, APlugInThatAnswersInFourBytesSpoilsNothing) {
    m_plugin->dualAsLong = TRUE;
    for (const bool bExpected : {true, false}) {
        m_plugin->dual = bExpected ? 1 : 0;
        bool bDual = !bExpected;
        EXPECT_EQ(m_function.isDualBrtCtrl(bDual), S_OK);
        EXPECT_EQ(bDual, bExpected);
    }
    EXPECT_EQ(m_plugin.calls(instr::IsDualBrtCtrlId).at(0).arguments[1], 0) << "all four bytes are zero before";
    ASSERT_EQ(build(10, 7), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(502) + L" 7");
}

TEST_F(Brightness, TheStatusIsTheWholeLevel) {
    ASSERT_EQ(build(10, 7), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(502) + L" 7");
    m_plugin->currentItem = -12;
    ASSERT_EQ(m_function.getCurrentItem(), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(502) + L" -12");
}

TEST_F(Brightness, NoStatusWithoutLevelOrAnswer) {
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::getCurrentStatus): ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItem )"));
    ASSERT_EQ(build(10, 7), S_OK);
    m_plugin->exports[instr::IsDualBrtCtrlId].result = 1;
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::getCurrentStatus): Error Code: 0x80004005"));
}

TEST_F(Brightness, TheDefaultIsTheSlider) {
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, 0);
}

TEST_F(Brightness, TheParameterIsTheLevelAndTheItemIsIgnored) {
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(2, &bHideCard, -1), S_OK);
    EXPECT_EQ(m_function.selectItem(-7, 6), S_OK);
    EXPECT_TRUE(bHideCard);
    const auto calls = m_plugin.calls(instr::FocusItemId);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].arguments[0], -1);
    EXPECT_EQ(calls[1].arguments[0], 6);
    EXPECT_EQ(calls[1].arguments[1], 0);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

TEST_F(Brightness, ARefusedLevelIsAFailure) {
    m_plugin->exports[instr::FocusItemId].result = 1;
    EXPECT_EQ(m_function.selectItem(0, 3), E_FAIL);
}

TEST_F(Brightness, MissingExportsAndLibrary) {
    CFxBrightness function({1, 2}, L"Brightness");
    EXPECT_EQ(function.selectItem(0, 3), E_HANDLE);
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::selectItem): ASSERT( m_hFuncDll )"));
    bool bDual = true;
    EXPECT_EQ(function.isDualBrtCtrl(bDual), E_POINTER);
    EXPECT_TRUE(bDual);
    ASSERT_EQ(init(function, L"InstrNoFocusItem"), S_OK);
    EXPECT_EQ(function.selectItem(0, 3), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::selectItem): Error Code: 0x80004003"));
    function.finalize();
    ASSERT_EQ(init(function, L"InstrNoIsDualBrtCtrl"), S_OK);
    EXPECT_EQ(function.initItems(m_items.vec()), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CFxBrightness::isDualBrtCtrl): Error Code: 0x80004003"));
    function.finalize();
}

}  // namespace functest
