// The services behind theApp: showing, hiding, refreshing, and the values that it supplies to the program.
#include "AppFixture.h"

namespace {

using namespace apptest;

class ServicesTest : public ShellTest {};

TEST_F(ServicesTest, ShowingTheStripHidesTheHoverStrip) {
    addThreeCards();
    config().bEnableHover = 1;
    ASSERT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(hoverShown());
    ASSERT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_FALSE(hoverShown());
    EXPECT_NE(::GetForegroundWindow(), stripWindow()) << "it is shown without being activated";
}

TEST_F(ServicesTest, HoverStripStaysAwayWhenDisabledOrSwitchedOff) {
    config().bEnableHover = 0;
    ASSERT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_FALSE(hoverShown());
    config().bEnableHover = 1;
    ASSERT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_TRUE(hoverShown());
    config().bDisable = 1;
    ASSERT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_FALSE(hoverShown());
}

TEST_F(ServicesTest, HidingTheStripClosesEveryLargeCard) {
    addThreeCards();
    ASSERT_EQ(key(kMuteKey, kMake), S_OK);
    ASSERT_TRUE(largeShown(0));
    ASSERT_EQ(theApp.showMainDlg(FALSE, FALSE), S_OK);
    EXPECT_FALSE(largeShown(0));
    EXPECT_FALSE(card(0).hasValidSelection());
}

TEST_F(ServicesTest, ShowingNeedsBothStrips) {
    constexpr wchar_t line[] = L"[ERR] (CZelMainApp::showMainDlg): Error Code: 0x80004005";
    ::DestroyWindow(hoverWindow());
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), E_FAIL);
    EXPECT_EQ(timesLogged(line), 1U);
    EXPECT_FALSE(stripShown());
    ZelMainSeam::hoverStrip().reset();
    EXPECT_EQ(theApp.showMainDlg(TRUE, FALSE), E_FAIL);
    ::DestroyWindow(stripWindow());
    EXPECT_EQ(theApp.showMainDlg(FALSE, FALSE), E_FAIL);
    ZelMainSeam::strip().reset();
    EXPECT_EQ(theApp.showMainDlg(FALSE, TRUE), E_FAIL);
    EXPECT_EQ(timesLogged(line), 4U);
}

TEST_F(ServicesTest, AlternativeShowIsForShowAtLaunchOnly) {
    showStrip();
    EXPECT_EQ(theApp.showMainDlgAlt(), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::showMainDlgAlt): ASSERT( CZelConfig::getQrdConfig().bShowQrdAtLaunch )"));
    EXPECT_TRUE(stripShown());
}

