#include "UI/PopupDlg.h"

const MessageMap& CPopupDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CPopupDlg::OnNcCalcSize>(WM_NCCALCSIZE),
    };
    static const MessageMap kMap{&CDialog::messageMap(), kEntries};
    return kMap;
}

// The whole window is client area. Some systems look up all measures and fonts of frames, at every move, to find out.
LRESULT CPopupDlg::OnNcCalcSize(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return 0;
}
