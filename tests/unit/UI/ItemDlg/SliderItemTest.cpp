#include "UI/ItemDlg/ItemsFixture.h"
#include "common/ResourceFunc.h"
#include "res/StringIds.h"

namespace items {
namespace {

constexpr DWORD kDecrease = 0x3E;
constexpr DWORD kIncrease = 0x3F;
constexpr DWORD kOther = 0x40;

class SliderItem : public ItemTest {
 protected:
    // The item of a brightness card whose enlarged card is shown.
    CSliderItemDlg& open(LONG levels, LONG current) {
        m_plugin->info = static_cast<ULONG>(levels);
        m_plugin->currentItem = current;
        m_pCard = &addCard(L"Brightness", {kDecrease, kIncrease});
        EXPECT_EQ(m_pCard->showLargeCardDlg(), S_OK);
        auto& row = BlackCardSeam::items(*m_pCard);
        EXPECT_EQ(row.size(), 1U);
        m_pItem = dynamic_cast<CSliderItemDlg*>(row.at(0));
        m_log.clear();
        return *m_pItem;
    }
    [[nodiscard]] int position() const { return SliderItemSeam::slider(*m_pItem).GetPos(); }
    [[nodiscard]] HWND slider() const { return SliderItemSeam::slider(*m_pItem).m_hWnd; }
    [[nodiscard]] std::vector<LONG> applied() const {
        std::vector<LONG> levels;
        for (const instr::CallEntry& call : m_plugin.calls(instr::FocusItemId)) {
            levels.push_back(call.arguments[0]);
        }
        return levels;
    }
    [[nodiscard]] std::wstring status() const { return LargeCardSeam::text(*BlackCardSeam::largeCard(*m_pCard)); }
    [[nodiscard]] static std::wstring levelText(int level) {
        return loadResString(IDS_BRIGHTNESS_LEVEL) + L" " + std::to_wstring(level);
    }

