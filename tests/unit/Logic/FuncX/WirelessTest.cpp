#include <gmock/gmock.h>

#include <random>

#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/FxWireless.h"
#include "UI/ItemDlg/ErrorItemDlg.h"
#include "common/ResourceFunc.h"

struct FxWirelessSeam {
    static const std::vector<DWORD>& states(const CFxWireless& function) { return function.m_vecWirelessItems; }
};

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Images of the states, in order.
constexpr UINT kImages[15][2] = {{373, 372}, {375, 374}, {369, 368}, {371, 370}, {353, 352},
                                 {355, 354}, {357, 356}, {359, 358}, {365, 364}, {367, 366},
                                 {361, 360}, {363, 362}, {451, 450}, {453, 452}, {101, 100}};

std::wstring expectedText(DWORD dwState) {
    switch (dwState) {
        case 12:
            return loadResString(516);
        case 13:
            return loadResString(517);
        case 14:
            return loadResString(200);
        default:
            return dwState % 2 == 0 ? loadResString(512) + loadResString(515) + loadResString(513)
                                    : loadResString(513) + loadResString(515) + loadResString(512);
    }
}

class Wireless : public FunctionTest {
 protected:
    void SetUp() override { ASSERT_EQ(m_function.initHotkeyDll(m_plugin.path().c_str()), S_OK); }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
    }
    HRESULT build(DWORD dwMask) {
        m_plugin->info = dwMask;
        m_items.clear();
        return m_function.initItems(m_items.vec());
    }
    LONG defaultItem() {
        LONG lItem = 77;
        EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
        return lItem;
    }

    CFxWireless m_function{{kCode}, L"Wireless"};
    Items m_items;
};

}  // namespace

TEST_F(Wireless, HasItsPicturesAndDescription) {
    EXPECT_EQ(m_function.getSmallPngID(), 351U);
    EXPECT_EQ(m_function.getLargePngID(), 350U);
    EXPECT_EQ(m_function.getDesc(), loadResString(511));
}

TEST_F(Wireless, OffersTheStatesOfTheMask) {
    const unsigned seed = std::random_device{}();
    RecordProperty("seed", static_cast<int>(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<DWORD> masks{0x7FFF, 0xFFFF8000, 0x3, 0x2, 0x4000, 0x1800, 0x555, 0xAAA};
    for (int i = 0; i < 12; ++i) {
        masks.push_back(random());
    }
    for (const DWORD dwMask : masks) {
        SCOPED_TRACE("mask " + std::to_string(dwMask));
        ASSERT_EQ(build(dwMask), S_OK);
        std::vector<ItemView> expected;
        std::vector<DWORD> states;
        for (DWORD dwState = 0; dwState < 15; ++dwState) {
            if ((dwMask >> dwState & 1) != 0) {
                expected.push_back({expectedText(dwState), kImages[dwState][0], kImages[dwState][1]});
                states.push_back(dwState);
            }
        }
        EXPECT_EQ(m_items.views(), expected);
        EXPECT_EQ(FxWirelessSeam::states(m_function), states);
        EXPECT_EQ(defaultItem(), static_cast<LONG>(states.size()) - 1);
        EXPECT_EQ(m_function.getCurrentStatus(), loadResString((dwMask & 0x555) != 0 ? 512 : 513));
    }
    EXPECT_EQ(m_plugin.count(instr::GetCurrentItemId), 0);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Wireless, NoStateAtAllIsASuccessWithoutItems) {
    EXPECT_EQ(build(0), S_OK);
    EXPECT_EQ(m_items.size(), 0U);
    EXPECT_EQ(defaultItem(), -1);
    EXPECT_EQ(m_function.selectItem(-1, -1), E_FAIL);
    EXPECT_EQ(m_function.selectItem(0, -1), E_FAIL);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxWireless::selectItem): ASSERT( indexInContainer(nItem, m_vecWirelessItems) )"),
              2U);
}

TEST_F(Wireless, APlaceOnTheCardSelectsItsState) {
    ASSERT_EQ(build(0x4802), S_OK);
    bool bHideCard = true;
    EXPECT_EQ(m_function.selectItem(1, &bHideCard, 5), S_OK);
    EXPECT_EQ(m_function.selectItem(2, -1), S_OK);
    EXPECT_EQ(m_function.selectItem(3, -1), E_FAIL);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].arguments[0], 11);
    EXPECT_EQ(calls[1].arguments[0], 14);
}

TEST_F(Wireless, WithoutStatesOneNoticeIsShownAndNothingSelected) {
    ASSERT_EQ(build(0x3), S_OK);
    m_items.clear();
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    EXPECT_EQ(m_function.initItems(m_items.vec()), S_OK);
    ASSERT_EQ(m_items.size(), 1U);
    EXPECT_NE(dynamic_cast<CErrorItemDlg*>(m_items[0]), nullptr);
    EXPECT_TRUE(::IsWindow(m_items[0]->windowHandle()));
    EXPECT_GT(m_items[0]->height(), 0);
    EXPECT_EQ(defaultItem(), 0);
    for (const LONG lItem : std::initializer_list<LONG>{0, 1, -1, 99}) {
        EXPECT_EQ(m_function.selectItem(lItem, -1), S_OK);
    }
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Wireless, AFailedInformationCallForgetsTheStatesOfBefore) {
    ASSERT_EQ(build(0x1), S_OK);
    ASSERT_EQ(m_function.getCurrentStatus(), loadResString(512));
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    ASSERT_EQ(build(0x1), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(513)) << "no device is known to be on";
    m_plugin->exports[instr::GetDisplayItemInfoId].result = 0;
    ASSERT_EQ(build(0x2), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(513));
}

TEST_F(Wireless, TheNoticeGoesWhenStatesComeBack) {
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    ASSERT_EQ(build(0x3), S_OK);
    m_plugin->exports[instr::GetDisplayItemInfoId].result = 0;
    ASSERT_EQ(build(0x3), S_OK);
    EXPECT_EQ(defaultItem(), 1);
    EXPECT_EQ(m_function.selectItem(1, -1), S_OK);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
}

TEST_F(Wireless, AnItemThatCannotBeMadeLeavesNone) {
    ASSERT_EQ(build(0x7), S_OK);
    withoutPictures();
    EXPECT_TRUE(FAILED(m_function.initItems(m_items.vec())));
    EXPECT_EQ(m_items.alive(), 0U);
    EXPECT_TRUE(FxWirelessSeam::states(m_function).empty());
    EXPECT_EQ(m_function.selectItem(0, -1), E_FAIL);
}

TEST_F(Wireless, TheLibraryGoneShowsTheNotice) {
    m_function.finalize();
    EXPECT_EQ(build(0x3), S_OK);
    ASSERT_EQ(m_items.size(), 1U);
    EXPECT_NE(dynamic_cast<CErrorItemDlg*>(m_items[0]), nullptr);
}

}  // namespace functest
