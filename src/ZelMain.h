// The application object: start-up, shutdown, and the few services that the rest of the program uses through theApp.
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

// All methods log their entry and exit at trace level and every failure exit; unless noted otherwise they must be
// called on the user-interface thread.
class CZelMainApp : public CWinApp {
 public:
    CZelMainApp();
    ~CZelMainApp() override;

    // The image library; null (after a logged assertion) while it is not loaded. Owned by the application.
    [[nodiscard]] HMODULE getPngDll() const;
    // The image scale of the whole user interface; 1.0 (after a logged assertion) while there is no strip.
    [[nodiscard]] double getPngRatio() const;
    // The placement of the cards; kUnplaced while there is no strip.
    [[nodiscard]] const Placement& placement() const;
    // Lays out the hidden cards again if their screen changed, or if the user moved to another one. Does nothing while
    // cards are visible, or while the mouse rests on the hover strip: the cards appear there.
    void renewPlacement();
    // Whether the user is operating the cards with the mouse. Logged at trace level.
    [[nodiscard]] BOOL& mouseOperating();

    // Whether no cards may be shown now, because a full-screen program runs. Keys work all the same.
    [[nodiscard]] static bool cardsStayHidden();

    // Switches between the card strip and the hover strip. E_FAIL while either is missing.
    [[nodiscard]] HRESULT showMainDlg(BOOL bShow, BOOL bCancelSticky);
    // A second start while "ShowQrdAtLaunch" is set: shows the strip for five seconds, or hides it if it is visible.
    [[nodiscard]] HRESULT showMainDlgAlt();
    // Hides the cards and lays them out again; with bReinitialize they are rebuilt. S_FALSE: cards are in use; it will
    // be done when they are free.
    [[nodiscard]] HRESULT refreshCards(BOOL bReinitialize);
    // The card configuration has been read: what depends on it elsewhere takes effect.
    static void settingsRead();
    // Takes the system's choice of contrast and colours over, and paints everything again if that is a change.
    static void renewContrast();
    // The session ends, and the process with it: does the same as ExitInstance(), at once, and closes the log. During a
    // plug-in call its card cannot be destroyed; the program then ends as soon as the call returns.
    void endSession();

    // One hotkey event, called on any thread: wakes the display, ends a screen saver and posts kMsgHotkey to the strip.
    [[nodiscard]] HRESULT handleHotkey(DWORD code, BOOL bBreak);
    // Callable on any thread.
    static void cancelScreenSaver();
    // Callable on any thread: ends message handling of the frame through WM_CLOSE, or asks it to reload.
    void postToFrame(UINT message) const;
    // The same, and waits until the frame has handled the message, or for the given time. Not for its own thread.
    void sendToFrame(UINT message, DWORD dwPatienceMs) const;
    // Tells the strip whether the modifier is latched. Any thread.
    void postLatch(bool bLatched) const;

 protected:
    bool InitInstance() override;
    int ExitInstance() override;
    bool PreTranslateMessage(MSG& message) override;
    void exceptionCaught() noexcept override;

 private:
    friend struct ZelMainSeam;  // unit tests access single parts of the application through it

    [[nodiscard]] HRESULT _startServices();
    [[nodiscard]] HRESULT _createStrips();
    [[nodiscard]] HRESULT checkMultiInstance();
    [[nodiscard]] HRESULT _claimMutex(bool& rbExists);
    static void _signalFirstInstance(HWND hFrame);
    [[nodiscard]] HRESULT installPrtscHook();
    [[nodiscard]] HRESULT _setWndClsName() const;
    [[nodiscard]] HRESULT createSysMsgHandlerFrame();
    [[nodiscard]] HRESULT _cancelFnSticky() const;
    [[nodiscard]] HRESULT _makeTopmost() const;
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
    // Windows for messages posted from other threads; null while the window does not exist.
    std::atomic<HWND> m_hStripWnd = nullptr;
    std::atomic<HWND> m_hFrameWnd = nullptr;
};

extern CZelMainApp theApp;
