// The card's rules, with test doubles for function and items.
#include "UI/Doubles.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"

namespace cards {
namespace {

using items::rect;
using items::shown;
using support::windowRect;
using Calls = std::vector<std::string>;
using Lines = std::vector<std::wstring>;

constexpr DWORD kOtherKey = 0x44;
constexpr RECT kCard{0, 0, 96, 112};

std::wstring failure(const wchar_t* function, unsigned status) {
    wchar_t line[128];
    ::wsprintfW(line, L"[ERR] (CBlackCard::%s): Error Code: 0x%x", function, status);
    return line;
}

class BlackCard : public items::ItemTest {
 protected:
    BlackCard() : m_card(m_room.addCard()) {
        auto function = std::make_unique<PlainFunction>(m_record);
        m_pFunction = function.get();
        BlackCardSeam::function(m_card) = std::move(function);
        m_card.setCardRect(kCard);
        items::place(m_room.stripWindow(), 600, 0, 96, 112);
        m_log.clear();
    }
    ~BlackCard() override { m_card.uninitialize(); }  // while the record still exists
    [[nodiscard]] HRESULT press() { return m_card.notifyHotkey(kKey, FALSE); }
    [[nodiscard]] HRESULT letGo() { return m_card.notifyHotkey(0, TRUE); }
    [[nodiscard]] int selected() const { return BlackCardSeam::selected(m_card); }
    [[nodiscard]] bool firstTime() const { return BlackCardSeam::firstTime(m_card); }
    [[nodiscard]] std::vector<CQrdItem*>& row() const { return BlackCardSeam::items(m_card); }
    [[nodiscard]] CLargeCardDlg* large() const { return BlackCardSeam::largeCard(m_card).get(); }
    [[nodiscard]] bool largeShown() const { return large() != nullptr && shown(large()->m_hWnd); }
    [[nodiscard]] bool itemsShown() const {
        return std::all_of(row().begin(), row().end(),
                           [](const CQrdItem* item) { return item == nullptr || shown(item->windowHandle()); });
    }
    [[nodiscard]] Calls calls() { return std::exchange(m_record.calls, {}); }
    [[nodiscard]] std::vector<Switch> switches() { return std::exchange(m_record.switches, {}); }

