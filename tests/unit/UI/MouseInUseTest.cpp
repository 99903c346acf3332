// The mouse while a plug-in runs a message loop: input to cards, items and the slider is ignored then, and no plug-in
// is entered a second time.
#include "Data/RegistryPaths.h"
#include "UI/InUseFixture.h"

namespace {

using namespace apptest;

class MouseInUseTest : public InUseTest {
 protected:
    static void click(HWND window, int x = 36, int y = 36) {
        ::SendMessageW(window, WM_LBUTTONDOWN, 0, MAKELPARAM(x, y));
    }
    static void postClick(HWND window, int x = 36, int y = 36) {
        ::PostMessageW(window, WM_LBUTTONDOWN, 0, MAKELPARAM(x, y));
    }
    // A card opened by the mouse; its first item.
    static HWND open(std::size_t index) {
        EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
        click(stripWindow(), static_cast<int>(index) * 96 + 10, 10);
        return BlackCardSeam::items(card(index)).front()->windowHandle();
    }
    static HWND sliderControl() { return SliderItemSeam::slider(slider()).m_hWnd; }
    static int level() { return SliderItemSeam::slider(slider()).GetPos(); }
    void brightnessCard() {
        ASSERT_TRUE(start());
        m_plugin->info = 10;
        m_plugin->currentItem = 5;
        send(kModifier, kMake);
        send(kBrighterKey, kMake);
        ASSERT_EQ(level(), 5);
        m_plugin->exports[instr::FocusItemId].pumps = TRUE;
    }
};

TEST_F(MouseInUseTest, ClickOnARoundItemWhileOneIsAppliedIsNothing) {
    ASSERT_TRUE(start());
    const HWND item = open(0);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    postClick(item);
    click(item);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    forgetPumping();
    pump();
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1) << "not later either";
}

TEST_F(MouseInUseTest, ClickOnAnOutputItemWhileOneIsAppliedIsNothing) {
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", L"C:\\");
    listFunction(L"Output_2", {kSleepKey});
    instr::setEntry(m_plugin->entries[0], 1, 0, L"One");
    instr::setEntry(m_plugin->entries[1], 2, 0, L"Two");
    m_plugin->itemCount = 2;
    ASSERT_TRUE(start());
    const HWND item = open(3);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    postClick(item);
    click(item);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
}

TEST_F(MouseInUseTest, SliderIsHeldWhileThePluginTakesALevel) {
    brightnessCard();
    ::PostMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    ::PostMessageW(sliderControl(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    ::PostMessageW(sliderControl(), WM_LBUTTONDOWN, 0, MAKELPARAM(190, 10));
    ::PostMessageW(slider().windowHandle(), WM_HSCROLL, TB_PAGEDOWN, reinterpret_cast<LPARAM>(sliderControl()));
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    EXPECT_EQ(level(), 6) << "what the plug-in was told";
    forgetPumping();
    pump();
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(level(), 7) << "it can be moved again";
}

TEST_F(MouseInUseTest, DragThatEndsWhileThePluginTakesALevelIsOver) {
    brightnessCard();
    const auto control = reinterpret_cast<LPARAM>(sliderControl());
    ::PostMessageW(slider().windowHandle(), WM_HSCROLL, TB_ENDTRACK, control);
    ::SendMessageW(slider().windowHandle(), WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, 5), control);
    ASSERT_EQ(m_plugin.count(instr::FocusItemId), 1);
    forgetPumping();
    // A thumb position that ends no drag comes from the wheel.
    ::SendMessageW(slider().windowHandle(), WM_HSCROLL, MAKEWPARAM(TB_THUMBPOSITION, 6), control);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 2);
}

TEST_F(MouseInUseTest, ClickOnTheStripWhileAPluginIsAskedOpensNoCard) {
    brightnessCard();
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    postClick(stripWindow(), 10, 10);
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    EXPECT_TRUE(shown(stripWindow()));
    EXPECT_EQ(BlackCardSeam::largeCard(card(0)), nullptr);
    forgetPumping();
    pump();
    EXPECT_EQ(BlackCardSeam::largeCard(card(0)), nullptr);
}

TEST_F(MouseInUseTest, HoverStripCallsNoCardsWhileAPluginIsAtWork) {
    setConfig(L"MouseEnterIdle", 100);
    support::RegistryRoom::setDword(HKEY_CURRENT_USER, regpath::kConfigKey, L"MouseEnterIdle", 100);
    brightnessCard();
    ::ShowWindow(hoverWindow(), SW_SHOWNOACTIVATE);
    ::PostMessageW(hoverWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(5, 1));
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    EXPECT_EQ(system_double::timer(hoverWindow(), 200), 0U);
    forgetPumping();
    ::SendMessageW(hoverWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(5, 1));
    ASSERT_EQ(system_double::timer(hoverWindow(), 200), 100U);
    // The idle time ends during the plug-in call.
    m_plugin->exports[instr::FocusItemId].pumps = TRUE;
    const RECT place = windowRect(hoverWindow());
    system_double::state().cursor = POINT{place.left + 5, place.top + 1};
    ::PostMessageW(hoverWindow(), WM_TIMER, 200, 0);
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 2);
    EXPECT_FALSE(ZelMainSeam::mouseOperating());
    EXPECT_EQ(system_double::timer(hoverWindow(), 200), 100U) << "it comes again";
}

TEST_F(MouseInUseTest, StripIsPaintedWithoutAskingAPluginThatIsAtWork) {
    listFunction(L"CursorOverlay", {kSleepKey});
    brightnessCard();
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    ::UpdateWindow(stripWindow());
    const LONG before = m_plugin.count(instr::GetCurrentItemId);
    LONG inside = -1;
    ::InvalidateRect(stripWindow(), nullptr, TRUE);
    const Meanwhile painted([&] {
        ::UpdateWindow(stripWindow());
        inside = m_plugin.count(instr::GetCurrentItemId);
    });
    m_log.clear();
    ::SendMessageW(sliderControl(), WM_KEYDOWN, VK_RIGHT, 0);
    ASSERT_TRUE(painted.ran());
    EXPECT_LT(at(L"ENTER CZelMainDlg::showBlackCards"), last());
    EXPECT_EQ(inside, before);
    forgetPumping();
    pump();
    EXPECT_GT(m_plugin.count(instr::GetCurrentItemId), before) << "it is asked when it is free again";
}

}  // namespace
