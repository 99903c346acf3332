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
    // The session ends, and the process with it: does what ExitInstance() does, at once, and closes the log. While a
    // plug-in is at work its card cannot be taken away; the program ends as soon as it returns then.
    void endSession();

    // One hotkey event, called on any thread: wakes the display, ends a screen saver and posts kMsgHotkey to the strip.
    HRESULT handleHotkey(DWORD code, BOOL bBreak);
    // Callable on any thread.
    static void cancelScreenSaver();
    // Callable on any thread: ends message handling of the frame through WM_CLOSE, or asks it to reload.
    void postToFrame(UINT message) const;

 protected:
    bool InitInstance() override;
    int ExitInstance() override;
    void exceptionCaught() noexcept override;

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
    static LONG WINAPI hideQrdWhenPrtsc() noexcept;
    [[nodiscard]] static bool _screenSaverRunning();

    common::UniqueModule m_hPngDll;
    common::UniqueModule m_hPrtHookDll;
    GdiplusSession m_gdiplus;
    common::UniqueHandle m_hMutex;
    BOOL m_bMouseOperating = FALSE;
    bool m_bEnded = false;  // ExitInstance has run
    std::unique_ptr<CZelMainDlg> m_pZelMainDlg;
    std::unique_ptr<CSysMsgHandlerFrame> m_pFrame;
    std::unique_ptr<CZelHideDlg> m_pZelHideDlg;
    // Addresses for messages posted from other threads; null while the window does not exist.
    std::atomic<HWND> m_hStripWnd = nullptr;
    std::atomic<HWND> m_hFrameWnd = nullptr;
};

extern CZelMainApp theApp;
