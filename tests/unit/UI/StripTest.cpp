// The card strip: its cards, its place and what it paints.
#include "AppFixture.h"

namespace {

using namespace apptest;

class StripTest : public ShellTest {
 protected:
    static constexpr int kRowStep = 3;  // of the blue of each picture row

    // Cards whose pictures identify their visible rows by their blue; no text in the way.
    void addStripedCards() {
        addThreeCards();
        for (const auto& each : MainDlgSeam::cards(strip())) {
            auto picture = std::make_unique<Gdiplus::Bitmap>(96, 65, PixelFormat32bppARGB);
            for (UINT y = 0; y < 65; ++y) {
                for (UINT x = 0; x < 96; ++x) {
                    picture->SetPixel(static_cast<INT>(x), static_cast<INT>(y),
                                      Gdiplus::Color(255, 0, 0, static_cast<BYTE>(y * kRowStep)));
                }
            }
            BlackCardSeam::image(*each) = LateImage(std::move(picture));
        }
        system_double::state().keepFrames = true;
    }
    void paint() {
        ::InvalidateRect(stripWindow(), nullptr, TRUE);
        ::UpdateWindow(stripWindow());
    }
    // The alpha of a card's picture where there is no text.
    [[nodiscard]] BYTE alphaOf(int index) const { return static_cast<BYTE>(pixelOf(index, 40) >> 24U); }
    [[nodiscard]] DWORD pixelOf(int index, int y) const {
        return system_double::state().frames[stripWindow()].at(index * 96 + 1, y);
    }
    [[nodiscard]] BYTE opacityByte(BYTE value) const { return static_cast<BYTE>(value * 220 / 255); }
};

TEST_F(StripTest, DialogOnlyTakesTheMouse) {
    const auto exStyle = static_cast<DWORD>(::GetWindowLongPtrW(stripWindow(), GWL_EXSTYLE));
    EXPECT_NE(exStyle & WS_EX_LAYERED, 0U);
    EXPECT_NE(exStyle & WS_EX_TOOLWINDOW, 0U);
    COLORREF key = 0;
    BYTE alpha = 0;
    DWORD flags = 0;
    ASSERT_TRUE(::GetLayeredWindowAttributes(stripWindow(), &key, &alpha, &flags));
    EXPECT_EQ(key, RGB(0xFF, 0, 0xFF));
    EXPECT_EQ(alpha, 1);
    EXPECT_EQ(flags, static_cast<DWORD>(LWA_COLORKEY | LWA_ALPHA));
}

TEST_F(StripTest, CardsComeInTheOrderOfTheList) {
    listFunction(L"Lock", {kLockKey});
    listFunction(L"Mute", {kMuteKey});
    EXPECT_EQ(strip().initialize(), S_OK);
    ASSERT_EQ(strip().cardCount(), 2);
    EXPECT_TRUE(card(0).isHotkeyDesired(kLockKey));
    EXPECT_TRUE(card(1).isHotkeyDesired(kMuteKey));
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::processHotkeyInfo): pHotkeyInfo->strFuncName.c_str() = Lock"));
}

TEST_F(StripTest, CardThatCannotWorkIsDroppedAndTheOthersCome) {
    listFunction(L"NoSuchFunction", {1});
    listFunction(L"Mute", {kMuteKey});
    EXPECT_EQ(strip().initialize(), S_OK);
    EXPECT_EQ(strip().cardCount(), 1);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainDlg::initHotKeyDll): Error Code: 0x80004005"));
}

TEST_F(StripTest, RecordsWithoutALibraryAreRefused) {
    EXPECT_EQ(strip().processHotkeyInfo(nullptr), E_POINTER);
    HotkeyInfo info{L"Mute", {kMuteKey}, L"", L""};
    EXPECT_EQ(strip().processHotkeyInfo(&info), E_FAIL);
    info.strFuncDll.assign(1, L'\0');  // a stored terminator without a text
    EXPECT_EQ(strip().processHotkeyInfo(&info), E_FAIL);
    EXPECT_EQ(strip().cardCount(), 0);
}

