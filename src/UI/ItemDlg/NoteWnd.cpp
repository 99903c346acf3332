#include "UI/ItemDlg/NoteWnd.h"

const MessageMap& CNoteWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CNoteWnd::OnPaint>(),
        onFocus<&CNoteWnd::OnSetFocus>(WM_SETFOCUS),
    };
    static const MessageMap kMap{&CPopupDlg::messageMap(), kEntries};
    return kMap;
}

bool CNoteWnd::OnInitDialog() {
    addExStyle(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE);
    return false;
}

void CNoteWnd::OnSetFocus(HWND hOldWnd) {
    Default();
    ::SetFocus(hOldWnd);
}
