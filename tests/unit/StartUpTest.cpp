// The order of the start-up, and the command line.
#include "AppFixture.h"
#include "Data/RegistryPaths.h"

namespace {

using namespace apptest;

using Names = std::vector<std::wstring>;

TEST_F(StartTest, StartUpTakesItsStepsInOrder) {
    ASSERT_TRUE(start());
    const Names wanted{L"CZelMainApp::InitInstance",
                       L"CHotkeyEventHandler::cancelHotkeyIOEvent",
                       L"CZelMainApp::checkMultiInstance",
                       L"CZelMainApp::installPrtscHook",
                       L"CHotkeyEventHandler::startHotkeyEventLoop",
                       L"CZelMainApp::createSysMsgHandlerFrame",
                       L"CZelMainApp::_setWndClsName",
                       L"CZelMainDlg::initialize",
                       L"CZelMainDlg::OnInitDialog",
                       L"CZelHideDlg::OnInitDialog",
                       L"CZelMainApp::showMainDlg"};
    EXPECT_EQ(entered({L"CZelMainApp::", L"CHotkeyEventHandler::", L"CZelMainDlg::initialize",
                       L"CZelMainDlg::OnInitDialog", L"CZelHideDlg::OnInitDialog"}),
              wanted);
    EXPECT_EQ(siblings::asked(), (Names{L"ZelEvnt.dll", L"CardArt.dll", L"PrtHook.dll", L"ZelMain.dll"}));
    EXPECT_EQ(siblings::control(L"ZelEvnt.dll").cancelQueryEvent.calls, 1);
    EXPECT_EQ(siblings::control(L"PrtHook.dll").installHook.calls, 1);
    EXPECT_EQ(hotkeyLibrary().start.calls, 1);
    EXPECT_EQ(hotkeyLibrary().enableHotkey.calls, 1);
    EXPECT_EQ(hotkeyLibrary().stop.calls, 0);
}

TEST_F(StartTest, FrameAndStripHaveTheirPublishedNames) {
    ASSERT_TRUE(start());
    const HWND frame = ::FindWindowW(L"ZelMainCls", L"KESTOVA Fenwyn");
    EXPECT_EQ(frame, ZelMainSeam::frame()->m_hWnd);
    EXPECT_EQ(theApp.m_pMainWnd.load(), ZelMainSeam::frame().get());
    EXPECT_FALSE(shown(frame));
    EXPECT_EQ(::GetWindowLongPtrW(frame, GWL_STYLE) & WS_OVERLAPPEDWINDOW, WS_OVERLAPPEDWINDOW);
    EXPECT_EQ(::FindWindowW(L"ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68", nullptr), stripWindow());
    wchar_t hoverClass[64] = {};
    ::GetClassNameW(hoverWindow(), hoverClass, 64);
    EXPECT_STREQ(hoverClass, L"#32770");
}

TEST_F(StartTest, StripsClassIsACopyOfTheDialogClass) {
    ASSERT_TRUE(start());
    WNDCLASSW dialogs{};
    WNDCLASSW strips{};
    ASSERT_TRUE(::GetClassInfoW(theApp.m_hInstance, L"#32770", &dialogs));
    ASSERT_TRUE(::GetClassInfoW(theApp.m_hInstance, kStripClass, &strips));
    EXPECT_EQ(strips.style & ~static_cast<UINT>(CS_GLOBALCLASS), dialogs.style & ~static_cast<UINT>(CS_GLOBALCLASS));
    EXPECT_EQ(strips.cbWndExtra, dialogs.cbWndExtra);
    EXPECT_EQ(strips.hInstance, theApp.m_hInstance);
    m_log.clear();
    EXPECT_EQ(ZelMainSeam::registerStripClass(), E_FAIL) << "it is registered already";
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::_setWndClsName): Error Code: 0x80004005"));
}

TEST_F(StartTest, FrameIsMadeOnlyOnce) {
    ASSERT_TRUE(start());
    const HWND frame = ZelMainSeam::frame()->m_hWnd;
    EXPECT_EQ(ZelMainSeam::createFrame(), S_OK);
    EXPECT_EQ(ZelMainSeam::frame()->m_hWnd, frame);
}

