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
    addExStyle(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_LAYERED);
    // Opaque; but other threads can take it off the screen, which no other kind of window allows (UI/StuckCards.h).
    ::SetLayeredWindowAttributes(m_hWnd, 0, 255, LWA_ALPHA);
    return false;
}

void CNoteWnd::OnSetFocus(HWND hOldWnd) {
    Default();
    ::SetFocus(hOldWnd);
}