    CBlackCard* m_pCard = nullptr;
    CSliderItemDlg* m_pItem = nullptr;
};

TEST_F(SliderItem, AcceptsLevelsFromZeroToTheCount) {
    struct Row {
        LONG count;
        LONG current;
        HRESULT status;
    };
    for (const Row& row : {Row{10, 0, S_OK}, Row{10, 10, S_OK}, Row{0, 0, S_OK}, Row{10, 11, E_FAIL},
                           Row{10, -1, E_FAIL}, Row{-5, 0, E_FAIL}, Row{-5, -5, E_FAIL}}) {
        m_log.clear();
        CSliderItemDlg item(kDecrease, kIncrease, row.count, row.current);
        EXPECT_EQ(item.initialize(), row.status) << row.current << " of " << row.count;
        const std::vector<std::wstring> expected{L"[ERR] (CSliderItemDlg::initialize): Error Code: 0x80004005"};
        EXPECT_EQ(errors(), row.status == S_OK ? std::vector<std::wstring>{} : expected);
    }
}

TEST_F(SliderItem, MoreLevelsThanATrackbarCanTellNeverReachIt) {
    for (const LONG count : {0x8000, 0x7FFFFFFF}) {
        m_log.clear();
        CSliderItemDlg item(kDecrease, kIncrease, count, 5);
        item.setPlacement(m_room.placement());
        EXPECT_EQ(item.initialize(), S_OK);
        EXPECT_EQ(errors(), std::vector<std::wstring>{
                                L"[ERR] (CSliderItemDlg::initialize): ASSERT( m_lLevelCount <= kMostLevels )"});
        ASSERT_TRUE(item.Create(nullptr));
        const HWND slider = SliderItemSeam::slider(item).m_hWnd;
        EXPECT_EQ(::SendMessageW(slider, TBM_GETRANGEMAX, 0, 0), 0x7FFF);
        EXPECT_EQ(::SendMessageW(slider, TBM_GETPOS, 0, 0), 5);
        item.DestroyWindow();
    }
}

TEST_F(SliderItem, LeavesTheFocusWhereItIsWhenItIsMade) {
    const HWND other = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 900, 500, 50, 50, nullptr, nullptr,
                                         nullptr, nullptr);
    ::SetActiveWindow(other);
    ::SetFocus(other);
    open(10, 5);
    EXPECT_EQ(::GetFocus(), other);
    EXPECT_EQ(::GetActiveWindow(), other);
    ::DestroyWindow(other);
}

TEST_F(SliderItem, SizesFollowRatioAndThumb) {
    struct Row {
        double ratio;
        DWORD thumbSetting;
        int width;
        int height;
        int thumb;
    };
    for (const Row& row : {Row{1.0, 20, 200, 24, 20}, Row{0.75, 20, 150, 18, 15}, Row{1.25, 20, 250, 30, 25},
                           Row{1.0, 31, 200, 37, 31}, Row{0.7, 20, 140, 16, 14}}) {
        m_room.setRatio(row.ratio);
        m_room.config().uSliderThumbSize = row.thumbSetting;
        CSliderItemDlg item(kDecrease, kIncrease, 10, 5);
        item.setPlacement(m_room.placement());
        ASSERT_TRUE(item.Create(nullptr));
        EXPECT_EQ(item.width(), row.width);
        EXPECT_EQ(item.height(), row.height);
        const HWND slider = SliderItemSeam::slider(item).m_hWnd;
        EXPECT_EQ(::SendMessageW(slider, TBM_GETTHUMBLENGTH, 0, 0), row.thumb);
        RECT place = windowRect(slider);
        ::MapWindowPoints(nullptr, item.m_hWnd, reinterpret_cast<POINT*>(&place), 2);
        EXPECT_EQ(place, rect(0, 0, row.width, row.height));
        EXPECT_EQ(item.destroyItem(), S_OK);
    }
}

TEST_F(SliderItem, DialogIsSeenThroughWhereItIsMagenta) {
    CSliderItemDlg& item = open(10, 5);
    EXPECT_EQ(exStyle(item.m_hWnd) & 0x00080080U, 0x00080080U);
    const Layer layer = layerOf(item.m_hWnd);
    EXPECT_EQ(layer.key, RGB(0xFF, 0, 0xFF));
    EXPECT_EQ(layer.flags, static_cast<DWORD>(LWA_COLORKEY));
}

TEST_F(SliderItem, TrackRunsFromOneToTheCount) {
    open(10, 5);
    EXPECT_EQ(::SendMessageW(slider(), TBM_GETRANGEMIN, 0, 0), 1);
    EXPECT_EQ(::SendMessageW(slider(), TBM_GETRANGEMAX, 0, 0), 10);
    EXPECT_EQ(position(), 5);
    const auto style = static_cast<DWORD>(::GetWindowLongPtrW(slider(), GWL_STYLE));
    constexpr DWORD kStyle = TBS_FIXEDLENGTH | TBS_BOTH | TBS_NOTICKS | WS_TABSTOP;
    EXPECT_EQ(style & kStyle, kStyle);
}

TEST_F(SliderItem, OnlyTheSliderShows) {
    const CSliderItemDlg& item = open(10, 5);
    EXPECT_TRUE(shown(slider()));
    EXPECT_FALSE(shown(::GetDlgItem(item.m_hWnd, 1001)));
}

TEST_F(SliderItem, LevelZeroShowsAsOne) {
    open(10, 0);
    EXPECT_EQ(position(), 1);
}

TEST_F(SliderItem, FirstCallChangesNothing) {
    CSliderItemDlg& item = open(10, 5);
    EXPECT_EQ(item.switchItem(kIncrease, true, true), S_OK);
    EXPECT_EQ(item.switchItem(kDecrease, true, true), S_OK);
    EXPECT_EQ(position(), 5);
    EXPECT_TRUE(applied().empty());
}

struct Step {
    LONG position;
    DWORD key;
    HRESULT status;
    LONG level;  // afterwards
};
class SliderSteps : public SliderItem, public testing::WithParamInterface<Step> {};

TEST_P(SliderSteps, MoveByOneWithinTheTrack) {
    const Step& step = GetParam();
    CSliderItemDlg& item = open(10, step.position);
    for (const bool selected : {true}) {
        EXPECT_EQ(item.switchItem(step.key, false, selected), step.status);
    }
    EXPECT_EQ(position(), step.level);
    const std::wstring line = step.key == kDecrease ? L"Decrease" : L"Increase";
    const std::wstring logLine =
        L"[INF] (CSliderItemDlg::switchItem): " + line + L" brightness level to " + std::to_wstring(step.level) + L".";
    if (step.status == S_OK) {
        EXPECT_EQ(applied(), std::vector<LONG>{step.level});
        EXPECT_TRUE(logged(logLine));
        EXPECT_EQ(status(), levelText(step.level));
    } else {
        EXPECT_TRUE(applied().empty());
        for (const std::wstring& entry : m_log.lines()) {
            EXPECT_EQ(entry.find(L"brightness level"), std::wstring::npos) << entry.c_str();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, SliderSteps,
                         testing::Values(Step{5, kIncrease, S_OK, 6}, Step{5, kDecrease, S_OK, 4},
                                         Step{2, kDecrease, S_OK, 1}, Step{1, kDecrease, S_FALSE, 1},
                                         Step{9, kIncrease, S_OK, 10}, Step{10, kIncrease, S_FALSE, 10},
                                         Step{5, kOther, S_FALSE, 5}, Step{5, 0, S_FALSE, 5}));

TEST_F(SliderItem, SelectionDoesNotMatter) {
    CSliderItemDlg& item = open(10, 5);
    EXPECT_EQ(item.switchItem(kIncrease, false, false), S_OK);
    EXPECT_EQ(position(), 6);
}

TEST_F(SliderItem, OneKeyForBothDecreasesAsLongAsItCan) {
    open(10, 2);
    CSliderItemDlg item(kOther, kOther, 10, 2);
    ASSERT_TRUE(item.Create(nullptr));
    BlackCardSeam::items(*m_pCard).push_back(&item);
    EXPECT_EQ(item.setBlackCardInfo(m_pCard), S_OK);
    EXPECT_EQ(item.switchItem(kOther, false, true), S_OK);
    EXPECT_EQ(SliderItemSeam::slider(item).GetPos(), 1);
    EXPECT_EQ(item.switchItem(kOther, false, true), S_OK);
    EXPECT_EQ(SliderItemSeam::slider(item).GetPos(), 2);
    BlackCardSeam::items(*m_pCard).pop_back();
    EXPECT_EQ(item.destroyItem(), S_OK);
}

TEST_F(SliderItem, StaysWhereItWasWhenTheCardFails) {
    CSliderItemDlg& item = open(10, 5);
    CBlackCard other(&m_room.strip(), m_room.placement());  // has no items, so the slider's query fails
    EXPECT_EQ(item.setBlackCardInfo(&other), S_OK);
    EXPECT_EQ(item.switchItem(kIncrease, false, true), E_FAIL);
    EXPECT_EQ(position(), 5);
    EXPECT_TRUE(logged(L"[INF] (CSliderItemDlg::switchItem): Increase brightness level to 6."));
    EXPECT_TRUE(logged(L"[ERR] (CSliderItemDlg::switchItem): Error Code: 0x80004005"));
    EXPECT_EQ(item.setBlackCardInfo(m_pCard), S_OK);
}

TEST_F(SliderItem, LevelThatThePlugInRefusesIsNotTaken) {
    CSliderItemDlg& item = open(10, 5);
    ASSERT_EQ(item.switchItem(kIncrease, false, true), S_OK);
    m_plugin->exports[instr::FocusItemId].result = 1;
    EXPECT_EQ(item.switchItem(kIncrease, false, true), E_FAIL);
    EXPECT_EQ(position(), 6);
    EXPECT_EQ(status(), levelText(6));
    EXPECT_EQ(errors(), (std::vector<std::wstring>{L"[ERR] (CBlackCard::executeFunx): Error Code: 0x80004005",
                                                   L"[ERR] (CSliderItemDlg::switchItem): Error Code: 0x80004005"}));
    EXPECT_EQ(applied(), (std::vector<LONG>{6, 7})) << "asked once for each press, and for nothing else";
    EXPECT_EQ(m_plugin.count(instr::GetCurrentItemId), 1);
}

TEST_F(SliderItem, DragThatThePlugInRefusesReturnsToItsLevel) {
    CSliderItemDlg& item = open(10, 5);
    const auto drag = [&](int level) {
        SliderItemSeam::slider(item).SetPos(level);
        ::SendMessageW(item.m_hWnd, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, level), reinterpret_cast<LPARAM>(slider()));
    };
    m_plugin->exports[instr::FocusItemId].result = 1;
    const std::wstring before = status();
    drag(8);
    EXPECT_EQ(position(), 5) << "the level that it opened with";
    EXPECT_EQ(status(), before);
    EXPECT_TRUE(logged(L"[ERR] (CSliderItemDlg::updateBrightness): Error Code: 0x80004005"));
    m_plugin->exports[instr::FocusItemId].result = 0;
    drag(7);
    m_plugin->exports[instr::FocusItemId].result = -1;
    drag(9);
    EXPECT_EQ(position(), 7) << "the level that was taken last";
    EXPECT_EQ(status(), levelText(7));
    EXPECT_EQ(item.switchItem(kDecrease, false, true), E_FAIL);
    EXPECT_EQ(position(), 7);
}

TEST_F(SliderItem, WithoutACardNothingHappens) {
    CSliderItemDlg item(kDecrease, kIncrease, 10, 5);
    ASSERT_TRUE(item.Create(nullptr));
    m_log.clear();
    EXPECT_EQ(item.switchItem(kIncrease, false, true), E_POINTER);
    EXPECT_EQ(item.switchItem(kIncrease, true, true), E_POINTER);
    ::SendMessageW(item.m_hWnd, WM_HSCROLL, TB_THUMBTRACK, 0);
    EXPECT_EQ(errors(),
              (std::vector<std::wstring>{L"[ERR] (CSliderItemDlg::switchItem): Error Code: 0x80004003",
                                         L"[ERR] (CSliderItemDlg::switchItem): Error Code: 0x80004003",
                                         L"[ERR] (CSliderItemDlg::updateBrightness): Error Code: 0x80004003"}));
    EXPECT_EQ(SliderItemSeam::slider(item).GetPos(), 5);
    EXPECT_EQ(item.destroyItem(), S_OK);
}

TEST_F(SliderItem, DraggedSliderAppliesEveryLevelAndTellsIt) {
    CSliderItemDlg& item = open(10, 5);
    showStrip();
    for (const int level : {6, 7, 9}) {
        SliderItemSeam::slider(item).SetPos(level);
        ::SendMessageW(item.m_hWnd, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, level), reinterpret_cast<LPARAM>(slider()));
        EXPECT_EQ(status(), levelText(level));
    }
    EXPECT_EQ(applied(), (std::vector<LONG>{6, 7, 9}));
    EXPECT_TRUE(stripShown()) << "the cards stay";
}

TEST_F(SliderItem, EndOfADragTellsNoLevelASecondTime) {
    CSliderItemDlg& item = open(10, 5);
    SliderItemSeam::slider(item).SetPos(7);
    for (const int code : {TB_THUMBTRACK, TB_THUMBPOSITION, TB_ENDTRACK}) {
        ::SendMessageW(item.m_hWnd, WM_HSCROLL, MAKEWPARAM(code, 7), reinterpret_cast<LPARAM>(slider()));
    }
    EXPECT_EQ(applied(), std::vector<LONG>{7});
}

TEST_F(SliderItem, TurnOfTheMouseWheelTellsItsLevel) {
    CSliderItemDlg& item = open(10, 5);
    SliderItemSeam::slider(item).SetPos(6);
    // The system's slider reports it as a thumb position without a preceding drag.
    ::SendMessageW(item.m_hWnd, WM_HSCROLL, MAKEWPARAM(TB_THUMBPOSITION, 6), reinterpret_cast<LPARAM>(slider()));
    EXPECT_EQ(applied(), std::vector<LONG>{6});
}

TEST_F(SliderItem, ArrowKeysOfTheControlMoveItToo) {
    open(10, 5);
    ::SendMessageW(slider(), WM_KEYDOWN, VK_RIGHT, 0);
    ::SendMessageW(slider(), WM_KEYUP, VK_RIGHT, 0);
    EXPECT_EQ(position(), 6);
    EXPECT_EQ(applied(), std::vector<LONG>{6});
}

TEST_F(SliderItem, DragThatTheCardCannotApplyIsLogged) {
    CSliderItemDlg& item = open(10, 5);
    CBlackCard other(&m_room.strip(), m_room.placement());
    EXPECT_EQ(item.setBlackCardInfo(&other), S_OK);
    ::SendMessageW(item.m_hWnd, WM_HSCROLL, TB_THUMBTRACK, 0);
    EXPECT_TRUE(logged(L"[ERR] (CSliderItemDlg::updateBrightness): Error Code: 0x80004005"));
    EXPECT_EQ(item.setBlackCardInfo(m_pCard), S_OK);
}

TEST_F(SliderItem, LevelWithoutAnEnlargedCardIsAppliedAndLogged) {
    CSliderItemDlg& item = open(10, 5);
    BlackCardSeam::largeCard(*m_pCard).reset();
    EXPECT_EQ(item.switchItem(kIncrease, false, true), E_POINTER);
    EXPECT_EQ(applied(), std::vector<LONG>{6});
    EXPECT_EQ(position(), 6);
    EXPECT_EQ(errors(), (std::vector<std::wstring>{L"[ERR] (CBlackCard::updateStatus): Error Code: 0x80004003",
                                                   L"[ERR] (CSliderItemDlg::switchItem): Error Code: 0x80004003"}));
}

TEST_F(SliderItem, LevelTextIsRepainted) {
    CSliderItemDlg& item = open(10, 5);
    const HWND large = BlackCardSeam::largeCard(*m_pCard)->m_hWnd;
    paintNow(large);
    ASSERT_FALSE(waitsForPaint(large));
    item.switchItem(kIncrease, false, true);
    RECT stale{};
    ASSERT_TRUE(::GetUpdateRect(large, &stale, FALSE));
    EXPECT_EQ(stale, LargeCardSeam::rects(*BlackCardSeam::largeCard(*m_pCard)).text);
}

TEST_F(SliderItem, StepsThroughTheCardAsTheKeysDo) {
    m_plugin->info = 10;
    m_plugin->currentItem = 5;
    CBlackCard& card = addCard(L"Brightness", {kDecrease, kIncrease});
    EXPECT_EQ(card.notifyHotkey(kIncrease, FALSE), S_OK);  // shows the current level
    EXPECT_TRUE(applied().empty());
    EXPECT_EQ(card.notifyHotkey(kIncrease, FALSE), S_OK);
    EXPECT_EQ(card.notifyHotkey(kIncrease, FALSE), S_OK);
    EXPECT_EQ(card.notifyHotkey(kDecrease, FALSE), S_OK);
    EXPECT_EQ(applied(), (std::vector<LONG>{6, 7, 6}));
    EXPECT_EQ(card.notifyHotkey(0, TRUE), S_OK);
    EXPECT_EQ(applied(), (std::vector<LONG>{6, 7, 6, -1})) << "letting go applies no level";
}

TEST_F(SliderItem, ShowsWithoutActivation) {
    CSliderItemDlg& item = open(10, 5);
    ::SetFocus(BlackCardSeam::largeCard(*m_pCard)->m_hWnd);
    const HWND active = ::GetActiveWindow();
    EXPECT_EQ(item.showItem(false), S_OK);
    EXPECT_FALSE(shown(item.m_hWnd));
    EXPECT_EQ(item.showItem(true), S_OK);
    EXPECT_TRUE(shown(item.m_hWnd));
    EXPECT_EQ(::GetActiveWindow(), active);
}

TEST_F(SliderItem, LostFocusOfDialogAndControlGoesToTheCard) {
    CSliderItemDlg& item = open(10, 5);
    m_room.setMouseOperating(true);
    for (const HWND window : {item.m_hWnd, slider()}) {
        showStrip();
        killFocus(window, m_room.stripWindow());
        EXPECT_TRUE(stripShown()) << "a window of the program's own";
        killFocus(window, support::foreignWindow());
        EXPECT_FALSE(stripShown());
    }
}

TEST_F(SliderItem, LostFocusWithoutACardIsLogged) {
    CSliderItemDlg item(kDecrease, kIncrease, 10, 5);
    ASSERT_TRUE(item.Create(nullptr));
    m_log.clear();
    killFocus(item.m_hWnd, nullptr);
    killFocus(SliderItemSeam::slider(item).m_hWnd, nullptr);
    const std::wstring line = L"[ERR] (CQrdItem::killFocus): Error Code: 0x80004003";
    EXPECT_EQ(errors(), (std::vector<std::wstring>{line, line}));
    EXPECT_TRUE(logged(L"[TRC] (CQrdSliderCtrl::OnKillFocus): ENTER CQrdSliderCtrl::OnKillFocus"));
    EXPECT_EQ(item.destroyItem(), S_OK);
}

TEST_F(SliderItem, DestroyedWithItsWindowItSaysSo) {
    auto item = std::make_unique<CSliderItemDlg>(kDecrease, kIncrease, 10, 5);
    ASSERT_TRUE(item->Create(nullptr));
    const HWND window = item->m_hWnd;
    m_log.clear();
    item.reset();
    EXPECT_EQ(errors(),
              std::vector<std::wstring>{L"[ERR] (CSliderItemDlg::~CSliderItemDlg): ASSERT( !::IsWindow(m_hWnd) )"});
    EXPECT_FALSE(::IsWindow(window));
}

TEST_F(SliderItem, DestroyingTwiceIsHarmless) {
    CSliderItemDlg item(kDecrease, kIncrease, 10, 5);
    EXPECT_EQ(item.destroyItem(), S_OK);
    ASSERT_TRUE(item.Create(nullptr));
    EXPECT_EQ(item.destroyItem(), S_OK);
    EXPECT_EQ(item.windowHandle(), nullptr);
    EXPECT_EQ(item.destroyItem(), S_OK);
}

TEST_F(SliderItem, KeepsTheBaseBehaviourForTextAndOverhang) {
    CSliderItemDlg& item = open(10, 5);
    EXPECT_EQ(item.setItemText(nullptr), S_OK);
    EXPECT_EQ(item.descOverhang(), 0);
}

TEST_F(SliderItem, CountOfZeroIsHarmless) {
    CSliderItemDlg& item = open(0, 0);
    paintNow(item.m_hWnd);
    EXPECT_EQ(item.switchItem(kIncrease, false, true), S_FALSE);
    EXPECT_EQ(item.switchItem(kDecrease, false, true), S_FALSE);
    EXPECT_TRUE(applied().empty());
}

}  // namespace
}  // namespace items
