// A small window next to an item that only shows information: it has no task-bar button, and never keeps the focus.
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
