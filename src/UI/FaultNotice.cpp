#include "UI/FaultNotice.h"

#include <algorithm>

#include "common/Handle.h"
#include "common/SystemLoops.h"

namespace {

// In pixels at 96 per inch.
constexpr int kTextWidth = 340;
constexpr int kPadding = 12;
constexpr int kIconSize = 32;
constexpr int kDistance = 16;  // from the corner of the work area
constexpr UINT kTextFormat = DT_WORDBREAK | DT_NOPREFIX | DT_LEFT;

int scaled(int pixels) {
    const common::WindowDc screen(nullptr);
    return ::MulDiv(pixels, ::GetDeviceCaps(screen.get(), LOGPIXELSY), USER_DEFAULT_SCREEN_DPI);
}

common::UniqueFont messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    return common::UniqueFont(::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0) != FALSE
                                  ? ::CreateFontIndirectW(&metrics.lfMessageFont)
                                  : nullptr);
}

std::wstring titleOf(HWND hWnd) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(hWnd)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(::GetWindowTextW(hWnd, text.data(), static_cast<int>(text.size()))));
    return text;
}

int textHeight(const std::wstring& strText) {
    const common::WindowDc screen(nullptr);
    const common::UniqueFont font = messageFont();
    const common::SelectScope withFont(screen.get(), font ? font.get() : ::GetStockObject(SYSTEM_FONT));
    RECT rect{0, 0, scaled(kTextWidth), 0};
    ::DrawTextW(screen.get(), strText.c_str(), -1, &rect, kTextFormat | DT_CALCRECT);
    return static_cast<int>(rect.bottom);
}

// At the bottom right, where notices of the system stand.
RECT placeOf(const std::wstring& strText) {
    RECT area{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const int nWidth = scaled(kTextWidth + 3 * kPadding + kIconSize);
    const int nHeight = std::max(textHeight(strText), scaled(kIconSize)) + 2 * scaled(kPadding) + 2;
    const int nDistance = scaled(kDistance);
    return {area.right - nDistance - nWidth, area.bottom - nDistance - nHeight, area.right - nDistance,
            area.bottom - nDistance};
}

void paint(HWND hWnd) {
    const common::PaintDc paint(hWnd);
    RECT rect{};
    ::GetClientRect(hWnd, &rect);
    ::FillRect(paint.get(), &rect, ::GetSysColorBrush(COLOR_INFOBK));
    const int nPadding = scaled(kPadding);
    ::DrawIconEx(paint.get(), nPadding, nPadding, ::LoadIconW(nullptr, IDI_WARNING), scaled(kIconSize),
                 scaled(kIconSize), 0, nullptr, DI_NORMAL);
    const common::UniqueFont font = messageFont();
    const common::SelectScope withFont(paint.get(), font ? font.get() : ::GetStockObject(SYSTEM_FONT));
    ::SetBkMode(paint.get(), TRANSPARENT);
    ::SetTextColor(paint.get(), ::GetSysColor(COLOR_INFOTEXT));
    RECT text{2 * nPadding + scaled(kIconSize), nPadding, rect.right - nPadding, rect.bottom - nPadding};
    ::DrawTextW(paint.get(), titleOf(hWnd).c_str(), -1, &text, kTextFormat);
}

}  // namespace

CFaultNotice::CFaultNotice(const std::wstring& strText) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &CFaultNotice::_wndProc;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kNoticeClass;
    ::RegisterClassW(&windowClass);  // an existing class serves as well
    const RECT place = placeOf(strText);
    m_hWnd = ::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kNoticeClass, strText.c_str(),
                               WS_POPUP | WS_BORDER, place.left, place.top, place.right - place.left,
                               place.bottom - place.top, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (m_hWnd != nullptr) {
        ::ShowWindow(m_hWnd, SW_SHOWNOACTIVATE);
        ::UpdateWindow(m_hWnd);
    }
}

CFaultNotice::~CFaultNotice() {
    if (m_hWnd != nullptr && ::IsWindow(m_hWnd) != FALSE) {
        ::DestroyWindow(m_hWnd);
    }
}

DWORD CFaultNotice::wait(std::initializer_list<HANDLE> events, DWORD dwMilliseconds) const {
    const auto count = static_cast<DWORD>(events.size());
    const ULONGLONG ullEnd = ::GetTickCount64() + dwMilliseconds;
    for (;;) {
        const ULONGLONG ullNow = ::GetTickCount64();
        const DWORD dwLeft =
            dwMilliseconds == INFINITE ? INFINITE : static_cast<DWORD>(ullEnd > ullNow ? ullEnd - ullNow : 0);
        const DWORD dwReason = ::MsgWaitForMultipleObjects(count, events.begin(), FALSE, dwLeft, QS_ALLINPUT);
        if (dwReason != WAIT_OBJECT_0 + count) {
            return dwReason < WAIT_OBJECT_0 + count ? dwReason - WAIT_OBJECT_0 : count;
        }
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            ::DispatchMessageW(&message);
        }
    }
}

LRESULT CALLBACK CFaultNotice::_wndProc(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept {
    switch (uMessage) {
        case WM_PAINT:
            try {
                paint(hWnd);
            } catch (...) {
                ::ValidateRect(hWnd, nullptr);  // without memory it stays empty
            }
            return 0;
        case WM_LBUTTONUP:
            ::DestroyWindow(hWnd);
            return 0;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        default:
            return common::startsSystemLoop(uMessage, wParam) ? 0 : ::DefWindowProcW(hWnd, uMessage, wParam, lParam);
    }
}
