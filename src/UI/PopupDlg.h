// A dialog without a frame that appears, moves and disappears without activation: the focus stays with the program that
// the user works in. Assistive programs can read it (UI/Accessible.h).
#pragma once

#include "UI/Accessible.h"
#include "framework/Dialog.h"

// In screen coordinates, without activation. A hidden topmost window that is there already stays as it is, because
// showing it puts it above the others.
bool placeWindow(HWND hWnd, const RECT& rect, HWND hAfter = HWND_TOPMOST);

class CPopupDlg : public CDialog, public accessible::ITarget {
 public:
    using CDialog::CDialog;

    // Shown in front of the windows of its kind.
    void show(bool bShow) const { ::ShowWindow(m_hWnd, bShow ? SW_SHOWNOACTIVATE : SW_HIDE); }
    // Shown and put in front in one step.
    void showInFront() const;

    // In screen coordinates, above all windows that are not topmost unless hAfter is given. False: the last system
    // error tells why.
    bool place(const RECT& rect, HWND hAfter = HWND_TOPMOST) const { return placeWindow(m_hWnd, rect, hAfter); }

    // Derived classes say what they are and what they show.
    [[nodiscard]] HWND accessibleWindow() const override { return m_hWnd; }
    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kNote; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;
    [[nodiscard]] LONG accessibleParts() const override { return 0; }
    [[nodiscard]] RECT accessiblePlace(LONG nPart) const override;
    [[nodiscard]] std::vector<accessible::ITarget*> accessibleChildren() const override { return {}; }
    [[nodiscard]] accessible::ITarget* accessibleParent() const override { return nullptr; }
    [[nodiscard]] IAccessible* accessibleObject() override { return m_accessible.get(*this); }

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    // Without what starts a message loop of the system's: there is no frame to move the window by, and no menu.
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;
    bool PreTranslateMessage(MSG& message) override;  // for its controls
    void PostNcDestroy() override { m_accessible.disconnect(); }

    // An assistive program presses the window or one of its parts, as a click would; or changes its value.
    virtual void accessiblePress(LONG /*nPart*/) {}
    virtual void accessibleSetValue(LONG /*nValue*/) {}

 private:
    LRESULT OnNcCalcSize(WPARAM wParam, LPARAM lParam);
    LRESULT OnGetObject(WPARAM wParam, LPARAM lParam);
    LRESULT OnAccessible(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnWindowPosChanged(WPARAM wParam, LPARAM lParam);

    accessible::CObjectOwner m_accessible;
};