    Record m_record;
    CBlackCard& m_card;
    PlainFunction* m_pFunction;
};

// ---------------------------------------------------------------------------------------------------------------------
// First press, stepping, letting go

TEST_F(BlackCard, FirstPressShowsTheCardWithTheCurrentItemSelected) {
    EXPECT_EQ(press(), S_OK);
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(itemsShown());
    EXPECT_EQ(LargeCardSeam::text(*large()), L"Status");
    EXPECT_EQ(selected(), 1);
    EXPECT_FALSE(firstTime());
    EXPECT_TRUE(m_card.hasValidSelection());
    EXPECT_EQ(calls(), (Calls{"timer 20", "items", "default"}));
    EXPECT_EQ(m_pFunction->m_hTimerWnd, m_room.stripWindow());
}

TEST_F(BlackCard, SelectedItemIsSwitchedLast) {
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(switches(), (std::vector<Switch>{{0, kKey, true, false}, {2, kKey, true, false}, {1, kKey, true, true}}));
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(switches(),
              (std::vector<Switch>{{0, kKey, false, false}, {1, kKey, false, false}, {2, kKey, false, true}}));
}

TEST_F(BlackCard, FurtherPressesStepAndWrap) {
    ASSERT_EQ(press(), S_OK);
    for (const int expected : {2, 0, 1, 2, 0}) {
        EXPECT_EQ(press(), S_OK);
        EXPECT_EQ(selected(), expected);
    }
    EXPECT_EQ(calls(),
              (Calls{"timer 20", "items", "default", "timer 20", "timer 20", "timer 20", "timer 20", "timer 20"}))
        << "the items are built once; the timer is armed at every press";
}

TEST_F(BlackCard, OneItemStaysSelected) {
    m_pFunction->m_nItems = 1;
    m_pFunction->m_lDefault = 0;
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(press(), S_OK);
        EXPECT_EQ(selected(), 0);
    }
}

TEST_F(BlackCard, LettingGoAppliesTheSelectedItemAndHides) {
    showStrip();
    ASSERT_EQ(press(), S_OK);
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_EQ(calls(), Calls{"select 2 -1 hide"});
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(largeShown());
    EXPECT_FALSE(shown(row()[0]->windowHandle()));
    EXPECT_EQ(selected(), -1);
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, PressAfterThatIsAFirstOneAgain) {
    ASSERT_EQ(press(), S_OK);
    ASSERT_EQ(letGo(), S_OK);
    static_cast<void>(calls());
    const HWND largeWindow = large()->m_hWnd;
    EXPECT_EQ(press(), S_OK);
    EXPECT_EQ(selected(), 1);
    EXPECT_EQ(calls(), (Calls{"timer 20", "destroy 0", "destroy 1", "destroy 2", "items", "default"}))
        << "items are built anew";
    EXPECT_EQ(large()->m_hWnd, largeWindow) << "the enlarged card is kept";
    EXPECT_EQ(m_record.alive, 3);
}

TEST_F(BlackCard, LettingGoWithNothingSelectedOrShownDoesNothing) {
    showStrip();
    EXPECT_EQ(letGo(), S_FALSE);
    EXPECT_TRUE(stripShown());
    EXPECT_TRUE(calls().empty());
}

TEST_F(BlackCard, LettingGoWithNothingSelectedHidesAShownCard) {
    ASSERT_EQ(m_card.showLargeCardDlg(), S_OK);
    showStrip();
    ASSERT_EQ(selected(), -1);
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(largeShown());
}

TEST_F(BlackCard, EnlargedCardIsPaintedBeforeAnythingElseHappens) {
    ASSERT_EQ(m_card.showLargeCardDlg(), S_OK);
    EXPECT_TRUE(shown(LargeCardSeam::layered(*BlackCardSeam::largeCard(m_card))->m_hWnd)) << "no message was handled";
}

TEST_F(BlackCard, ReleaseOfAFunctionKeyChangesNothing) {
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    EXPECT_EQ(m_card.notifyHotkey(kKey, TRUE), S_FALSE);
    EXPECT_EQ(m_card.notifyHotkey(kOtherKey, TRUE), S_FALSE);
    EXPECT_EQ(selected(), 1);
    EXPECT_FALSE(firstTime());
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(calls().empty());
}

TEST_F(BlackCard, ForeignKeyMakesTheNextPressAFirstOneAndHidesNothing) {
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    EXPECT_EQ(m_card.notifyHotkey(kOtherKey, FALSE), S_OK);
    EXPECT_TRUE(firstTime());
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(itemsShown());
    EXPECT_EQ(selected(), 1);
    EXPECT_TRUE(calls().empty()) << "no timer either";
    EXPECT_EQ(m_card.notifyHotkey(0, FALSE), S_OK) << "nor does the modifier's own press";
}

TEST_F(BlackCard, PressIsLoggedWithItsEnds) {
    ASSERT_EQ(press(), S_OK);
    const Lines lines = m_log.lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), L"[TRC] (CBlackCard::notifyHotkey): ENTER CBlackCard::notifyHotkey");
    EXPECT_EQ(lines.back(), L"[TRC] (CBlackCard::notifyHotkey): LEAVE CBlackCard::notifyHotkey");
    EXPECT_TRUE(errors().empty());
}

TEST_F(BlackCard, WithoutAFunctionAPressFails) {
    BlackCardSeam::function(m_card).reset();
    EXPECT_EQ(press(), E_POINTER);
    EXPECT_EQ(errors(), Lines{failure(L"notifyHotkey", 0x80004003)});
}

