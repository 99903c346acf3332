// The hidden window behind the icon in the notification area.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <string>

#include "RunningFenwyn.h"
#include "framework/Wnd.h"

namespace settings {

// What the icon needs of the rest of the world.
class ITraySurroundings {
 public:
    virtual ~ITraySurroundings() = default;
    // As Shell_NotifyIcon.
    virtual bool notify(DWORD message, NOTIFYICONDATAW& data) = 0;
    [[nodiscard]] virtual bool isFenwynRunning() = 0;
    virtual void openSettings() = 0;
    virtual void startFenwyn() = 0;
    virtual void endFenwyn() = 0;
    [[nodiscard]] virtual CardsShown showCards() = 0;
    virtual void releaseCards() = 0;
    // Shows the menu at a point of the screen until the user has chosen; 0: nothing.
    [[nodiscard]] virtual UINT choose(HWND owner, HMENU menu, POINT place) = 0;
    // Somebody has asked the icon to end.
    [[nodiscard]] virtual bool endWanted() = 0;
};

class CTrayWnd : public CWnd {
 public:
    static constexpr UINT kMsgIcon = WM_APP + 1;  // from the shell
    static constexpr UINT_PTR kTimerRetry = 1;    // the shell did not take the icon
    static constexpr UINT_PTR kTimerCards = 2;    // the cards were shown long enough
    static constexpr UINT_PTR kTimerMenu = 3;     // is the end wanted while the menu is open?
    static constexpr UINT kMenuMs = 250;
    static constexpr UINT kRetryMs = 2000;
    static constexpr int kMostTries = 10;  // after that the shell will say when it is there
    static constexpr UINT kCardsMs = 5000;

    explicit CTrayWnd(ITraySurroundings& surroundings) : m_surroundings(surroundings) {}
    ~CTrayWnd() override { CTrayWnd::DestroyWindow(); }

    // Creates the window and the icon. False: the last system error tells why.
    bool open(HINSTANCE instance);
    bool DestroyWindow() override;

 protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    LRESULT OnIcon(WPARAM wParam, LPARAM lParam);
    LRESULT OnEndSession(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);

    [[nodiscard]] NOTIFYICONDATAW _data() const;
    void _addIcon();
    void _showMenu(POINT place);
    void _do(UINT command);
    void _showCards();
    void _releaseCards();

    ITraySurroundings& m_surroundings;
    HICON m_hIcon = nullptr;  // shared, belongs to the system
    std::wstring m_strTip;
    UINT m_uTaskbarCreated = 0;
    int m_nTries = 0;
    bool m_bCardsHeld = false;
    bool m_bMenuOpen = false;
};

}  // namespace settings
