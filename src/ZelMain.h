// The application object: start-up, shutdown, and the few services that the rest of the program reaches through theApp.
#pragma once

#include <atomic>
#include <memory>

#include "common/GdiPlus.h"
#include "common/Handle.h"
#include "framework/WinApp.h"

class CSysMsgHandlerFrame;
class CZelHideDlg;
class CZelMainDlg;
struct Placement;

// Messages between the program's own windows and from other programs (docs/architecture.md has the whole table).
inline constexpr UINT kMsgReloadConfig = WM_USER + 100;    // to the frame: read the configuration again
inline constexpr UINT kMsgHotkey = WM_USER + 101;          // to the strip: wParam code, lParam 0 make / 1 break
inline constexpr UINT kMsgSecondInstance = WM_USER + 102;  // to the frame: show or flash the strip
inline constexpr UINT kMsgHideStrip = WM_USER + 104;       // to the frame, from other programs: hide the strip
inline constexpr UINT kMsgCardsFree = WM_APP + 1;          // from the strip to itself: what waited for cards goes on
inline constexpr UINT kMsgPrintScreen = WM_APP + 2;        // to the strip, sent: hide before the picture is taken

// Timers on the card strip.
inline constexpr UINT_PTR kTimerAutoHide = 1;     // apply the selections and hide
inline constexpr UINT_PTR kTimerLaunchHide = 10;  // hide the strip that a second start showed
inline constexpr UINT_PTR kTimerPanic = 20;       // a held output key
inline constexpr UINT kLaunchHideDelayMs = 5000;

// Window classes and titles by which other programs find this one.
inline constexpr wchar_t kFrameClass[] = L"ZelMainCls";
inline constexpr wchar_t kFrameTitle[] = L"KESTOVA Fenwyn";
inline constexpr wchar_t kStripClass[] = L"ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68";

// All methods log their entry and exit at trace level and every failure exit; unless said otherwise they belong on the
// user-interface thread.
class CZelMainApp : public CWinApp {
 public:
    CZelMainApp();
    ~CZelMainApp() override;

    // The image library; null (after a logged assertion) while it is not loaded. Owned by the application.
    [[nodiscard]] HMODULE getPngDll() const;
    // The image scale of the whole user interface; 1.0 (after a logged assertion) while there is no strip.
    [[nodiscard]] double getPngRatio() const;
    // Where the cards stand; kUnplaced while there is no strip.
    [[nodiscard]] const Placement& placement() const;
    // Lays the hidden cards out again where their screen changed, or where the user went to another one. Nothing while
    // cards are to be seen, or while the mouse rests on the hover strip: they come where it is.
    void renewPlacement();
    // Whether the user is working the cards with the mouse. Logged at trace level.
    [[nodiscard]] BOOL& mouseOperating();

    // Switches between the card strip and the hover strip. E_FAIL while either is missing.
    HRESULT showMainDlg(BOOL bShow, BOOL bCancelSticky);
    // A second start while "ShowQrdAtLaunch" is set: shows the strip for five seconds, or hides it when it is there.
    HRESULT showMainDlgAlt();
    // Puts the cards away and lays them out again; with bReinitialize they are built anew. S_FALSE: cards are in use,
    // it will be done when they are not.
    HRESULT refreshCards(BOOL bReinitialize);

    // One hotkey event, called on any thread: wakes the display, ends a screen saver and posts kMsgHotkey to the strip.
    HRESULT handleHotkey(DWORD code, BOOL bBreak);
    // Callable on any thread.
    static void cancelScreenSaver();
    // Callable on any thread: ends message handling of the frame through WM_CLOSE, or asks it to reload.
    void postToFrame(UINT message) const;

 protected:
    bool InitInstance() override;
    int ExitInstance() override;

 private:
    friend struct ZelMainSeam;  // unit tests put single parts of the application in place through it

    HRESULT _startServices();
    HRESULT _createStrips();
    HRESULT checkMultiInstance();
    HRESULT _claimMutex(bool& rbExists);
    static void _signalFirstInstance(HWND hFrame);
    HRESULT installPrtscHook();
    HRESULT _setWndClsName() const;
    HRESULT createSysMsgHandlerFrame();
    HRESULT _cancelFnSticky() const;
    HRESULT _makeTopmost() const;
    static LONG WINAPI hideQrdWhenPrtsc();
    [[nodiscard]] static bool _screenSaverRunning();

    common::UniqueModule m_hPngDll;
    common::UniqueModule m_hPrtHookDll;
    GdiplusSession m_gdiplus;
    common::UniqueHandle m_hMutex;
    BOOL m_bMouseOperating = FALSE;
    std::unique_ptr<CZelMainDlg> m_pZelMainDlg;
    std::unique_ptr<CSysMsgHandlerFrame> m_pFrame;
    std::unique_ptr<CZelHideDlg> m_pZelHideDlg;
    // Addresses for messages posted from other threads; null while the window does not exist.
    std::atomic<HWND> m_hStripWnd = nullptr;
    std::atomic<HWND> m_hFrameWnd = nullptr;
};

extern CZelMainApp theApp;
