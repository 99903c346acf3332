// The hidden frame: it translates broadcasts of the system and control messages of other programs into the
// application's few actions. It has no state besides its window.
#pragma once

#include "framework/FrameWnd.h"

class CSysMsgHandlerFrame : public CFrameWnd {
 public:
    // Registers for the notifications of its own logon session once the window exists.
    bool Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place = kDefaultRect,
                HWND parent = nullptr) override;
    bool DestroyWindow() override;

    void flashMainDlg();

 protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    LRESULT OnReloadConfig(WPARAM wParam, LPARAM lParam);
    LRESULT OnSecondInstance(WPARAM wParam, LPARAM lParam);
    LRESULT OnHideStrip(WPARAM wParam, LPARAM lParam);
    void OnAlive();
    void OnDisplayChange();
    LRESULT OnPowerBroadcast(WPARAM wParam, LPARAM lParam);
    LRESULT OnSessionChange(WPARAM wParam, LPARAM lParam);
    LRESULT OnSettingChange(WPARAM wParam, LPARAM lParam);
    LRESULT OnColoursChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnEndSession(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);

    static void OnResume();
    static void OnSessionConnect();
    static void OnSessionUnlock();
};