TEST_F(BlackCard, WithoutAParentWindowAPressFails) {
    CBlackCard orphan(nullptr, m_room.placement());
    BlackCardSeam::function(orphan) = std::make_unique<PlainFunction>(m_record);
    EXPECT_EQ(orphan.notifyHotkey(kOtherKey, FALSE), S_OK) << "a foreign key needs none";
    EXPECT_EQ(orphan.notifyHotkey(kKey, FALSE), E_POINTER);
    EXPECT_EQ(errors(), Lines{failure(L"notifyHotkey", 0x80004003)});
}

// ---------------------------------------------------------------------------------------------------------------------
// Failing steps of the first press

TEST_F(BlackCard, FailingItemsLeaveTheEnlargedCardWithItsStatus) {
    m_pFunction->m_itemsStatus = E_HANDLE;
    EXPECT_EQ(press(), E_HANDLE);
    EXPECT_TRUE(largeShown());
    EXPECT_EQ(LargeCardSeam::text(*large()), L"Status");
    EXPECT_TRUE(row().empty());
    EXPECT_TRUE(firstTime());
    EXPECT_EQ(selected(), -1);
    EXPECT_TRUE(logged(failure(L"showLargeCardDlg", 0x80004005)));
    EXPECT_TRUE(logged(failure(L"notifyHotkey", 0x80070006)));
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_FALSE(largeShown());
}

TEST_F(BlackCard, NoItemsAtAllFailTheSameWay) {
    m_pFunction->m_nItems = 0;
    EXPECT_EQ(press(), E_FAIL);
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, UnknownCurrentItemIsReturned) {
    m_pFunction->m_defaultStatus = E_UNEXPECTED;
    EXPECT_EQ(press(), E_UNEXPECTED);
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(itemsShown());
    EXPECT_TRUE(firstTime());
    EXPECT_EQ(selected(), -1);
    EXPECT_TRUE(logged(failure(L"handleHotkeyFirstTime", 0x8000FFFF)));
}

TEST_F(BlackCard, CurrentItemBeyondTheRowFails) {
    for (const LONG item : {3L, -1L, 0x7FFFFFFFL}) {
        m_log.clear();
        m_pFunction->m_lDefault = item;
        EXPECT_EQ(press(), E_FAIL);
        EXPECT_TRUE(firstTime());
        EXPECT_TRUE(switches().empty());
        EXPECT_FALSE(m_card.hasValidSelection());
        EXPECT_TRUE(logged(failure(L"refreshItemDlgs", 0x80004005)));
        EXPECT_EQ(selected(), -1);
        EXPECT_TRUE(largeShown());
        EXPECT_EQ(letGo(), S_OK) << "there is nothing to apply";
        EXPECT_FALSE(largeShown()) << "and the card does not stay behind";
    }
}

TEST_F(BlackCard, ItemThatCannotBeSwitchedStopsTheOthers) {
    m_pFunction->m_mapSwitched[0] = E_ACCESSDENIED;
    EXPECT_EQ(press(), E_ACCESSDENIED);
    EXPECT_EQ(switches(), (std::vector<Switch>{{0, kKey, true, false}}));
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, ItemWithNothingToSwitchStopsNobody) {
    m_pFunction->m_mapSwitched[0] = S_FALSE;
    EXPECT_EQ(press(), S_OK);
    EXPECT_EQ(switches().size(), 3U);
}

TEST_F(BlackCard, SelectedItemThatCannotBeSwitchedFails) {
    m_pFunction->m_mapSwitched[1] = E_ACCESSDENIED;
    EXPECT_EQ(press(), E_ACCESSDENIED);
    EXPECT_EQ(switches().size(), 3U);
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, StepThatFailsKeepsItsPlace) {
    m_pFunction->m_mapSwitched[2] = E_ACCESSDENIED;
    m_pFunction->m_lDefault = 2;
    EXPECT_EQ(press(), E_ACCESSDENIED);
    EXPECT_EQ(selected(), 2);
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, MissingItemsAreSkipped) {
    m_pFunction->m_nNullItem = 2;
    EXPECT_EQ(press(), S_OK);
    EXPECT_EQ(switches(), (std::vector<Switch>{{0, kKey, true, false}, {1, kKey, true, true}}));
    EXPECT_TRUE(FAILED(press())) << "a missing one cannot be selected";
    EXPECT_EQ(m_card.hideLargeCardDlg(), S_OK);
}