TEST_F(StripTest, FunctionWithEveryKeyCustomisedHasNoCard) {
    config().bProgrammable = 1;
    customise(0x41, L"C:\\no\\such.exe");
    customise(0x42, L"C:\\no\\such.exe");
    listFunction(L"Mute", {0x41, 0x42});
    listFunction(L"Lock", {0x41, 0x43});
    EXPECT_EQ(strip().initialize(), S_OK);
    ASSERT_EQ(strip().cardCount(), 1);
    EXPECT_TRUE(card(0).isHotkeyDesired(0x41)) << "a card keeps all its keys";
    config().bProgrammable = 0;
    EXPECT_EQ(strip().initialize(), S_OK);
    EXPECT_EQ(strip().cardCount(), 2);
}

TEST_F(StripTest, FunctionWithoutKeysHasNoCardWhileProgrammable) {
    config().bProgrammable = 1;
    customise(0x41, L"C:\\no\\such.exe");
    const HotkeyInfo info{L"Mute", {}, L"", m_plugin.path()};
    EXPECT_EQ(strip().processHotkeyInfo(&info), S_OK);
    EXPECT_EQ(strip().cardCount(), 0);
    config().bProgrammable = 0;
    EXPECT_EQ(strip().processHotkeyInfo(&info), S_OK);
    EXPECT_EQ(strip().cardCount(), 1);
}

TEST_F(StripTest, RebuildingDestroysTheOldCards) {
    listFunction(L"Mute", {kMuteKey});
    EXPECT_EQ(strip().initialize(), S_OK);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    const HWND large = BlackCardSeam::largeCard(card(0))->m_hWnd;
    EXPECT_EQ(strip().refreshCards(true), S_OK);
    EXPECT_FALSE(::IsWindow(large));
    EXPECT_EQ(strip().cardCount(), 1);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
}

TEST_F(StripTest, RebuildingFromAMissingListFails) {
    EXPECT_LT(strip().initialize(), 0);
    EXPECT_FALSE(errors().empty());
    EXPECT_LT(strip().refreshCards(true), 0);
    EXPECT_EQ(strip().refreshCards(false), S_OK);
}

TEST_F(StripTest, RatioStaysWithoutCards) {
    m_room.setRatio(0.7);
    EXPECT_EQ(MainDlgSeam::calcRatio(strip()), S_OK);
    EXPECT_EQ(strip().placement().ratio, 0.7);
    system_double::state().workAreaFails = true;
    EXPECT_EQ(MainDlgSeam::calcRatio(strip()), E_FAIL);
    EXPECT_EQ(MainDlgSeam::place(strip()), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainDlg::setBlackCardsPos): Error Code: 0x80004005"));
}

TEST_F(StripTest, RatioFollowsTheWorkAreaUpToTheScreensScale) {
    addThreeCards();
    system_double::state().workArea = RECT{0, 0, 4000, 600};
    EXPECT_EQ(MainDlgSeam::calcRatio(strip()), S_OK);
    const double wide = strip().placement().ratio;
    EXPECT_EQ(wide, geometry::imageRatio(4000, 3, 1.0).ratio) << "a screen of 96 DPI";
    system_double::state().workArea = RECT{0, 0, 300, 600};
    EXPECT_EQ(MainDlgSeam::calcRatio(strip()), S_OK);
    EXPECT_DOUBLE_EQ(strip().placement().ratio, 300 * 0.85 / 3 / 96);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::calcRatioForPng): Card width:85.000000, Ratio:0.885417"));
}

