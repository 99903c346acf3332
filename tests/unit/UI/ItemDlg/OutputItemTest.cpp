#include <array>

#include "UI/ItemDlg/ItemsFixture.h"

namespace items {
namespace {

constexpr UINT kSmallScreenId = 233;
constexpr UINT kLargeScreenId = 232;
constexpr LONG kModeClone = FENWYN_MODE_CLONE;
constexpr LONG kModeSave = FENWYN_MODE_SAVE;
constexpr UINT kMsgClose = WM_USER + 101;

FenwynDisplayRecord record(const wchar_t* connector, ULONG index = 0, ULONG width = 1920, ULONG height = 1080) {
    FenwynDisplayRecord result{};
    std::wstring(connector).copy(result.szConnector, FENWYN_CONNECTOR_CHARS - 1);
    result.uDisplayIndex = index;
    result.uWidth = width;
    result.uHeight = height;
    return result;
}

// A window like the display-configuration program's, and the messages that it got.
class SetupWindow {
 public:
    explicit SetupWindow(const wchar_t* windowClass) : m_class(windowClass) {
        WNDCLASSEXW description{};
        description.cbSize = sizeof(description);
        description.lpfnWndProc = &procedure;
        description.hInstance = ::GetModuleHandleW(nullptr);
        description.lpszClassName = windowClass;
        ::RegisterClassExW(&description);
        m_hWnd = ::CreateWindowExW(0, windowClass, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        ::SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~SetupWindow() {
        ::DestroyWindow(m_hWnd);
        ::UnregisterClassW(m_class, ::GetModuleHandleW(nullptr));
    }
    SetupWindow(const SetupWindow&) = delete;
    SetupWindow& operator=(const SetupWindow&) = delete;

    // Posted since the last call.
    int closes() {
        support::pump();
        return std::exchange(m_nCloses, 0);
    }

 private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<SetupWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == kMsgClose && self != nullptr) {
            EXPECT_EQ(wParam, 0U);
            EXPECT_EQ(lParam, 0);
            EXPECT_NE(::InSendMessage(), TRUE) << "posted, not sent";
            ++self->m_nCloses;
            return 0;
        }
        return ::DefWindowProcW(window, message, wParam, lParam);
    }

    const wchar_t* m_class;
    HWND m_hWnd;
    int m_nCloses = 0;
};

class OutputItem : public ItemTest {
 protected:
    ~OutputItem() override {
        if (m_pItem != nullptr) {
            m_pItem->destroyItem();
        }
    }
    CFxOutputItemDlg& make(LONG mode, DWORD needsSetup, const std::vector<FenwynDisplayRecord>& records = {}) {
        m_pItem = std::make_unique<CFxOutputItemDlg>(mode, needsSetup, 0U, kSmallScreenId, kLargeScreenId, L"Duplicate",
                                                     static_cast<DWORD>(records.size()), records.data());
        m_pItem->setPlacement(m_room.placement());
        EXPECT_EQ(m_pItem->initialize(), S_OK);
        EXPECT_TRUE(m_pItem->Create(nullptr));
        place(item(), 300, 300, 72, 72);
        return *m_pItem;
    }
    [[nodiscard]] HWND item() const { return m_pItem->windowHandle(); }
    [[nodiscard]] HWND preview() const {
        COutputPreviewWnd* window = FxOutputItemSeam::preview(*m_pItem);
        return window == nullptr ? nullptr : window->m_hWnd;
    }
    void show() {
        m_pItem->showItem(true);
        paintNow(item());
    }
    void select(bool selected) {
        m_pItem->switchItem(0x3B, false, selected);
        paintNow(item());
    }

