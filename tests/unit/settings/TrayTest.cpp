// The icon in the notification area, without a shell; the shipped program is tested with real keys in tests/e2e.
#include <gtest/gtest.h>

#include "Messages.h"
#include "Notebook.h"
#include "RunningFenwyn.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "Tray.h"
#include "TrayStart.h"
#include "TrayWnd.h"
#include "Values.h"
#include "ZelHotkey.h"

namespace settings {
namespace {

using Calls = std::vector<std::wstring>;

class CTraySurroundingsDouble : public ITraySurroundings {
 public:
    bool notify(DWORD message, NOTIFYICONDATAW& data) override {
        lastData = data;
        messages.push_back(message);
        return message == NIM_DELETE || shellAnswers;
    }
    bool isFenwynRunning() override { return running; }
    void openSettings() override { calls.push_back(L"settings"); }
    void startFenwyn() override { calls.push_back(L"start"); }
    void endFenwyn() override { calls.push_back(L"end"); }
    CardsShown showCards() override {
        calls.push_back(L"show");
        return shown;
    }
    void releaseCards() override { calls.push_back(L"release"); }
    UINT choose(HWND, HMENU menu, POINT at) override {
        place = at;
        menuTexts.clear();
        for (int i = 0; i < ::GetMenuItemCount(menu); ++i) {
            wchar_t words[64] = L"";
            ::GetMenuStringW(menu, static_cast<UINT>(i), words, 64, MF_BYPOSITION);
            const bool greyed = (::GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION) & MF_GRAYED) != 0;
            menuTexts.push_back((greyed && words[0] != L'\0' ? L"-" : L"") + std::wstring(words));
        }
        defaultItem = ::GetMenuDefaultItem(menu, FALSE, 0);
        return choice;
    }
    bool endWanted() override { return false; }

    bool shellAnswers = true;
    bool running = true;
    CardsShown shown = CardsShown::Held;
    UINT choice = 0;
    std::vector<DWORD> messages;
    NOTIFYICONDATAW lastData{};
    Calls calls;
    Calls menuTexts;
    UINT defaultItem = 0;
    POINT place{};
};

class Tray : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_window.open(::GetModuleHandleW(nullptr))); }

    // As the shell tells it from version 4 on.
    void event(UINT what, POINT place = {}) {
        ::SendMessageW(m_window.m_hWnd, CTrayWnd::kMsgIcon, static_cast<WPARAM>(MAKELONG(place.x, place.y)),
                       MAKELPARAM(what, 1));
    }
    Calls chosen(UINT command) {
        m_outside.calls.clear();
        m_outside.choice = command;
        event(WM_CONTEXTMENU);
        return m_outside.calls;
    }

    CTraySurroundingsDouble m_outside;
    CTrayWnd m_window{m_outside};
};

TEST_F(Tray, IconHasPictureAndTipAndHearsOfKeys) {
    EXPECT_EQ(m_outside.messages, (std::vector<DWORD>{NIM_ADD, NIM_SETVERSION}));
    EXPECT_EQ(m_outside.lastData.uVersion, UINT{NOTIFYICON_VERSION_4});
    EXPECT_NE(m_outside.lastData.hIcon, nullptr);
    EXPECT_EQ(m_outside.lastData.szTip, text(IDS_TRAY_TIP));
    EXPECT_TRUE(m_outside.lastData.uFlags & NIF_SHOWTIP);
}