TEST_F(StripTest, LiesAtTheChosenEdgeOfTheWorkArea) {
    addThreeCards();
    const RECT area{101, 40, 1000, 700};
    system_double::state().workArea = area;
    for (const DWORD position : {0U, 1U, 2U}) {
        config().uPosition = position;
        m_log.clear();
        layOut();
        // (1000 - 288 - 101) / 2 = 305
        const int top = position == 0 ? 40 : 700 - 112;
        EXPECT_EQ(windowRect(stripWindow()), (RECT{406, top, 406 + 288, top + 112}));
        EXPECT_TRUE(logged(
            L"[TRC] (CZelMainDlg::setBlackCardsPos): The work area is: left 101,top 40, right 1000, bottom 700"));
        for (int i = 0; i < 3; ++i) {
            const RECT picture =
                position == 0 ? RECT{i * 96, 0, (i + 1) * 96, 59} : RECT{i * 96, 53, (i + 1) * 96, 112};
            EXPECT_EQ(card(static_cast<std::size_t>(i)).imageRect(), picture);
        }
    }
    EXPECT_NE(::GetWindowLongPtrW(stripWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
}

TEST_F(StripTest, PaintingWithoutCardsOrWithoutALayerFails) {
    EXPECT_EQ(MainDlgSeam::show(strip()), E_FAIL);
    addThreeCards();
    EXPECT_EQ(MainDlgSeam::show(strip()), S_OK);
    MainDlgSeam::dropLayered(strip());
    EXPECT_EQ(MainDlgSeam::show(strip()), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainDlg::showBlackCards): Error Code: 0x80004003"});
}

TEST_F(StripTest, HiddenStripIsNotPainted) {
    addStripedCards();
    EXPECT_EQ(MainDlgSeam::show(strip()), S_OK);
    EXPECT_TRUE(system_double::state().frames.empty());
    showStrip();
    paint();
    EXPECT_EQ(system_double::state().frames.count(stripWindow()), 1U);
    EXPECT_TRUE(shown(MainDlgSeam::layered(strip())->m_hWnd));
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::showBlackCards): The mouse is not operating."));
}

TEST_F(StripTest, IsDrawnWhileItIsHiddenAndThenOnlyShown) {
    addThreeCards();
    pump();
    CLayeredWnd* const picture = MainDlgSeam::layered(strip());
    ASSERT_TRUE(::IsWindow(picture->m_hWnd));
    EXPECT_FALSE(shown(picture->m_hWnd));
    EXPECT_TRUE(m_log.lines().empty()) << "drawing ahead is not logged";
    const int composed = picture->compositions();
    showStrip();
    paint();
    EXPECT_TRUE(shown(picture->m_hWnd));
    EXPECT_EQ(picture->compositions(), composed);
    ::PostMessageW(stripWindow(), kMsgLatch, 1, 0);
    pump();
    paint();
    EXPECT_GT(picture->compositions(), composed) << "the mark of the latched modifier is new";
}

TEST_F(StripTest, TopStripShowsTheLowerRowsOfThePictures) {
    addStripedCards();
    showStrip();
    paint();
    EXPECT_NEAR(pixelOf(0, 0) & 0xFFU, opacityByte(6 * kRowStep), 2);
    EXPECT_NEAR(pixelOf(2, 58) & 0xFFU, opacityByte(64 * kRowStep), 2);
    EXPECT_EQ(pixelOf(0, 59), 0U) << "nothing below the band";
}

TEST_F(StripTest, BottomStripShowsTheUpperRowsOfThePictures) {
    config().uPosition = 1;
    addStripedCards();
    showStrip();
    paint();
    EXPECT_EQ(pixelOf(0, 52), 0U) << "nothing above the band";
    EXPECT_NEAR(pixelOf(0, 53) & 0xFFU, opacityByte(0), 2);
    EXPECT_NEAR(pixelOf(2, 111) & 0xFFU, opacityByte(58 * kRowStep), 2);
}

TEST_F(StripTest, CardsAreEquallyOpaqueWithoutTheMouse) {
    addStripedCards();
    MainDlgSeam::hovered(strip()) = 1;
    showStrip();
    paint();
    EXPECT_EQ(alphaOf(0), 220);
    EXPECT_EQ(alphaOf(1), 220);
}

TEST_F(StripTest, MouseDimsAllCardsButTheHoveredOne) {
    addStripedCards();
    m_room.setMouseOperating(true);
    MainDlgSeam::hovered(strip()) = 1;
    showStrip();
    paint();
    EXPECT_EQ(alphaOf(0), 150);
    EXPECT_EQ(alphaOf(1), 220);
    EXPECT_EQ(alphaOf(2), 150);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::showBlackCards): The mouse is  operating."));
}

TEST_F(StripTest, MouseDimsNothingWithShowAtLaunch) {
    config().bShowQrdAtLaunch = 1;
    addStripedCards();
    m_room.setMouseOperating(true);
    showStrip();
    paint();
    EXPECT_EQ(alphaOf(0), 220);
}

TEST_F(StripTest, PictureIsReadAgainWhenTheFunctionsStateChanged) {
    addStripedCards();
    m_plugin->currentItem = 1;
    showStrip();
    paint();
    EXPECT_NE(pixelOf(0, 58) & 0xFFU, opacityByte(64 * kRowStep)) << "Mute has a picture of its own for each state";
    EXPECT_NEAR(pixelOf(2, 58) & 0xFFU, opacityByte(64 * kRowStep), 2);
}

