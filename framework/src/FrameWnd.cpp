#include "framework/FrameWnd.h"

bool CFrameWnd::Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place, HWND parent) {
    return CreateEx(0, className, title, style, place, parent, nullptr);
}

namespace {
struct FrameEntries : CFrameWnd {
    static constexpr MessageEntry kEntries[] = {onEvent<&FrameEntries::OnClose>(WM_CLOSE)};
};
}  // namespace

const MessageMap CFrameWnd::kFrameMap{nullptr, FrameEntries::kEntries};

const MessageMap& CFrameWnd::messageMap() const {
    return kFrameMap;
}

void CFrameWnd::OnClose() {
    DestroyWindow();
}