    std::unique_ptr<CFxOutputItemDlg> m_pItem;
};

TEST_F(OutputItem, WithoutRecordsThereIsNoPreview) {
    make(kModeClone, 0);
    EXPECT_EQ(preview(), nullptr);
    show();
    select(true);
    EXPECT_TRUE(shown(CircleItemSeam::largeWnd(*m_pItem)));
    m_log.clear();
    EXPECT_TRUE(FAILED(FxOutputItemSeam::showPreview(*m_pItem)));
    EXPECT_EQ(errors(),
              std::vector<std::wstring>{L"[ERR] (CFxOutputItemDlg::showPreviewWnd): ASSERT( m_pPreviewWnd )"});
}

TEST_F(OutputItem, SelectedOneShowsItsPreview) {
    make(kModeClone, 0, {record(L"LCD"), record(L"HDMI 1", 1)});
    ASSERT_TRUE(::IsWindow(preview()));
    show();
    EXPECT_FALSE(shown(preview()));
    select(true);
    EXPECT_TRUE(shown(preview()));
    EXPECT_EQ(windowRect(preview()), rect(336 - 60, 382, 336 + 60, 462));
    EXPECT_NE(exStyle(preview()) & WS_EX_TOPMOST, 0U);
    select(false);
    EXPECT_FALSE(shown(preview()));
}

TEST_F(OutputItem, CaptionLiesAboveThePreview) {
    make(kModeClone, 0, {record(L"LCD")});
    show();
    select(true);
    HWND below = CircleItemSeam::box(*m_pItem).m_hWnd;
    ASSERT_TRUE(shown(below));
    while (below != nullptr && below != preview()) {
        below = ::GetWindow(below, GW_HWNDNEXT);
    }
    EXPECT_EQ(below, preview());
}

TEST_F(OutputItem, PreviewFollowsTheItem) {
    make(kModeClone, 0, {record(L"LCD")});
    show();
    select(true);
    place(item(), 500, 100, 72, 72);
    m_pItem->invalidate();
    paintNow(item());
    EXPECT_EQ(windowRect(preview()).left, 536 - 60);
    EXPECT_EQ(windowRect(preview()).top, 182);
}

TEST_F(OutputItem, PreviewTakesNoFocus) {
    make(kModeClone, 0, {record(L"LCD")});
    ::ShowWindow(m_room.stripWindow(), SW_SHOW);
    ::SetFocus(m_room.stripWindow());
    show();
    select(true);
    ASSERT_TRUE(shown(preview()));
    EXPECT_EQ(::GetFocus(), m_room.stripWindow());
    ::SetFocus(preview());
    EXPECT_EQ(::GetFocus(), m_room.stripWindow());
}

TEST_F(OutputItem, HiddenOneHidesItsPreview) {
    make(kModeClone, 0, {record(L"LCD")});
    show();
    select(true);
    m_pItem->showItem(false);
    EXPECT_FALSE(shown(preview()));
    EXPECT_FALSE(shown(item()));
    EXPECT_TRUE(::IsWindow(preview()));
}

TEST_F(OutputItem, DestroyedOneTakesItsPreviewAlong) {
    make(kModeClone, 0, {record(L"LCD")});
    show();
    select(true);
    const HWND window = preview();
    m_pItem->destroyItem();
    EXPECT_FALSE(::IsWindow(window));
    make(kModeClone, 0, {record(L"LCD")});
    const HWND another = preview();
    m_pItem.reset();
    EXPECT_FALSE(::IsWindow(another));
}

TEST_F(OutputItem, OverhangIsThatOfThePreviewAndFive) {
    CFxOutputItemDlg& item = make(kModeClone, 0);
    EXPECT_EQ(item.descOverhang(), 29);
    m_room.setRatio(0.75);
    EXPECT_EQ(item.descOverhang(), 38);
    m_room.setRatio(1.0);
    item.setScale(2.0);  // wider than the preview: wraps around
    EXPECT_EQ(item.descOverhang(), 0x7FFFFFF9);
}

struct CloseRule {
    LONG mode;
    DWORD needsSetup;
    int output;  // messages to the window that configures
    int save;    // and to the one that saves
};
void PrintTo(const CloseRule& rule, std::ostream* out) {
    *out << "mode " << rule.mode << ", setup " << rule.needsSetup;
}
class OutputItemClose : public OutputItem, public testing::WithParamInterface<CloseRule> {
 protected:
    void expect(int output, int save) {
        EXPECT_EQ(m_output.closes(), output);
        EXPECT_EQ(m_save.closes(), save);
    }
    SetupWindow m_output{L"_DCWNDCLS_OUTPUT_"};
    SetupWindow m_save{L"_DCWNDCLS_SAVE_"};
};

TEST_P(OutputItemClose, HidingClosesTheSetupWindowThatBelongsToTheEntry) {
    const CloseRule& rule = GetParam();
    make(rule.mode, rule.needsSetup);
    show();
    expect(0, 0);
    m_pItem->showItem(false);
    expect(rule.output, rule.save);
    select(true);
    m_pItem->showItem(true);
    expect(0, 0);
    m_pItem->showItem(false);
    expect(rule.output, rule.save);
}

TEST_P(OutputItemClose, DestroyingClosesItOnceAndForTheSelectedOneOnly) {
    const CloseRule& rule = GetParam();
    make(rule.mode, rule.needsSetup);
    show();
    m_pItem->destroyItem();
    expect(0, 0);
    make(rule.mode, rule.needsSetup);
    show();
    select(true);
    m_pItem->destroyItem();
    m_pItem.reset();
    expect(rule.output, rule.save);
}

INSTANTIATE_TEST_SUITE_P(All, OutputItemClose,
                         testing::Values(CloseRule{kModeClone, 0, 0, 0}, CloseRule{kModeClone, 8, 1, 0},
                                         CloseRule{kModeSave, 0, 0, 1}, CloseRule{kModeSave, 8, 1, 0},
                                         CloseRule{FENWYN_MODE_CONFIGURE, 0, 0, 0}, CloseRule{-1, 0, 0, 0}));

TEST_F(OutputItem, NoSetupWindowIsFine) {
    make(kModeSave, 8);
    show();
    select(true);
    m_pItem->showItem(false);
    m_pItem->destroyItem();
    EXPECT_TRUE(errors().empty());
}

TEST_F(OutputItem, ClickAppliesItAndEndsTheMouseOperation) {
    CBlackCard& card = addCard(L"Mute", {0x3B});
    ASSERT_EQ(card.showLargeCardDlg(), S_OK);
    make(kModeClone, 0);
    EXPECT_EQ(m_pItem->setBlackCardInfo(&card), S_OK);
    BlackCardSeam::items(card).push_back(m_pItem.get());
    showStrip();
    mouse(item(), WM_LBUTTONDOWN, 30, 30);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0) << "the keys are working";
    EXPECT_TRUE(stripShown());

    m_room.setMouseOperating(true);
    mouse(item(), WM_LBUTTONDOWN, 30, 30);
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId)[0].arguments[0], 2) << "its place in the row";
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(theApp.mouseOperating());
    BlackCardSeam::items(card).pop_back();
}

TEST_F(OutputItem, MouseMoveStillGrowsIt) {
    make(kModeClone, 0, {record(L"LCD")});
    show();
    m_room.setMouseOperating(true);
    mouse(item(), WM_MOUSEMOVE, 36, 36);
    paintNow(item());
    EXPECT_TRUE(shown(preview()));
    ::SendMessageW(item(), WM_MOUSELEAVE, 0, 0);
    paintNow(item());
    EXPECT_FALSE(shown(preview()));
}

}  // namespace
}  // namespace items