TEST_F(StripTest, HidingTakesThePictureAndTheLargeCardsAway) {
    addThreeCards();
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    showStrip();
    paint();
    ASSERT_TRUE(largeShown(0));
    const HWND picture = MainDlgSeam::layered(strip())->m_hWnd;
    ASSERT_TRUE(shown(picture));
    ::ShowWindow(stripWindow(), SW_HIDE);
    EXPECT_FALSE(shown(picture));
    EXPECT_FALSE(largeShown(0));
}

TEST_F(StripTest, SystemCommandsAreSwallowed) {
    addThreeCards();
    showStrip();
    const RECT before = windowRect(stripWindow());
    for (const int command : {SC_CLOSE, SC_MINIMIZE, SC_MAXIMIZE, SC_MOVE}) {
        EXPECT_EQ(::SendMessageW(stripWindow(), WM_SYSCOMMAND, static_cast<WPARAM>(command), 0), 0);
    }
    pump();
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(windowRect(stripWindow()), before);
}

TEST_F(StripTest, DestructionTakesTheLayerAlong) {
    addThreeCards();
    showStrip();
    paint();
    const HWND picture = MainDlgSeam::layered(strip())->m_hWnd;
    strip().DestroyWindow();
    EXPECT_EQ(MainDlgSeam::layered(strip()), nullptr);
    EXPECT_FALSE(::IsWindow(picture));
}

TEST_F(StripTest, LosingTheFocusHidesTheStripOnlyWhenAsked) {
    showStrip();
    ::SendMessageW(stripWindow(), WM_KILLFOCUS, 0, 0);
    EXPECT_TRUE(stripShown());
    config().bHideMainUIWhenLostFocus = 1;
    ::SendMessageW(stripWindow(), WM_KILLFOCUS, 0, 0);
    EXPECT_FALSE(stripShown());
    ::SendMessageW(stripWindow(), WM_SETFOCUS, 0, 0);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::OnSetFocus): ENTER CZelMainDlg::OnSetFocus"));
}

TEST_F(StripTest, FocusThatStaysInTheProgramIsNotLost) {
    config().bHideMainUIWhenLostFocus = 1;
    showStrip();
    ::SendMessageW(stripWindow(), WM_KILLFOCUS, reinterpret_cast<WPARAM>(hoverWindow()), 0);
    EXPECT_TRUE(stripShown());
    ::SendMessageW(stripWindow(), WM_KILLFOCUS, reinterpret_cast<WPARAM>(support::foreignWindow()), 0);
    EXPECT_FALSE(stripShown());
}

// As after a second start: the strip is shown and has the focus, and hides when it loses it.
class StripWithFocus : public StripTest {
 protected:
    StripWithFocus() {
        addThreeCards();
        config().bHideMainUIWhenLostFocus = 1;
        config().bEnableHover = 1;
        showStrip();
        ::SetForegroundWindow(stripWindow());
        pump();
        EXPECT_EQ(::GetFocus(), stripWindow());
        m_log.clear();
    }
    void expectOnlyCard(std::size_t index) const {
        EXPECT_TRUE(largeShown(index));
        EXPECT_FALSE(stripShown());
        EXPECT_FALSE(hoverShown()) << "not beside the enlarged card";
        EXPECT_TRUE(entered({L"CZelMainApp::_cancelFnSticky"}).empty()) << "not in the middle of a sequence";
    }
};

TEST_F(StripWithFocus, HandsItOnToTheCardOfTheFirstKey) {
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
    pump();
    expectOnlyCard(1);
    EXPECT_TRUE(card(1).hasValidSelection());
}

TEST_F(StripWithFocus, HandsItOnToTheCardOfTheFirstClick) {
    ::SendMessageW(stripWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(100, 10));
    pump();
    expectOnlyCard(1);
}

// A window manager may notice late that the strip is gone, and pass the focus on once more.
class LateWindowManager : public StripWithFocus {
 protected:
    LateWindowManager() {
        ::SendMessageW(stripWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(100, 10));
        pump();
    }
    [[nodiscard]] HWND enlarged() { return BlackCardSeam::largeCard(card(1))->m_hWnd; }
    void takeFocusAway() {
        ::SendMessageW(enlarged(), WM_KILLFOCUS, reinterpret_cast<WPARAM>(support::foreignWindow()), 0);
        ::SetFocus(nullptr);
    }
};

TEST_F(LateWindowManager, TheCardTakesTheFocusBack) {
    ::SetForegroundWindow(hoverWindow());
    takeFocusAway();
    pump();
    expectOnlyCard(1);
    EXPECT_EQ(::GetForegroundWindow(), enlarged());
}

