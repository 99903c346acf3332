// A small window beside an item that is read and not used: it has no task-bar button, and the focus never stays on it.
#pragma once

#include "UI/PopupDlg.h"

class CNoteWnd : public CPopupDlg {
 public:
    using CPopupDlg::CPopupDlg;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    virtual void OnPaint() = 0;

 private:
    void OnSetFocus(HWND hOldWnd);
};
