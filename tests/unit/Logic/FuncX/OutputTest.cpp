#include "Logic/FuncX/FxOutput.h"

#include <gmock/gmock.h>

#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/OutputRules.h"
#include "common/ResourceFunc.h"

struct FxOutputSeam {
    static HRESULT ratio(const CFxOutput& function, int extraWidth, double* pRatio, bool* pbShrink) {
        return function.getCircleItemRatio(extraWidth, pRatio, pbShrink);
    }
};

namespace functest {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Output : public FunctionTest {
 protected:
    void SetUp() override {
        m_function.setPlacement(m_placement);
        ASSERT_EQ(m_function.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
    }
    HRESULT build(DWORD dwFirst, DWORD dwSecond, LONG lCurrent) {
        m_plugin->info = dwFirst;
        m_plugin->info2 = dwSecond;
        m_plugin->currentItem = lCurrent;
        m_items.clear();
        return m_function.initItems(m_items.vec());
    }
    static bool panicEventThere() {
        return static_cast<bool>(common::UniqueHandle(::OpenEventW(SYNCHRONIZE, FALSE, L"FnF5Panic")));
    }
    [[nodiscard]] int workWidth() const { return m_placement.workWidth(); }

    CFxOutput m_function{{kCode}, L"Output"};
    Items m_items;
};

}  // namespace

TEST_F(Output, HasItsPicturesAndDescription) {
    EXPECT_EQ(m_function.getSmallPngID(), 221U);
    EXPECT_EQ(m_function.getLargePngID(), 220U);
    EXPECT_EQ(m_function.getDesc(), loadResString(301));
}

TEST_F(Output, OffersTheArrangementsOfBothMasks) {
    ASSERT_EQ(build(0x5, 0x80000001, 32), S_OK);
    EXPECT_THAT(m_items.views(),
                ElementsAre(ItemView{loadResString(310), 740, 739}, ItemView{loadResString(312), 712, 709},
                            ItemView{loadResString(350), 729, 728}, ItemView{loadResString(376), 726, 725}));
    EXPECT_THAT(m_items.scales(), Each(1.0));
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, 2);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(350));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output, ACurrentArrangementThatIsNotOfferedHasNoPlace) {
    ASSERT_EQ(build(0x5, 0x80000001, 33), S_OK);
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_EQ(lItem, 77);
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_TRUE(logged(L"[INF] (CFxOutput::getCurrentStatus): Current status of Output cannot be found."));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output, AnInvalidCurrentArrangementIsAnAssertion) {
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    const std::wstring text = L"): ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItem )";
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput::getDefaultSelectItem" + text,
                                      L"[ERR] (CFxOutput::getCurrentStatus" + text));
}

TEST_F(Output, NoArrangementIsAFailure) {
    EXPECT_EQ(build(0, 0, 0), E_FAIL);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput::initItems): ASSERT( !rVecItems.empty() )"));
}

TEST_F(Output, AFailureOfThePluginLeavesNoItems) {
    for (const instr::ExportId id : {instr::GetDisplayItemInfoId, instr::GetCurrentItemId}) {
        ASSERT_EQ(build(0x5, 0, 0), S_OK);
        m_plugin->exports[id].result = -1;
        EXPECT_EQ(m_function.initItems(m_items.vec()), E_FAIL);
        EXPECT_EQ(m_items.alive(), 0U);
        m_plugin->exports[id].result = 0;
    }
    ASSERT_EQ(build(0x5, 0, 0), S_OK);
    withoutPictures();
    EXPECT_TRUE(FAILED(m_function.initItems(m_items.vec())));
    EXPECT_EQ(m_items.alive(), 0U);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput::initItems): Error Code: 0x80004005"), 2U);
}

TEST_F(Output, ARowWiderThanTheScreenShrinks) {
    ASSERT_EQ(build(0x7FFFF, 0x83FFFFFF, 0), S_OK);
    ASSERT_EQ(m_items.size(), 46U);
    const double ratio = m_items.scales().front();
    EXPECT_LT(ratio, 1.0);
    EXPECT_THAT(m_items.scales(), Each(ratio));
    // The overhang that the first item reported before it shrank: (100 - 72) / 2.
    EXPECT_DOUBLE_EQ(ratio, static_cast<double>(workWidth()) / (46 * 82 + 2 * 14));
}

TEST_F(Output, TheRatioStaysWhenTheRowFits) {
    ASSERT_EQ(build(0x5, 0, 0), S_OK);
    double ratio = 0.25;
    bool bShrink = true;
    EXPECT_EQ(FxOutputSeam::ratio(m_function, 10, &ratio, &bShrink), S_OK);
    EXPECT_FALSE(bShrink);
    EXPECT_EQ(ratio, 0.25);
    EXPECT_TRUE(logged(L"[TRC] (CFxOutput::getCircleItemRatio): nTotalItemWidth = 184"));
    EXPECT_EQ(FxOutputSeam::ratio(m_function, workWidth() / 2, &ratio, &bShrink), S_OK);
    EXPECT_TRUE(bShrink);
    EXPECT_LT(ratio, 1.0);
}