TEST_F(LateWindowManager, TheCardYieldsToASecondLoss) {
    takeFocusAway();
    pump();
    takeFocusAway();
    EXPECT_FALSE(largeShown(1));
}

TEST_F(LateWindowManager, TheCardYieldsOnceTheFocusHasSettled) {
    EXPECT_EQ(system_double::timer(enlarged(), kTimerFocusSettled), kFocusSettlesMs);
    ::SendMessageW(enlarged(), WM_TIMER, kTimerFocusSettled, 0);
    EXPECT_EQ(system_double::timer(enlarged(), kTimerFocusSettled), 0U);
    takeFocusAway();
    EXPECT_FALSE(largeShown(1));
}

TEST_F(LateWindowManager, ACardThatWasHiddenMeanwhileStaysHidden) {
    takeFocusAway();
    ASSERT_EQ(theApp.showMainDlg(FALSE, TRUE), S_OK);
    pump();
    EXPECT_FALSE(largeShown(1));
    EXPECT_NE(::GetForegroundWindow(), enlarged());
}

TEST_F(StripTest, TheCardOfAClickOnAStripWithoutTheFocusYieldsAtOnce) {
    addThreeCards();
    showStrip();
    ::SetForegroundWindow(hoverWindow());
    ::SendMessageW(stripWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(100, 10));
    EXPECT_EQ(system_double::timer(BlackCardSeam::largeCard(card(1))->m_hWnd, kTimerFocusSettled), 0U);
    ::SendMessageW(BlackCardSeam::largeCard(card(1))->m_hWnd, WM_KILLFOCUS,
                   reinterpret_cast<WPARAM>(support::foreignWindow()), 0);
    EXPECT_FALSE(largeShown(1));
}

// A window class that replaces the program's own and counts the messages that the windows leave to the system.
class SystemCommands {
 public:
    explicit SystemCommands(const wchar_t* name) : m_name(name) {
        ::UnregisterClassW(name, ::GetModuleHandleW(nullptr));
        WNDCLASSW windowClass{};
        ::GetClassInfoW(nullptr, L"#32770", &windowClass);
        s_default = windowClass.lpfnWndProc;
        s_seen.clear();
        windowClass.lpfnWndProc = &SystemCommands::procedure;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = name;
        EXPECT_NE(::RegisterClassW(&windowClass), 0);
    }
    ~SystemCommands() { ::UnregisterClassW(m_name, ::GetModuleHandleW(nullptr)); }
    SystemCommands(const SystemCommands&) = delete;
    SystemCommands& operator=(const SystemCommands&) = delete;

    static void expectOnlyThoseForTheSystem(HWND window) {
        for (const int command : {SC_CLOSE, SC_MOVE, SC_SIZE, SC_MINIMIZE, SC_MAXIMIZE, SC_RESTORE, SC_KEYMENU,
                                  SC_SCREENSAVE, SC_MONITORPOWER, SC_SCREENSAVE | 5}) {
            ::SendMessageW(window, WM_SYSCOMMAND, static_cast<WPARAM>(command), 2);
        }
        EXPECT_EQ(s_seen, (std::vector<WPARAM>{SC_SCREENSAVE, SC_MONITORPOWER, SC_SCREENSAVE | 5}));
        EXPECT_TRUE(::IsWindow(window));
    }

 private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_SYSCOMMAND) {
            s_seen.push_back(wParam);
            return 0;
        }
        return ::CallWindowProcW(s_default, window, message, wParam, lParam);
    }

    static inline WNDPROC s_default = nullptr;
    static inline std::vector<WPARAM> s_seen;
    const wchar_t* m_name;
};

class StripSystemCommands : public SystemCommands, public ShellTest {
 protected:
    StripSystemCommands() : SystemCommands(kStripClass) {}
};

TEST_F(StripSystemCommands, ScreenSaverAndDisplayPowerGoOnToTheSystem) {
    expectOnlyThoseForTheSystem(stripWindow());
}

class FrameSystemCommands : public SystemCommands, public ShellTest {
 protected:
    FrameSystemCommands() : SystemCommands(kFrameClass) {}
};

TEST_F(FrameSystemCommands, ScreenSaverAndDisplayPowerGoOnToTheSystem) {
    expectOnlyThoseForTheSystem(makeFrame());
}

}  // namespace
