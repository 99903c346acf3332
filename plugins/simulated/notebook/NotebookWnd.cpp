#include "NotebookWnd.h"

#include "CallRecord.h"
#include "Session.h"
#include "Words.h"
#include "ZelHotkey.h"

namespace sim {

namespace {

constexpr wchar_t kClassName[] = L"KestovaSimulatedNotebook";
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

constexpr UINT kChanged = WM_APP + 1;
constexpr UINT kTakeFocus = WM_APP + 2;

int screenDpi() {
    const common::WindowDc screen(nullptr);
    return GetDeviceCaps(screen.get(), LOGPIXELSY);
}

bool registerClass() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.lpszClassName = kClassName;
    return RegisterClassExW(&windowClass) != 0;
}

// Whether the cards are at the bottom edge.
bool cardsAtBottom() {
    DWORD position = 0;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        DWORD bytes = sizeof position;
        if (RegGetValueW(root, ZEL_REG_CONFIG, L"Position", RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &position,
                         &bytes) == ERROR_SUCCESS) {
            break;
        }
    }
    return position != 0;
}

// In the middle of the edge without cards.
RECT placeOf(SIZE client) {
    RECT frame{0, 0, client.cx, client.cy};
    AdjustWindowRectEx(&frame, kStyle, FALSE, 0);
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const LONG width = frame.right - frame.left;
    const LONG height = frame.bottom - frame.top;
    const LONG left = std::max(area.left, (area.left + area.right - width) / 2);
    const LONG top = cardsAtBottom() ? area.top : std::max(area.top, area.bottom - height);
    return {left, top, left + width, top + height};
}

std::wstring keyName(LPARAM keyData) {
    wchar_t name[64];
    const int length = GetKeyNameTextW(static_cast<LONG>(keyData), name, static_cast<int>(std::size(name)));
    return {name, static_cast<std::size_t>(std::max(length, 0))};
}

}  // namespace

const MessageMap& CNotebookWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CNotebookWnd::OnPaint>(),
        onMessage<&CNotebookWnd::OnEraseBackground>(WM_ERASEBKGND),
        onMessage<&CNotebookWnd::OnChanged>(kChanged),
        onMessage<&CNotebookWnd::OnKeyDown>(WM_KEYDOWN),
        onMessage<&CNotebookWnd::OnKeyDown>(WM_SYSKEYDOWN),
        onMessage<&CNotebookWnd::OnSysCommand>(WM_SYSCOMMAND),
        onFocus<&CNotebookWnd::OnKillFocus>(WM_KILLFOCUS),
        onEvent<&CNotebookWnd::OnTakeFocus>(kTakeFocus),
        onEvent<&CNotebookWnd::OnClose>(WM_CLOSE),
    };
    static const MessageMap kMap{&CFrameWnd::messageMap(), kEntries};
    return kMap;
}

CNotebookWnd::CNotebookWnd() : m_view(screenDpi()) {}

bool CNotebookWnd::create() {
    m_model = readNotebook({});
    if (!registerClass() ||
        !Create(kClassName, word(L"Simulated notebook").c_str(), kStyle, placeOf(m_view.sizeFor(m_model)))) {
        return false;
    }
    m_watch.start(m_hWnd, kChanged);
    ShowWindow(m_hWnd, SW_SHOW);
    SetForegroundWindow(m_hWnd);
    SetFocus(m_hWnd);
    return true;
}

void CNotebookWnd::_show(NotebookModel model) {
    if (model == m_model) {
        return;
    }
    const bool otherSize = model.rows.size() != m_model.rows.size();
    m_model = std::move(model);
    if (otherSize) {
        const RECT place = placeOf(m_view.sizeFor(m_model));
        SetWindowPos(m_hWnd, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    InvalidateRect(m_hWnd, nullptr, FALSE);
}

void CNotebookWnd::OnPaint() {
    const common::PaintDc dc(m_hWnd);
    const SIZE size = m_view.sizeFor(m_model);
    const common::UniqueMemoryDc memory(CreateCompatibleDC(dc.get()));
    const common::UniqueBitmap bitmap(CreateCompatibleBitmap(dc.get(), size.cx, size.cy));
    const common::SelectScope select(memory.get(), bitmap.get());
    m_view.draw(memory.get(), m_model);
    BitBlt(dc.get(), 0, 0, size.cx, size.cy, memory.get(), 0, 0, SRCCOPY);
}

LRESULT CNotebookWnd::OnEraseBackground(WPARAM, LPARAM) {
    return TRUE;  // painting covers everything
}

LRESULT CNotebookWnd::OnChanged(WPARAM, LPARAM) {
    // A burst of changes causes one repaint.
    MSG message;
    while (PeekMessageW(&message, m_hWnd, kChanged, kChanged, PM_REMOVE) != FALSE) {
    }
    _show(readNotebook(m_model));
    return 0;
}

LRESULT CNotebookWnd::OnKeyDown(WPARAM wParam, LPARAM lParam) {
    NotebookModel model = m_model;
    model.typed = keyName(lParam);
    recordCall({L"Notebook", L"KeyDown", std::to_wstring(wParam), 0});
    _show(std::move(model));
    return Default();
}

LRESULT CNotebookWnd::OnSysCommand(WPARAM wParam, LPARAM) {
    // F10 and Alt would open the window menu, which takes the next keys.
    return (wParam & 0xFFF0) == SC_KEYMENU ? 0 : Default();
}

void CNotebookWnd::OnKillFocus(HWND) {
    Default();
    PostMessageW(m_hWnd, kTakeFocus, 0, 0);
}

// Another program's window may have the focus; if no window had it, keys would reach no hook.
void CNotebookWnd::OnTakeFocus() {
    const HWND foreground = GetForegroundWindow();
    const bool nobody = foreground == nullptr || foreground == GetDesktopWindow() || !IsWindowVisible(foreground);
    if (nobody && !IsIconic(m_hWnd)) {
        SetForegroundWindow(m_hWnd);
        SetFocus(m_hWnd);
    }
}

void CNotebookWnd::OnClose() {
    m_watch.stop();
    askFenwynToEnd();
    CFrameWnd::OnClose();
}

}  // namespace sim
