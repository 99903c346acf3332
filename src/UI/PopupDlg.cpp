#include "UI/PopupDlg.h"

#include "Messages.h"
#include "common/SystemLoops.h"

bool placeWindow(HWND hWnd, const RECT& rect, HWND hAfter) {
    RECT now{};
    const bool bTopmost = (::GetWindowLongPtrW(hWnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    if (hAfter == HWND_TOPMOST && bTopmost && !::IsWindowVisible(hWnd) && ::GetWindowRect(hWnd, &now) &&
        ::EqualRect(&now, &rect)) {
        return true;
    }
    return ::SetWindowPos(hWnd, hAfter, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                          SWP_NOACTIVATE) != FALSE;
}

const MessageMap& CPopupDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CPopupDlg::OnNcCalcSize>(WM_NCCALCSIZE),
        onMessage<&CPopupDlg::OnGetObject>(WM_GETOBJECT),
        onMessage<&CPopupDlg::OnAccessible>(kMsgAccessible),
        onMessage<&CPopupDlg::OnDpiChanged>(kMsgDpiChanged),
        onMessage<&CPopupDlg::OnWindowPosChanged>(WM_WINDOWPOSCHANGED),
    };
    static const MessageMap kMap{&CDialog::messageMap(), kEntries};
    return kMap;
}

LRESULT CPopupDlg::WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    return common::startsSystemLoop(nMessage, wParam) ? 0 : CDialog::WindowProc(nMessage, wParam, lParam);
}

bool CPopupDlg::PreTranslateMessage(MSG& message) {
    return common::startsSystemLoop(message.message, message.wParam) || CDialog::PreTranslateMessage(message);
}

// Its handlers learn of it as from ShowWindow.
void CPopupDlg::showInFront() const {
    if (isVisible()) {
        return;
    }
    ::SendMessageW(m_hWnd, WM_SHOWWINDOW, TRUE, 0);
    ::SetWindowPos(m_hWnd, HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// The whole window is client area. Some systems look up all measures and fonts of frames, at every move, to find out.
LRESULT CPopupDlg::OnNcCalcSize(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return 0;
}

accessible::Facts CPopupDlg::accessibleFacts(LONG /*nPart*/) const {
    return {};
}

RECT CPopupDlg::accessiblePlace(LONG /*nPart*/) const {
    return windowRect();
}

LRESULT CPopupDlg::OnGetObject(WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return accessible::answer(*this, wParam, lParam, result) ? result : Default();
}

LRESULT CPopupDlg::OnAccessible(WPARAM wParam, LPARAM lParam) {
    if (!isVisible()) {
        return 0;  // hidden since then
    }
    const auto nArgument = static_cast<LONG>(lParam);
    if (wParam == accessible::kPress) {
        accessiblePress(nArgument);
    } else if (wParam == accessible::kSetValue) {
        accessibleSetValue(nArgument);
    }
    return 0;
}

// The system would scale the window and its font. Both follow the placement of the cards instead.
LRESULT CPopupDlg::OnDpiChanged(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return 0;
}

// Not every system tells others itself that a window appears or disappears.
LRESULT CPopupDlg::OnWindowPosChanged(WPARAM /*wParam*/, LPARAM lParam) {
    const UINT uChanges = reinterpret_cast<const WINDOWPOS*>(lParam)->flags;
    const LRESULT result = Default();
    if ((uChanges & SWP_SHOWWINDOW) != 0) {
        accessible::announce(m_hWnd, EVENT_OBJECT_SHOW);
    } else if ((uChanges & SWP_HIDEWINDOW) != 0) {
        accessible::announce(m_hWnd, EVENT_OBJECT_HIDE);
    }
    return result;
}
