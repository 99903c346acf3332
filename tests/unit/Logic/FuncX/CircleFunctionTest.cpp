// The functions of round items, each compared with its expected contents.
#include <gmock/gmock.h>

#include <memory>

#include "Logic/FuncX/FunctionFixture.h"
#include "common/ResourceFunc.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct ExpectedItem {
    UINT uTextId;
    UINT uImage1;
    UINT uImage2;
};

struct Expected {
    const wchar_t* pszName;
    const wchar_t* pszClass;
    UINT uSmall;  // 0: it depends on the state
    UINT uLarge;
    UINT uDesc;
    bool bMask;
    std::vector<ExpectedItem> items;
    std::vector<UINT> statusIds;  // empty: no state
    const wchar_t* pszWrong;
};

constexpr wchar_t kGetWrong[] = L"!\"Get wrong current item!\"";

const std::vector<Expected>& expectations() {
    static const std::vector<Expected> all{
        {L"Mute", L"CFxMute", 111, 110, 211, false, {{212, 113, 112}, {213, 115, 114}}, {212, 213}, kGetWrong},
        {L"Lock", L"CFxLock", 131, 130, 221, false, {{222, 133, 132}, {200, 101, 100}}, {}, nullptr},
        {L"Sleep", L"CFxSleep", 181, 180, 241, false, {{242, 183, 182}, {200, 101, 100}}, {}, nullptr},
        {L"Hibernate", L"CFxHibernate", 201, 200, 251, false, {{252, 203, 202}, {200, 101, 100}}, {}, nullptr},
        {L"Touchpad", L"CFxTouchpad", 471, 470, 521, false, {{524, 473, 472}, {525, 475, 474}}, {522, 523}, kGetWrong},
        {L"Zoom",
         L"CFxZoom",
         531,
         530,
         571,
         true,
         {{572, 533, 532}, {573, 535, 534}, {574, 537, 536}},
         {572, 573, 574},
         kGetWrong},
        {L"KBB",
         L"CFxKBB",
         581,
         580,
         561,
         true,
         {{564, 587, 586}, {562, 583, 582}, {563, 585, 584}},
         {564, 562, 563},
         kGetWrong},
        {L"ODD",
         L"CFxODD",
         551,
         550,
         551,
         true,
         {{552, 553, 552}, {554, 557, 556}, {555, 555, 554}, {553, 559, 558}, {200, 101, 100}},
         {552, 554, 555, 553, 0},
         kGetWrong},
        {L"CursorOverlay",
         L"CFxCursorOverlay",
         0,
         490,
         531,
         false,
         {{534, 494, 493}, {535, 496, 495}},
         {532, 533},
         L"!_T(\"Wrong current item!\")"},
        {L"NumericOverlay",
         L"CFxNumOverlay",
         0,
         510,
         541,
         false,
         {{534, 514, 513}, {535, 516, 515}},
         {532, 533},
         L"!\"Wrong current item!\""},
    };
    return all;
}

void PrintTo(const Expected& expected, std::ostream* pOut) {
    *pOut << testing::PrintToString(expected.pszClass);
}

class CircleFunction : public FunctionTest, public testing::WithParamInterface<Expected> {
 protected:
    void SetUp() override {
        m_pFunction = load(GetParam().pszName);
        m_plugin->info = GetParam().bMask ? 0xFFFFFFFFU : 3U;
    }
    void TearDown() override { m_pFunction->finalize(); }

    [[nodiscard]] std::wstring line(const wchar_t* pszMethod, const std::wstring& text) const {
        return L"[ERR] (" + std::wstring(GetParam().pszClass) + L"::" + pszMethod + L"): " + text;
    }
    [[nodiscard]] bool hasState() const { return !GetParam().statusIds.empty(); }
    void setCurrent(LONG lItem) {
        m_plugin->currentItem = lItem;
        ASSERT_EQ(m_pFunction->getCurrentItem(), S_OK);
    }
    [[nodiscard]] std::vector<ItemView> expectedItems(DWORD dwMask) const {
        std::vector<ItemView> views;
        for (std::size_t i = 0; i < GetParam().items.size(); ++i) {
            const ExpectedItem& item = GetParam().items[i];
            if ((dwMask & DWORD{1} << i) != 0) {
                views.push_back({loadResString(item.uTextId), item.uImage1, item.uImage2});
            }
        }
        return views;
    }

    std::unique_ptr<CFuncX> m_pFunction;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, CircleFunction, testing::ValuesIn(expectations()), [](const auto& rInfo) {
    const std::wstring name = rInfo.param.pszName;
    return std::string(name.begin(), name.end());
});