TEST_F(BlackCard, WithoutItsPictureTheEnlargedCardIsNotMade) {
    m_pFunction->m_uLarge = 9999;
    EXPECT_EQ(press(), E_POINTER);
    EXPECT_EQ(large(), nullptr);
    EXPECT_TRUE(firstTime());
    EXPECT_TRUE(logged(L"[ERR] (CLargeCardDlg::initialize): Error Code: 0x80004003"));
    EXPECT_EQ(calls(), Calls{"timer 20"});
}

TEST_F(BlackCard, LostEnlargedCardIsMadeAnew) {
    ASSERT_EQ(press(), S_OK);
    ASSERT_EQ(letGo(), S_OK);
    ::DestroyWindow(large()->m_hWnd);
    EXPECT_EQ(press(), S_OK);
    EXPECT_TRUE(largeShown());
}

// ---------------------------------------------------------------------------------------------------------------------
// Applying

TEST_F(BlackCard, FunctionMayKeepTheStrip) {
    showStrip();
    ASSERT_EQ(press(), S_OK);
    m_pFunction->m_bHide = false;
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_TRUE(largeShown());
    EXPECT_EQ(selected(), 1);
}

TEST_F(BlackCard, RefusedChoiceIsLoggedAndHidesAllTheSame) {
    showStrip();
    ASSERT_EQ(press(), S_OK);
    m_log.clear();
    m_pFunction->m_selectStatus = E_ACCESSDENIED;
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_TRUE(logged(failure(L"executeFunx", 0x80004005)));
    EXPECT_FALSE(logged(failure(L"executeFunx", 0x80070005)));
    EXPECT_FALSE(stripShown());
}

TEST_F(BlackCard, IndexBeyondTheRowIsAnAssertion) {
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    m_log.clear();
    for (const int index : {3, 4, 0x7FFFFFFF}) {
        EXPECT_EQ(m_card.executeFunx(index, -1, true), E_FAIL);
    }
    const std::wstring line = L"[ERR] (CBlackCard::executeFunx): ASSERT( indexInContainer(nSelItem, m_vecItems) )";
    EXPECT_EQ(errors(), (Lines{line, line, line}));
    EXPECT_TRUE(calls().empty());
}

TEST_F(BlackCard, ParameterAndWishToStayArePassedOn) {
    ASSERT_EQ(press(), S_OK);
    showStrip();
    static_cast<void>(calls());
    EXPECT_EQ(m_card.executeFunx(0, 77, false), S_OK);
    EXPECT_EQ(calls(), Calls{"select 0 77 stay"});
    EXPECT_TRUE(stripShown());
}

TEST_F(BlackCard, NegativeIndexOnlyHides) {
    ASSERT_EQ(press(), S_OK);
    showStrip();
    static_cast<void>(calls());
    EXPECT_EQ(m_card.executeFunx(-5, -1, false), S_OK);
    EXPECT_TRUE(calls().empty());
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(m_card.executeFunx(-1, -1, true), S_FALSE);
}

TEST_F(BlackCard, HidingThatFailsIsReturned) {
    ASSERT_EQ(press(), S_OK);
    ZelMainSeam::hoverStrip()->DestroyWindow();
    EXPECT_EQ(m_card.executeFunx(0, -1, true), E_FAIL);
    EXPECT_EQ(m_card.executeFunx(-1, -1, true), E_FAIL);
}