TEST_F(StartTest, StripIsTopmostAndTheHoverStripKnowsTheNumberOfCards) {
    ASSERT_TRUE(start());
    EXPECT_NE(::GetWindowLongPtrW(stripWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    EXPECT_EQ(ZelMainSeam::strip()->cardCount(), 2);
    EXPECT_EQ(HideDlgSeam::segments(*ZelMainSeam::hoverStrip()).size(), 2U);
}

struct Launch {
    const wchar_t* commandLine;
    DWORD showAtLaunch;
    bool shown;
};
void PrintTo(const Launch& launch, std::ostream* out) {
    *out << testing::PrintToString(std::wstring(launch.commandLine)) << ", ShowQrdAtLaunch " << launch.showAtLaunch;
}
class CommandLine : public StartTest, public testing::WithParamInterface<Launch> {};

TEST_P(CommandLine, DecidesWhetherTheStripShowsAtLaunch) {
    setConfig(L"ShowQrdAtLaunch", GetParam().showAtLaunch);
    support::RegistryRoom::setDword(HKEY_CURRENT_USER, regpath::kConfigKey, L"EnableHover", 1);
    ASSERT_TRUE(start(GetParam().commandLine));
    EXPECT_EQ(shown(stripWindow()), GetParam().shown);
    EXPECT_EQ(shown(hoverWindow()), !GetParam().shown);
    const std::wstring line =
        L"[TRC] (CZelMainApp::InitInstance): m_lpCmdLine = " + std::wstring(GetParam().commandLine);
    EXPECT_EQ(logged(line), GetParam().commandLine[0] != L'\0');
}

INSTANTIATE_TEST_SUITE_P(Switches, CommandLine,
                         testing::Values(Launch{L"", 0, false}, Launch{L"", 1, true}, Launch{L"/hide", 1, false},
                                         Launch{L"/HIDE", 1, false}, Launch{L"/x", 0, true}, Launch{L"/x", 1, true},
                                         Launch{L"/hide ", 0, true}, Launch{L"/hide /hide", 0, true}));

TEST_F(StartTest, LaunchCancelsNoLatchedModifier) {
    const MessageCounter utility(L"Dravik", L"Dravik Window",
                                 ::RegisterWindowMessageW(L"KESTOVA Fenwyn-WM_CANCEL_STICKY"));
    ASSERT_TRUE(start());
    pump();
    EXPECT_EQ(utility.count(), 0);
}

// These failures are only logged.
struct Tolerated {
    const char* what;
    void (*arrange)();
    const wchar_t* line;
};
void PrintTo(const Tolerated& tolerated, std::ostream* out) {
    *out << tolerated.what;
}
class ToleratedFailure : public StartTest, public testing::WithParamInterface<Tolerated> {};

TEST_P(ToleratedFailure, IsLoggedAndTheStartGoesOn) {
    GetParam().arrange();
    EXPECT_TRUE(start()) << GetParam().what;
    EXPECT_EQ(errors().empty() ? std::wstring() : errors().back(), GetParam().line) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Siblings, ToleratedFailure,
    testing::Values(Tolerated{"no ZelEvnt.dll", [] { siblings::remove(L"ZelEvnt.dll"); },
                              L"[ERR] (CHotkeyEventHandler::cancelHotkeyIOEvent): Error Code: 0x80004005"},
                    Tolerated{"no CancelQueryEvent",
                              [] { siblings::withoutExport(L"ZelEvnt.dll", L"CancelQueryEvent"); },
                              L"[ERR] (CHotkeyEventHandler::cancelHotkeyIOEvent): Error Code: 0x80004005"},
                    Tolerated{"CancelQueryEvent fails",
                              [] { siblings::control(L"ZelEvnt.dll").cancelQueryEvent.result = 1; },
                              L"[ERR] (CHotkeyEventHandler::cancelHotkeyIOEvent): Error Code: 0x80004005"},
                    Tolerated{"no PrtHook.dll", [] { siblings::remove(L"PrtHook.dll"); },
                              L"[ERR] (CZelMainApp::installPrtscHook): Error Code: 0x80004003"},
                    Tolerated{"no InstallHook", [] { siblings::withoutExport(L"PrtHook.dll", L"InstallHook"); },
                              L"[ERR] (CZelMainApp::installPrtscHook): Error Code: 0x80004003"},
                    Tolerated{"InstallHook fails", [] { siblings::control(L"PrtHook.dll").installHook.result = FALSE; },
                              L"[ERR] (CZelMainApp::installPrtscHook): Error Code: 0x80004005"}));

}  // namespace
