// Dialogs from templates in the executable's resources. The template may name its own window class, which only has to
// be registered with the system's dialog procedure (a copy of the system dialog class under another name).
#pragma once

#include "framework/Wnd.h"

class CDialog : public CWnd {
 public:
    explicit CDialog(UINT templateId) : m_uTemplateId(templateId) {}

    // Creates the dialog, modeless. False: the last system error tells why.
    virtual bool Create(HWND parent);

    bool PreTranslateMessage(MSG& message) override;

 protected:
    // WM_INITDIALOG. True lets the system set the focus to the first control. After an exception there is no dialog.
    virtual bool OnInitDialog() { return true; }

 private:
    static INT_PTR CALLBACK _dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    [[nodiscard]] bool _initialized();

    UINT m_uTemplateId;
    bool m_bInitFailed = false;
};