TEST_F(BlackCard, WithoutAFunctionNothingIsApplied) {
    ASSERT_EQ(press(), S_OK);
    BlackCardSeam::function(m_card).reset();
    m_log.clear();
    EXPECT_EQ(m_card.executeFunx(0, -1, true), E_POINTER);
    EXPECT_EQ(errors(), Lines{failure(L"executeFunx", 0x80004003)});
}

TEST_F(BlackCard, ItemIsAppliedByItsPlace) {
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    EXPECT_EQ(m_card.selectItem(row()[2], 5, false), S_OK);
    EXPECT_EQ(calls(), Calls{"select 2 5 stay"});
}

TEST_F(BlackCard, UnknownItemCountsAsOneBeyondTheRow) {
    ASSERT_EQ(press(), S_OK);
    static_cast<void>(calls());
    PlainItem stranger(9, m_record, S_OK);
    EXPECT_EQ(m_card.selectItem(&stranger, -1, true), E_FAIL);
    EXPECT_TRUE(calls().empty());
    stranger.destroyItem();
}

TEST_F(BlackCard, ItemOfAnEmptyRowFails) {
    EXPECT_EQ(m_card.selectItem(nullptr, -1, true), E_FAIL);
    EXPECT_EQ(errors(), Lines{L"[ERR] (CBlackCard::executeFunx): ASSERT( indexInContainer(nSelItem, m_vecItems) )"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Showing and hiding

TEST_F(BlackCard, ThatIsPutAwayWhileItsItemIsAskedForIsAtItsBeginning) {
    for (auto* meanwhile : {&m_pFunction->m_duringItems, &m_pFunction->m_duringStatus, &m_pFunction->m_duringDefault}) {
        *meanwhile = [] { EXPECT_EQ(theApp.showMainDlg(FALSE, TRUE), S_OK); };
        EXPECT_EQ(press(), S_OK);
        EXPECT_FALSE(largeShown());
        for (const CQrdItem* item : row()) {
            EXPECT_FALSE(shown(item->windowHandle()));
        }
        EXPECT_TRUE(firstTime());
        EXPECT_EQ(selected(), -1);
        *meanwhile = nullptr;
        static_cast<void>(calls());
        EXPECT_EQ(letGo(), S_FALSE);
        EXPECT_TRUE(calls().empty()) << "nothing is applied that nobody saw";
        EXPECT_EQ(press(), S_OK);
        EXPECT_TRUE(largeShown());
        EXPECT_EQ(selected(), 1) << "a first press again";
        EXPECT_EQ(m_card.hideLargeCardDlg(), S_OK);
    }
}

TEST_F(BlackCard, KeyThatIsNotHeldAnyMoreIsNotWatched) {
    EXPECT_EQ(m_card.notifyHotkey(kKey, FALSE, false), S_OK);
    EXPECT_EQ(calls(), (Calls{"items", "default"}));
    EXPECT_EQ(press(), S_OK);
    EXPECT_EQ(calls(), Calls{"timer 20"});
}

TEST_F(BlackCard, HidingTellsWhatWasThere) {
    EXPECT_EQ(m_card.hideLargeCardDlg(), E_POINTER);
    EXPECT_TRUE(errors().empty()) << "it was never enlarged: that happens at every release of the modifier";
    EXPECT_TRUE(logged(L"[TRC] (CBlackCard::hideLargeCardDlg): Error Code: 0x80004003"));
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(m_card.hideLargeCardDlg(), S_OK);
    EXPECT_FALSE(largeShown());
    m_log.clear();
    ::DestroyWindow(large()->m_hWnd);
    EXPECT_EQ(m_card.hideLargeCardDlg(), E_FAIL);
    EXPECT_EQ(errors(), Lines{L"[ERR] (CBlackCard::hideLargeCardDlg): ASSERT( ::IsWindow(m_pLargeCardDlg->m_hWnd) )"});
}

TEST_F(BlackCard, HidingForgetsTheSelectionEvenWhenItFails) {
    ASSERT_EQ(press(), S_OK);
    ::DestroyWindow(large()->m_hWnd);
    EXPECT_EQ(m_card.hideLargeCardDlg(), E_FAIL);
    EXPECT_EQ(selected(), -1);
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, ShowingByMouseSelectsNothing) {
    EXPECT_EQ(m_card.showLargeCardDlg(), S_OK);
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(itemsShown());
    EXPECT_EQ(selected(), -1);
    EXPECT_FALSE(m_card.hasValidSelection());
    EXPECT_TRUE(firstTime());
}

TEST_F(BlackCard, ItemsKnowTheirCard) {
    ASSERT_EQ(press(), S_OK);
    for (const CQrdItem* item : row()) {
        const auto* plain = dynamic_cast<const PlainItem*>(item);
        ASSERT_NE(plain, nullptr);
        EXPECT_EQ(plain->card(), &m_card);
    }
}

TEST_F(BlackCard, MissingPartsAreReported) {
    EXPECT_EQ(BlackCardSeam::placeItems(m_card), E_FAIL) << "no items";
    EXPECT_EQ(BlackCardSeam::placeLargeCard(m_card), E_POINTER) << "no enlarged card";
    EXPECT_EQ(m_card.updateStatus(L"x"), E_POINTER);
    ASSERT_EQ(press(), S_OK);
    BlackCardSeam::largeCard(m_card).reset();
    EXPECT_EQ(BlackCardSeam::placeItems(m_card), E_POINTER);
    BlackCardSeam::function(m_card).reset();
    EXPECT_EQ(BlackCardSeam::createLargeCard(m_card), E_POINTER);
    EXPECT_EQ(BlackCardSeam::createItems(m_card), E_POINTER);
}

TEST_F(BlackCard, EnlargedCardGoesWhenItCannotBePlaced) {
    ASSERT_EQ(press(), S_OK);
    m_room.strip().DestroyWindow();
    EXPECT_EQ(BlackCardSeam::createLargeCard(m_card), E_FAIL);
    EXPECT_EQ(large(), nullptr);
}

TEST_F(BlackCard, TearDownEndsTheFunctionBeforeTheWindows) {
    ASSERT_EQ(press(), S_OK);
    const HWND largeWindow = large()->m_hWnd;
    static_cast<void>(calls());
    m_card.uninitialize();
    EXPECT_EQ(calls(), (Calls{"finalize", "delete function", "destroy 0", "destroy 1", "destroy 2"}));
    EXPECT_EQ(m_record.alive, 0);
    EXPECT_FALSE(::IsWindow(largeWindow));
    m_card.uninitialize();
    EXPECT_TRUE(calls().empty());
}

TEST_F(BlackCard, KeyBelongsToTheFunctionThatNamesIt) {
    EXPECT_TRUE(m_card.isHotkeyDesired(kKey));
    EXPECT_FALSE(m_card.isHotkeyDesired(kOtherKey));
    BlackCardSeam::function(m_card).reset();
    EXPECT_FALSE(m_card.isHotkeyDesired(kKey));
    EXPECT_EQ(errors(), Lines{failure(L"isHotkeyDesired", 0)});
}

TEST_F(BlackCard, CaptionWithoutAFunctionIsEmpty) {
    EXPECT_EQ(m_card.getCaption(), L"Fn+F1");
    EXPECT_EQ(m_card.getDesc(), L"Description");
    BlackCardSeam::function(m_card).reset();
    EXPECT_EQ(m_card.getCaption(), L"");
    EXPECT_EQ(errors(), Lines{L"[ERR] (CBlackCard::getCaption): ASSERT( NULL != m_pFunx )"});
}

TEST_F(BlackCard, PictureIsReloadedWhenTheFunctionSaysSo) {
    EXPECT_EQ(m_card.getImage(), nullptr) << "nothing loaded yet";
    m_pFunction->m_bRefresh = true;
    Gdiplus::Image* first = m_card.getImage();
    ASSERT_NE(first, nullptr);
    m_pFunction->m_bRefresh = false;
    EXPECT_EQ(m_card.getImage(), first);
    m_pFunction->m_bRefresh = true;
    m_pFunction->m_uSmall = 9999;
    EXPECT_EQ(m_card.getImage(), first) << "a failed load keeps the old picture";
}

// ---------------------------------------------------------------------------------------------------------------------
// Places

struct Place {
    double ratio;
    DWORD position;
    RECT large;
};
class BlackCardPlace : public BlackCard, public testing::WithParamInterface<Place> {};

TEST_P(BlackCardPlace, EnlargedCardStandsAtItsCard) {
    m_room.setRatio(GetParam().ratio);
    m_room.setBottom(GetParam().position != 0);
    items::place(m_room.stripWindow(), 600, 500, 192, 112);
    m_card.setCardRect({96, 0, 192, 112});
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(windowRect(large()->m_hWnd), GetParam().large);
    EXPECT_NE(items::exStyle(large()->m_hWnd) & WS_EX_TOPMOST, 0U);
}

INSTANTIATE_TEST_SUITE_P(All, BlackCardPlace,
                         testing::Values(Place{1.0, 0, {696, 500, 792, 644}}, Place{0.75, 0, {696, 500, 768, 608}},
                                         Place{1.0, 1, {696, 312, 792, 456}}, Place{0.75, 1, {696, 387, 768, 495}}));

TEST_F(BlackCard, ItemsStandInARowOfEqualSizes) {
    ASSERT_EQ(press(), S_OK);
    // Centred under the card at 600: three items of the first one's size.
    EXPECT_EQ(windowRect(row()[0]->windowHandle()), rect(530, 154, 602, 204));
    EXPECT_EQ(windowRect(row()[1]->windowHandle()), rect(612, 154, 684, 204));
    EXPECT_EQ(windowRect(row()[2]->windowHandle()), rect(694, 154, 766, 204));
    EXPECT_NE(items::exStyle(row()[2]->windowHandle()) & WS_EX_TOPMOST, 0U);
    wchar_t line[160];
    ::swprintf(line, 160, L"[TRC] (CBlackCard::setItemDlgPos): Left max item count:%f, right max item count:%f.",
               634.0 / 82, 618.0 / 82);
    EXPECT_TRUE(logged(line));
}

TEST_F(BlackCard, RowNearTheLeftEdgeStartsThere) {
    items::place(m_room.stripWindow(), 0, 0, 96, 112);
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(windowRect(row()[0]->windowHandle()).left, 28);
}

TEST_F(BlackCard, RowWiderThanTheScreenIsPlacedAllTheSame) {
    m_pFunction->m_nItems = 20;
    EXPECT_EQ(press(), S_OK);
    EXPECT_TRUE(logged(L"[ERR] (CBlackCard::setItemDlgPos): ASSERT( nAllItemsWidth < rectWorkArea.Width() )"));
    EXPECT_EQ(windowRect(row()[0]->windowHandle()).left, 28);
    EXPECT_EQ(windowRect(row()[19]->windowHandle()).left, 28 + 19 * 82);
}

TEST_F(BlackCard, MissingItemLeavesItsPlaceFree) {
    m_pFunction->m_nNullItem = 1;
    m_pFunction->m_lDefault = 0;
    ASSERT_EQ(press(), S_OK);
    EXPECT_EQ(windowRect(row()[2]->windowHandle()).left, 694);
}

// ---------------------------------------------------------------------------------------------------------------------
// Texts

class BlackCardText : public BlackCard, public testing::WithParamInterface<DWORD> {};

TEST_P(BlackCardText, CaptionAndOutlinedDescriptionStandInTheirPlaces) {
    m_room.setBottom(GetParam() != 0);
    m_card.setCardRect(kCard);
    const geometry::Card& parts = BlackCardSeam::parts(m_card);
    rendering::Canvas canvas(96, 112);
    Gdiplus::Graphics graphics(canvas.dc());
    EXPECT_EQ(m_card.drawText(graphics), S_OK);

    const auto count = [&](const RECT& area, DWORD colour) {
        int pixels = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                pixels += canvas.at(x, y) == colour ? 1 : 0;
            }
        }
        return pixels;
    };
    EXPECT_GT(count(parts.caption, 0xFFFFFFFF), 3);
    EXPECT_EQ(count(parts.caption, 0xFF000000), 0) << "the caption has no outline";
    EXPECT_GT(count(parts.desc, 0xFFFFFFFF), 10);
    EXPECT_GT(count(parts.desc, 0xFF000000), 20);
    // One line of text: close to the picture at either edge.
    const LONG middle = (parts.desc.top + parts.desc.bottom) / 2;
    const RECT upper{parts.desc.left, parts.desc.top, parts.desc.right, middle - 2};
    const RECT lower{parts.desc.left, middle + 2, parts.desc.right, parts.desc.bottom};
    EXPECT_EQ(count(GetParam() != 0 ? upper : lower, 0xFFFFFFFF), 0);
}

INSTANTIATE_TEST_SUITE_P(Positions, BlackCardText, testing::Values(0U, 1U));

// ---------------------------------------------------------------------------------------------------------------------
// Focus

// An active window of this thread, like the one that a person works in.
class ActiveWindow {
 public:
    ActiveWindow() {
        m_hWnd = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 900, 500, 50, 50, nullptr, nullptr,
                                   nullptr, nullptr);
        ::SetActiveWindow(m_hWnd);
    }
    ~ActiveWindow() { ::DestroyWindow(m_hWnd); }
    ActiveWindow(const ActiveWindow&) = delete;
    ActiveWindow& operator=(const ActiveWindow&) = delete;
    [[nodiscard]] bool isActive() const { return ::GetActiveWindow() == m_hWnd; }

 private:
    HWND m_hWnd;
};

