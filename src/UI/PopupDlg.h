// A dialog without a frame that appears, moves and disappears without activation: the focus stays with the program that
// the user works in.
#pragma once

#include "framework/Dialog.h"

class CPopupDlg : public CDialog {
 public:
    using CDialog::CDialog;

    void show(bool bShow) const { ::ShowWindow(m_hWnd, bShow ? SW_SHOWNOACTIVATE : SW_HIDE); }

    // In screen coordinates, above all windows that are not topmost unless hAfter is given. False: the last system
    // error tells why.
    bool place(const RECT& rect, HWND hAfter = HWND_TOPMOST) const {
        return ::SetWindowPos(m_hWnd, hAfter, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                              SWP_NOACTIVATE) != FALSE;
    }

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    LRESULT OnNcCalcSize(WPARAM wParam, LPARAM lParam);
};