TEST_F(Tray, ComesBackWithANewShell) {
    m_outside.messages.clear();
    ::SendMessageW(HWND_BROADCAST, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    EXPECT_EQ(m_outside.messages, (std::vector<DWORD>{NIM_ADD, NIM_SETVERSION}));
}

TEST_F(Tray, ShellThatIsBusyIsAskedAgainForAWhile) {
    m_outside.shellAnswers = false;
    m_outside.messages.clear();
    ::SendMessageW(m_window.m_hWnd, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    for (int i = 0; i < 2 * CTrayWnd::kMostTries; ++i) {
        ::SendMessageW(m_window.m_hWnd, WM_TIMER, CTrayWnd::kTimerRetry, 0);
    }
    EXPECT_EQ(std::count(m_outside.messages.begin(), m_outside.messages.end(), DWORD{NIM_SETVERSION}), 0);
    EXPECT_EQ(::KillTimer(m_window.m_hWnd, CTrayWnd::kTimerRetry), FALSE) << "it gave up";
    m_outside.shellAnswers = true;
    ::SendMessageW(m_window.m_hWnd, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    EXPECT_EQ(m_outside.messages.back(), DWORD{NIM_SETVERSION});
}

TEST_F(Tray, MenuSaysWhatFenwynCanDoNow) {
    chosen(0);
    EXPECT_EQ(m_outside.menuTexts, (Calls{text(IDS_TRAY_SETTINGS), text(IDS_TRAY_CARDS), L"", text(IDS_TRAY_END)}));
    EXPECT_EQ(m_outside.defaultItem, UINT{IDS_TRAY_SETTINGS});
    m_outside.running = false;
    chosen(0);
    EXPECT_EQ(m_outside.menuTexts,
              (Calls{text(IDS_TRAY_SETTINGS), L"-" + text(IDS_TRAY_CARDS), L"", text(IDS_TRAY_START)}));
}

TEST_F(Tray, EveryCommandDoesWhatItSays) {
    EXPECT_EQ(chosen(0), Calls{});
    EXPECT_EQ(chosen(IDS_TRAY_SETTINGS), Calls{L"settings"});
    EXPECT_EQ(chosen(IDS_TRAY_START), Calls{L"start"});
    EXPECT_EQ(chosen(IDS_TRAY_END), Calls{L"end"});
    EXPECT_EQ(chosen(IDS_TRAY_CARDS), Calls{L"show"});
}

TEST_F(Tray, MenuOpensAtTheIconOnEitherSideOfTheMainScreen) {
    event(WM_CONTEXTMENU, {-300, 40});
    EXPECT_EQ(m_outside.place.x, -300);
    EXPECT_EQ(m_outside.place.y, 40);
}

TEST_F(Tray, DoubleClickAndEnterOpenTheSettings) {
    event(WM_LBUTTONDOWN);
    event(WM_LBUTTONUP);
    event(NIN_SELECT);
    EXPECT_EQ(m_outside.calls, Calls{});
    event(WM_LBUTTONDBLCLK);
    EXPECT_EQ(m_outside.calls, Calls{L"settings"});
    event(NIN_KEYSELECT);
    EXPECT_EQ(m_outside.calls, (Calls{L"settings", L"settings"}));
}

TEST_F(Tray, CardsThatItHoldsAreReleasedOnceAfterAWhile) {
    chosen(IDS_TRAY_CARDS);
    ::SendMessageW(m_window.m_hWnd, WM_TIMER, CTrayWnd::kTimerCards, 0);
    ::SendMessageW(m_window.m_hWnd, WM_TIMER, CTrayWnd::kTimerCards, 0);
    EXPECT_EQ(m_outside.calls, (Calls{L"show", L"release"}));
    m_outside.shown = CardsShown::Itself;
    EXPECT_EQ(chosen(IDS_TRAY_CARDS), Calls{L"show"});
    ::SendMessageW(m_window.m_hWnd, WM_TIMER, CTrayWnd::kTimerCards, 0);
    EXPECT_EQ(m_outside.calls, Calls{L"show"});
}

TEST_F(Tray, EndTakesTheIconAwayAndReleasesTheCards) {
    chosen(IDS_TRAY_CARDS);
    m_outside.messages.clear();
    ::SendMessageW(m_window.m_hWnd, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(m_outside.calls, (Calls{L"show", L"release"}));
    EXPECT_EQ(m_outside.messages, std::vector<DWORD>{NIM_DELETE});
    EXPECT_FALSE(m_window.isWindow());
}

class IconSetting : public Notebook {};

TEST_F(IconSetting, TheUsersComesBeforeTheMachines) {
    EXPECT_TRUE(isIconWanted());
    give(Root::Machine, FENWYN_VALUE_TRAY_ICON, 0, regpath::kProgramKey);
    EXPECT_FALSE(isIconWanted());
    give(Root::User, FENWYN_VALUE_TRAY_ICON, 1, regpath::kProgramKey);
    EXPECT_TRUE(isIconWanted());
}

TEST_F(IconSetting, IsFollowedAtApplyAndOnlyThen) {
    m_model.setNumber(value(FENWYN_VALUE_TRAY_ICON), 0);
    EXPECT_EQ(m_nIconChanges, 0);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nIconChanges, 1);
    EXPECT_FALSE(isIconWanted());
    m_model.setNumber(value(ZEL_VALUE_STICKY_MODIFIER), 1);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nIconChanges, 1);
}

// Windows of Fenwyn's classes, which note what they are told.
class FenwynDouble : public testing::Test {
 protected:
    struct Seen {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        bool operator==(const Seen&) const = default;
    };

    void SetUp() override {
        m_hFrame = make(kFrameClass, kFrameTitle);
        m_hStrip = make(kStripClass, L"");
        s_seen.clear();
        s_strip = m_hStrip;
    }
    void TearDown() override {
        ::DestroyWindow(m_hFrame);
        ::DestroyWindow(m_hStrip);
    }
    static HWND make(const wchar_t* cls, const wchar_t* title) {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &procedure;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = cls;
        ::RegisterClassW(&windowClass);
        return ::CreateWindowExW(WS_EX_NOACTIVATE, cls, title, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                 windowClass.hInstance, nullptr);
    }
    static LRESULT CALLBACK procedure(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == kMsgHotkey || message == kMsgSecondInstance) {
            s_seen.push_back({message, wParam, lParam});
        }
        if (message == kMsgHotkey && s_showsOnModifier) {
            ::ShowWindow(s_strip, lParam == ZEL_MAKE ? SW_SHOWNOACTIVATE : SW_HIDE);
        }
        return ::DefWindowProcW(hWnd, message, wParam, lParam);
    }

    static inline std::vector<Seen> s_seen;
    static inline HWND s_strip = nullptr;
    static inline bool s_showsOnModifier = true;
    HWND m_hFrame = nullptr;
    HWND m_hStrip = nullptr;
};

TEST_F(FenwynDouble, CardsComeAndGoAsByTheModifier) {
    s_showsOnModifier = true;
    EXPECT_EQ(showCards(), CardsShown::Held);
    EXPECT_EQ(s_seen, (std::vector<Seen>{{kMsgHotkey, ZEL_CODE_MODIFIER, ZEL_MAKE}}));
    EXPECT_EQ(showCards(), CardsShown::Itself) << "they are there";
    releaseCards();
    EXPECT_FALSE(::IsWindowVisible(m_hStrip));
    s_seen.clear();
    releaseCards();
    EXPECT_TRUE(s_seen.empty()) << "a release without cards would apply what a key has chosen meanwhile";
}

TEST_F(FenwynDouble, WhereTheModifierShowsNothingTheyComeAsBySecondStart) {
    s_showsOnModifier = false;
    EXPECT_EQ(showCards(), CardsShown::Itself);
    EXPECT_EQ(s_seen, (std::vector<Seen>{{kMsgHotkey, ZEL_CODE_MODIFIER, ZEL_MAKE}, {kMsgSecondInstance, 0, 0}}));
}

TEST_F(FenwynDouble, NobodyIsAskedWhereNobodyRuns) {
    ::DestroyWindow(m_hFrame);
    EXPECT_EQ(showCards(), CardsShown::No);
    EXPECT_TRUE(s_seen.empty());
}

}  // namespace
}  // namespace settings