TEST_F(BlackCard, OpenedByKeysItLeavesTheFocusWhereItIs) {
    const ActiveWindow other;
    ASSERT_TRUE(other.isActive());
    EXPECT_EQ(press(), S_OK);
    EXPECT_TRUE(largeShown());
    EXPECT_TRUE(other.isActive());
    EXPECT_EQ(press(), S_OK);
    EXPECT_EQ(letGo(), S_OK);
    EXPECT_TRUE(other.isActive());
}

TEST_F(BlackCard, OpenedByTheMouseItTakesTheFocus) {
    const ActiveWindow other;
    m_room.setMouseOperating(true);
    EXPECT_EQ(m_card.showLargeCardDlg(), S_OK);
    EXPECT_EQ(::GetActiveWindow(), large()->m_hWnd) << "so that it can lose it";
}

TEST_F(BlackCard, LostFocusHidesTheStripOnlyForAnotherProgramAndTheMouse) {
    struct Row {
        bool mouse;
        HWND next;
        bool stays;
    };
    for (const Row& row : {Row{false, nullptr, true}, Row{false, support::foreignWindow(), true},
                           Row{true, m_room.stripWindow(), true}, Row{true, m_room.hoverWindow(), true},
                           Row{true, nullptr, false}, Row{true, support::foreignWindow(), false}}) {
        showStrip();
        m_room.setMouseOperating(row.mouse);
        CBlackCard::onFocusLost(row.next);
        EXPECT_EQ(stripShown(), row.stays) << row.mouse << " " << row.next;
    }
}

TEST_F(BlackCard, LostFocusToAWindowThatIsGoneCountsAsAnotherProgram) {
    const HWND gone = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    ::DestroyWindow(gone);
    showStrip();
    m_room.setMouseOperating(true);
    CBlackCard::onFocusLost(gone);
    EXPECT_FALSE(stripShown());
}

}  // namespace
}  // namespace cards
