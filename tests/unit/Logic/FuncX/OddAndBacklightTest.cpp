#include <gmock/gmock.h>

#include "Logic/FuncX/FunctionFixture.h"
#include "common/ResourceFunc.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class OpticalDrive : public FunctionTest {
 protected:
    void SetUp() override { m_pFunction = load(L"ODD"); }
    void TearDown() override { m_pFunction->finalize(); }

    HRESULT build(DWORD dwMask, LONG lCurrent) {
        m_plugin->info = dwMask;
        m_plugin->currentItem = lCurrent;
        m_items.clear();
        return m_pFunction->initItems(m_items.vec());
    }
    HRESULT defaultItem(LONG& rlItem) { return m_pFunction->getDefaultSelectItem(rlItem); }

    std::unique_ptr<CFuncX> m_pFunction;
    Items m_items;
};

class Backlight : public FunctionTest {
 protected:
    void SetUp() override { m_pFunction = load(L"KBB"); }
    void TearDown() override { m_pFunction->finalize(); }

    std::wstring status(DWORD dwCurrent) {
        m_plugin->currentItem = static_cast<LONG>(dwCurrent);
        EXPECT_EQ(m_pFunction->getCurrentItem(), S_OK);
        return m_pFunction->getCurrentStatus();
    }

    std::unique_ptr<CFuncX> m_pFunction;
};

}  // namespace

TEST_F(OpticalDrive, TranslatesTheCardsIndexToThePluginsValue) {
    ASSERT_EQ(build(0x11, 4), S_OK);
    EXPECT_EQ(m_items.size(), 2U);
    for (const LONG lIndex : std::initializer_list<LONG>{0, 1}) {
        bool bHideCard = true;
        EXPECT_EQ(m_pFunction->selectItem(lIndex, &bHideCard, 5), S_OK);
        EXPECT_TRUE(bHideCard);
    }
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].arguments[0], 0);
    EXPECT_EQ(calls[1].arguments[0], 4);
}

TEST_F(OpticalDrive, AnIndexBeyondTheItemsNeverReachesThePlugin) {
    ASSERT_EQ(build(0x11, 4), S_OK);
    for (const LONG lIndex : std::initializer_list<LONG>{-1, 2, 0x7FFFFFFF, LONG_MIN}) {
        EXPECT_EQ(m_pFunction->selectItem(lIndex, -1), E_FAIL);
    }
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxODD::selectItem): Error Code: 0x80004005"), 4U);
}

TEST_F(OpticalDrive, TheDefaultIsThePlaceOfTheCurrentValue) {
    LONG lItem = 77;
    ASSERT_EQ(build(0xA, 3), S_OK);
    EXPECT_EQ(defaultItem(lItem), S_OK);
    EXPECT_EQ(lItem, 1);
    ASSERT_EQ(build(0x11, 0), S_OK);
    EXPECT_EQ(defaultItem(lItem), S_OK);
    EXPECT_EQ(lItem, 0);
}

TEST_F(OpticalDrive, CancelAsCurrentValueSelectsTheFirstItem) {
    LONG lItem = 77;
    ASSERT_EQ(build(0x11, 4), S_OK);
    EXPECT_EQ(defaultItem(lItem), S_OK);
    EXPECT_EQ(lItem, 0);
    EXPECT_EQ(m_pFunction->getCurrentStatus(), L"");
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(OpticalDrive, NoDefaultWhenTheValueHasNoItem) {
    LONG lItem = 77;
    ASSERT_EQ(build(0x3, 4), S_OK);
    EXPECT_EQ(defaultItem(lItem), E_FAIL);
    ASSERT_EQ(build(0, 0), S_OK);
    EXPECT_EQ(defaultItem(lItem), E_FAIL);
    EXPECT_EQ(lItem, 77);
    EXPECT_EQ(timesLogged(L"[ERR] (CFxODD::getDefaultSelectItem): Error Code: 0x80004005"), 2U);
}

TEST_F(OpticalDrive, ValuesAreForgottenOnlyWhenThePluginReportsAnew) {
    ASSERT_EQ(build(0x18, 3), S_OK);
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    EXPECT_EQ(build(0x1, 3), E_FAIL);
    EXPECT_EQ(m_pFunction->selectItem(1, -1), S_OK);  // still the previous values
    m_plugin->exports[instr::GetDisplayItemInfoId].result = 0;
    ASSERT_EQ(build(0x1, 0), S_OK);
    EXPECT_EQ(m_pFunction->selectItem(1, -1), E_FAIL);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 4);
}

TEST_F(Backlight, TheTimerTellsItsTime) {
    const std::wstring strTimer = loadResString(564) + L"\r\n";
    const std::wstring strUnit = L" " + loadResString(565);
    EXPECT_EQ(status(0x000F0000), strTimer + L"15" + strUnit);
    EXPECT_EQ(status(0), strTimer + L"0" + strUnit);
    EXPECT_EQ(status(0xFFFF0000), strTimer + L"65535" + strUnit);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Backlight, OtherStatesIgnoreTheHighHalf) {
    EXPECT_EQ(status(0x000F0001), loadResString(562));
    EXPECT_EQ(status(0x80000002), loadResString(563));
    EXPECT_EQ(status(0x000F0003), L"");
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxKBB::getCurrentStatus): ASSERT( !\"Get wrong current item!\" )"));
}

TEST_F(Backlight, TheCardsIndexGoesOnUnchanged) {
    m_plugin->info = 6;
    Items items;
    ASSERT_EQ(m_pFunction->initItems(items.vec()), S_OK);
    EXPECT_EQ(m_pFunction->selectItem(1, 3), S_OK);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 1);
}

}  // namespace functest