TEST_F(ServicesTest, AlternativeShowTogglesTheStripAndTimesIt) {
    config().bShowQrdAtLaunch = 1;
    EXPECT_EQ(theApp.showMainDlgAlt(), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(system_double::timer(stripWindow(), 10), 5000U);
    EXPECT_EQ(theApp.showMainDlgAlt(), S_OK);
    EXPECT_FALSE(stripShown());
}

TEST_F(ServicesTest, AlternativeShowWithoutAStripFails) {
    config().bShowQrdAtLaunch = 1;
    ::DestroyWindow(stripWindow());
    EXPECT_EQ(theApp.showMainDlgAlt(), E_FAIL);
    ZelMainSeam::strip().reset();
    EXPECT_EQ(theApp.showMainDlgAlt(), E_POINTER);
    EXPECT_EQ(errors(), (std::vector<std::wstring>{L"[ERR] (CZelMainApp::showMainDlgAlt): Error Code: 0x80004005",
                                                   L"[ERR] (CZelMainApp::showMainDlgAlt): Error Code: 0x80004003"}));
}

TEST_F(ServicesTest, RefreshPutsTheCardsAwayAndPlacesThemAgain) {
    addThreeCards();
    config().bEnableHover = 1;
    showStrip();
    system_double::state().workArea = RECT{100, 50, 900, 650};
    config().uPosition = 1;
    EXPECT_EQ(theApp.refreshCards(FALSE), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(windowRect(stripWindow()), geometry::cardStrip({100, 50, 900, 650}, 3, 1.0, true).place);
    EXPECT_EQ(windowRect(hoverWindow()), geometry::hoverStrip({100, 50, 900, 650}, 3, 1.0, true).place);
    EXPECT_EQ(HideDlgSeam::segments(hover()).size(), 3U);
}

TEST_F(ServicesTest, RefreshLeavesASwitchedOffHoverStripAlone) {
    addThreeCards();
    config().bEnableHover = 0;
    EXPECT_EQ(theApp.refreshCards(FALSE), S_OK);
    EXPECT_TRUE(HideDlgSeam::segments(hover()).empty());
}

TEST_F(ServicesTest, RefreshWithRebuildingReadsTheListAgain) {
    addThreeCards();
    listFunction(L"Lock", {kLockKey});
    EXPECT_EQ(theApp.refreshCards(TRUE), S_OK);
    EXPECT_EQ(strip().cardCount(), 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 3);
}

TEST_F(ServicesTest, RefreshReturnsTheFirstFailure) {
    addThreeCards();
    config().bEnableHover = 1;
    EXPECT_LT(theApp.refreshCards(TRUE), 0) << "there is no function list";
    EXPECT_TRUE(HideDlgSeam::segments(hover()).empty()) << "what comes after the failure is not done";
    m_log.clear();
    system_double::state().workAreaFails = true;
    EXPECT_EQ(theApp.refreshCards(FALSE), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::refreshCards): Error Code: 0x80004005"));
}

TEST_F(ServicesTest, RefreshNeedsBothStrips) {
    showStrip();
    ZelMainSeam::hoverStrip().reset();
    EXPECT_EQ(theApp.refreshCards(FALSE), E_FAIL);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainApp::refreshCards): Error Code: 0x80004005"});
}

TEST_F(ServicesTest, ImageRatioIsOneWithoutAStrip) {
    m_room.setRatio(0.5);
    EXPECT_EQ(theApp.getPngRatio(), 0.5);
    ZelMainSeam::strip().reset();
    m_log.clear();
    EXPECT_EQ(theApp.getPngRatio(), 1.0);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainApp::getPngRatio): ASSERT( m_pZelMainDlg )"});
}

TEST_F(ServicesTest, MissingImageLibraryIsAnAssertion) {
    EXPECT_NE(theApp.getPngDll(), nullptr);
    m_room.withoutPictures();
    EXPECT_EQ(theApp.getPngDll(), nullptr);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainApp::getPngDll): ASSERT( m_hPngDll )"});
}

TEST_F(ServicesTest, MouseFlagIsLoggedAtEveryAccess) {
    theApp.mouseOperating() = TRUE;
    EXPECT_TRUE(logged(L"[TRC] (CZelMainApp::mouseOperating): m_bMouseOperating = 0"));
    EXPECT_TRUE(theApp.mouseOperating());
    EXPECT_TRUE(logged(L"[TRC] (CZelMainApp::mouseOperating): m_bMouseOperating = 1"));
}

TEST_F(ServicesTest, PrintScreenHidesTheCards) {
    const MessageCounter utility(L"Dravik", L"Dravik Window",
                                 ::RegisterWindowMessageW(L"KESTOVA Fenwyn-WM_CANCEL_STICKY"));
    showStrip();
    EXPECT_EQ(ZelMainSeam::hideForPrintScreen(), 0);
    pump();
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(utility.count(), 0);
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::hideQrdWhenPrtsc): Screensaver is not running."));
}

TEST_F(ServicesTest, PrintScreenDuringAScreenSaverLeavesTheCards) {
    showStrip();
    system_double::state().screenSaver = true;
    EXPECT_EQ(ZelMainSeam::hideForPrintScreen(), 0);
    EXPECT_TRUE(stripShown());
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::hideQrdWhenPrtsc): Screensaver is  running."));
}

TEST_F(ServicesTest, PrintScreenOnAThreadOfTheHookHidesTheCards) {
    showStrip();
    const common::UniqueHandle hook(::CreateThread(
        nullptr, 0, [](void*) -> DWORD { return static_cast<DWORD>(ZelMainSeam::hideForPrintScreen()); }, nullptr, 0,
        nullptr));
    EXPECT_TRUE(pumpUntil([&] { return ::WaitForSingleObject(hook.get(), 0) == WAIT_OBJECT_0; }));
    EXPECT_FALSE(stripShown());
}

}  // namespace
