#include "framework/FrameWnd.h"

bool CFrameWnd::Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place, HWND parent) {
    return CreateEx(0, className, title, style, place, parent, nullptr);
}

const MessageMap& CFrameWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onEvent<&CFrameWnd::OnClose>(WM_CLOSE),
    };
    static const MessageMap kMap{&CWnd::messageMap(), kEntries};
    return kMap;
}

void CFrameWnd::OnClose() {
    DestroyWindow();
}