TEST_F(Output, WithoutAKnownScreenThereAreNoItems) {
    m_placement.workArea = {};
    EXPECT_EQ(build(0x5, 0, 0), E_FAIL);
    EXPECT_EQ(m_items.alive(), 0U);
    EXPECT_TRUE(logged(L"[ERR] (CFxOutput::getCircleItemRatio): Error Code: 0x80004005"));
}

TEST_F(Output, ANarrowerMonitorAndASmallerRatioDecideTheShrinking) {
    m_placement.workArea = {-1024, 0, 0, 768};
    ASSERT_EQ(build(0xFFF, 0, 0), S_OK);  // 12 * 82 + 2 * 14 = 1012: fits
    EXPECT_THAT(m_items.scales(), Each(1.0));
    m_placement.workArea = {-1000, 0, 0, 768};
    ASSERT_EQ(build(0xFFF, 0, 0), S_OK);
    EXPECT_THAT(m_items.scales(), Each(testing::DoubleEq(1000.0 / 1012)));
    m_placement.ratio = 0.5;
    ASSERT_EQ(build(0xFFF, 0, 0), S_OK);
    EXPECT_THAT(m_items.scales(), Each(1.0));
}

TEST_F(Output, TheRatioNeedsItsOutValues) {
    double ratio = 0.25;
    bool bShrink = true;
    EXPECT_EQ(FxOutputSeam::ratio(m_function, 0, nullptr, &bShrink), E_POINTER);
    EXPECT_EQ(FxOutputSeam::ratio(m_function, 0, &ratio, nullptr), E_POINTER);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput::getCircleItemRatio): Error Code: 0x80004003"), 2U);
}

TEST_F(Output, APlaceOnTheCardSelectsItsArrangement) {
    ASSERT_EQ(build(0x5, 0x80000001, 0), S_OK);
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(3, &bHideCard, -1), S_OK);
    EXPECT_TRUE(bHideCard);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 63);
    for (const LONG lItem : std::initializer_list<LONG>{-1, 4, 0x7FFFFFFF}) {
        EXPECT_EQ(m_function.selectItem(lItem, -1), E_FAIL);
    }
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(
        timesLogged(L"[ERR] (CFxOutput::selectItem): ASSERT( ::indexInContainer(nItem, m_vecAvailableMonitors) )"), 3U);
}

TEST_F(Output, ARebuildForgetsTheArrangementsOfBefore) {
    ASSERT_EQ(build(0x5, 0x80000001, 0), S_OK);
    ASSERT_EQ(build(0x2, 0, 1), S_OK);
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, 0);
    EXPECT_EQ(m_function.selectItem(0, -1), S_OK);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId).at(0).arguments[0], 1);
    EXPECT_EQ(m_function.selectItem(1, -1), E_FAIL);
}

TEST_F(Output, TheArrangementsOutliveFinalize) {
    ASSERT_EQ(build(0x5, 0, 0), S_OK);
    m_function.finalize();
    EXPECT_EQ(m_function.selectItem(1, -1), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CFuncX::selectItem): ASSERT( NULL != m_hFuncDll )"));
}

TEST_F(Output, FinalizeLogsItsName) {
    m_log.clear();
    m_function.finalize();
    const auto lines = m_log.lines();
    ASSERT_THAT(lines, SizeIs(testing::Ge(4)));
    EXPECT_TRUE(logged(L"[TRC] (CFxOutput::finalize): ENTER CFxOutput::finalize"));
    EXPECT_TRUE(logged(L"[TRC] (CFxOutput::finalize): LEAVE CFxOutput::finalize"));
    EXPECT_TRUE(logged(L"[INF] (CPanicThread::_waitForPanic): FnF5 panic event is triggered."));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output, FinalizeAfterAFailedLoadEndsTheThread) {
    m_function.finalize();  // its thread would keep the event alive
    ASSERT_FALSE(panicEventThere());
    CFxOutput function({kCode}, L"Output");
    EXPECT_TRUE(FAILED(function.initHotkeyDll(L"C:\\nowhere\\missing.dll")));
    EXPECT_TRUE(panicEventThere()) << "the thread runs before the plug-in is there";
    m_log.clear();
    function.finalize();
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_FALSE(panicEventThere());
    m_log.clear();
    function.finalize();  // no thread, no event
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput::finalize): ASSERT( hevtFnF5Panic )"));
}

}  // namespace functest