TEST_P(CircleFunction, HasItsPicturesAndDescription) {
    if (GetParam().uSmall != 0) {
        EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uSmall);
        EXPECT_FALSE(m_pFunction->needRefreshSmallPng());
    }
    EXPECT_EQ(m_pFunction->getLargePngID(), GetParam().uLarge);
    const std::wstring strDesc = loadResString(GetParam().uDesc);
    EXPECT_NE(strDesc, L"");
    EXPECT_EQ(m_pFunction->getDesc(), strDesc);
    EXPECT_EQ(m_pFunction->getDesc(), strDesc);
}

TEST_P(CircleFunction, MakesAllItsItems) {
    Items items;
    EXPECT_EQ(m_pFunction->initItems(items.vec()), S_OK);
    EXPECT_EQ(items.views(), expectedItems(~DWORD{0}));
    EXPECT_EQ(m_plugin.count(instr::GetCurrentItemId), hasState() ? 1 : 0);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_P(CircleFunction, FunctionsOfTwoItemsInsistOnThree) {
    if (GetParam().bMask) {
        return;
    }
    for (const DWORD dwInfo : {0U, 1U, 2U, 4U, 7U, 0x80000003U, 0xFFFFFFFFU}) {
        Items items;
        m_plugin->info = dwInfo;
        EXPECT_EQ(m_pFunction->initItems(items.vec()), E_FAIL);
        EXPECT_EQ(items.size(), 0U);
    }
    EXPECT_EQ(timesLogged(line(L"initItems", L"Error Code: 0x80004005")), 7U);
}

TEST_P(CircleFunction, MaskFunctionsMakeTheItemsOfTheBits) {
    if (!GetParam().bMask) {
        return;
    }
    const DWORD dwAll = (DWORD{1} << GetParam().items.size()) - 1;
    for (DWORD dwMask = 0; dwMask <= dwAll; ++dwMask) {
        Items items;
        m_plugin->info = dwMask | (dwMask % 2 != 0 ? ~dwAll : 0);  // unknown bits are ignored
        EXPECT_EQ(m_pFunction->initItems(items.vec()), S_OK);
        EXPECT_EQ(items.views(), expectedItems(dwMask)) << dwMask;
    }
}

TEST_P(CircleFunction, FailedInformationCleansTheCallersItems) {
    Items items;
    ASSERT_EQ(m_pFunction->initItems(items.vec()), S_OK);
    const std::size_t before = items.size();
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    EXPECT_EQ(m_pFunction->initItems(items.vec()), E_FAIL);
    EXPECT_EQ(items.size(), before);
    EXPECT_EQ(items.alive(), 0U);
    EXPECT_TRUE(logged(line(L"initItems", L"Error Code: 0x80004005")));
}

TEST_P(CircleFunction, FailedCurrentItemCleansTheItems) {
    m_plugin->exports[instr::GetCurrentItemId].result = 1;
    Items items;
    EXPECT_EQ(m_pFunction->initItems(items.vec()), hasState() ? E_FAIL : S_OK);
    EXPECT_EQ(items.alive(), hasState() ? 0U : 2U);
    EXPECT_EQ(logged(line(L"initItems", L"Error Code: 0x80004005")), hasState());
}

TEST_P(CircleFunction, WithoutPicturesTheItemsAreCleaned) {
    Items items;
    ASSERT_EQ(m_pFunction->initItems(items.vec()), S_OK);
    withoutPictures();
    EXPECT_TRUE(FAILED(m_pFunction->initItems(items.vec())));
    EXPECT_EQ(items.alive(), 0U);
}

TEST_P(CircleFunction, ShowsTheStatusOfEachState) {
    if (!hasState()) {
        setCurrent(0);
        EXPECT_EQ(m_pFunction->getCurrentStatus(), L"");
        EXPECT_THAT(errors(), IsEmpty());
        return;
    }
    // The timer of the keyboard backlight also shows its time, which has its own test.
    for (std::size_t i = GetParam().pszName == std::wstring(L"KBB") ? 1 : 0; i < GetParam().statusIds.size(); ++i) {
        setCurrent(static_cast<LONG>(i));
        const UINT uTextId = GetParam().statusIds[i];
        EXPECT_EQ(m_pFunction->getCurrentStatus(), uTextId != 0 ? loadResString(uTextId) : std::wstring());
    }
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_P(CircleFunction, UnknownStateHasNoStatus) {
    if (!hasState()) {
        return;
    }
    const auto lCount = static_cast<LONG>(GetParam().statusIds.size());
    std::size_t times = 0;
    for (const LONG lItem : std::initializer_list<LONG>{lCount, 0x7FFF, 0x8000, -2}) {
        setCurrent(lItem);
        EXPECT_EQ(m_pFunction->getCurrentStatus(), L"");
        EXPECT_EQ(timesLogged(line(L"getCurrentStatus", L"ASSERT( " + std::wstring(GetParam().pszWrong) + L" )")),
                  ++times);
    }
}

TEST_P(CircleFunction, InvalidStateHasNeitherStatusNorDefault) {
    LONG lItem = 77;
    if (!hasState()) {
        EXPECT_EQ(m_pFunction->getDefaultSelectItem(lItem), S_OK);
        EXPECT_EQ(lItem, 0);
        return;
    }
    EXPECT_EQ(m_pFunction->getCurrentStatus(), L"");
    EXPECT_EQ(m_pFunction->getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_EQ(lItem, 77);
    const std::wstring text = L"ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItem )";
    EXPECT_THAT(errors(), ElementsAre(line(L"getCurrentStatus", text), line(L"getDefaultSelectItem", text)));
}

TEST_P(CircleFunction, ANewlyReportedInvalidStateIsSeenAgain) {
    if (!hasState()) {
        return;
    }
    setCurrent(0);
    setCurrent(-1);
    LONG lItem = 77;
    EXPECT_EQ(m_pFunction->getDefaultSelectItem(lItem), E_FAIL);
}

namespace {

struct DefaultCase {
    const wchar_t* pszName;
    LONG lCurrent;
    HRESULT status;
    LONG lExpected;  // 77: unchanged
    const wchar_t* pszAssertion;
};

}  // namespace

using CircleDefault = FunctionTest;

TEST_F(CircleDefault, FollowsTheRuleOfItsFunction) {
    const std::wstring wrong = L"ASSERT( !\"Get wrong current item!\" )";
    const DefaultCase cases[] = {
        {L"Mute", 0, S_OK, 1, nullptr},
        {L"Mute", 1, S_OK, 0, nullptr},
        {L"Mute", 2, E_FAIL, 77, L"CFxMute"},
        {L"Mute", -2, E_FAIL, 77, L"CFxMute"},
        {L"Touchpad", 0, S_OK, 1, nullptr},
        {L"Touchpad", 1, S_OK, 0, nullptr},
        {L"Touchpad", 7, S_OK, 77, L"CFxTouchpad"},
        {L"Zoom", 2, S_OK, 2, nullptr},
        {L"Zoom", 9, S_OK, 9, nullptr},
        {L"CursorOverlay", 1, S_OK, 1, nullptr},
        {L"NumericOverlay", 0, S_OK, 0, nullptr},
        {L"NumericOverlay", 5, S_OK, 5, nullptr},
        {L"KBB", 0, S_OK, 0, nullptr},
        {L"KBB", 1, S_OK, 2, nullptr},
        {L"KBB", 2, S_OK, 1, nullptr},
        {L"KBB", 0x000F0000, S_OK, 0, nullptr},
        {L"KBB", 0x000F0001, S_OK, 2, nullptr},
        {L"KBB", 0x000F0005, S_OK, 5, L"CFxKBB"},
        {L"Lock", 1, S_OK, 0, nullptr},
        {L"Sleep", 9, S_OK, 0, nullptr},
        {L"Hibernate", -1, S_OK, 0, nullptr},
    };
    for (const DefaultCase& test : cases) {
        SCOPED_TRACE(testing::PrintToString(test.pszName) + " " + std::to_string(test.lCurrent));
        const auto pFunction = load(test.pszName);
        m_plugin->currentItem = test.lCurrent;
        ASSERT_EQ(pFunction->getCurrentItem(), S_OK);
        m_log.clear();
        LONG lItem = 77;
        EXPECT_EQ(pFunction->getDefaultSelectItem(lItem), test.status);
        EXPECT_EQ(lItem, test.lExpected);
        if (test.pszAssertion != nullptr) {
            EXPECT_THAT(errors(), ElementsAre(L"[ERR] (" + std::wstring(test.pszAssertion) +
                                              L"::getDefaultSelectItem): " + wrong));
        } else {
            EXPECT_THAT(errors(), IsEmpty());
        }
        pFunction->finalize();
    }
}

TEST_F(CircleDefault, ZoomHandsTheCardsIndexOn) {
    const auto pFunction = load(L"Zoom");
    m_plugin->info = 5;
    Items items;
    ASSERT_EQ(pFunction->initItems(items.vec()), S_OK);
    EXPECT_THAT(items.views(),
                ElementsAre(ItemView{loadResString(572), 533, 532}, ItemView{loadResString(574), 537, 536}));
    bool bHideCard = true;
    EXPECT_EQ(pFunction->selectItem(1, &bHideCard, -1), S_OK);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 1);
    pFunction->finalize();
}

}  // namespace functest
