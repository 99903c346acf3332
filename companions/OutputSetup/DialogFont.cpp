#include "DialogFont.h"

#include <string_view>

#include "common/Handle.h"

namespace setup {
namespace {

constexpr std::wstring_view kAlphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// The pixels of four horizontal and eight vertical dialog units, as the system counts them.
SIZE unitsOf(HFONT font) {
    const common::WindowDc screen(nullptr);
    const common::SelectScope select(screen.get(), font);
    TEXTMETRICW metrics{};
    SIZE extent{};
    ::GetTextMetricsW(screen.get(), &metrics);
    ::GetTextExtentPoint32W(screen.get(), kAlphabet.data(), static_cast<int>(kAlphabet.size()), &extent);
    return {(extent.cx / 26 + 1) / 2, metrics.tmHeight};
}

struct Scale {
    SIZE from;
    SIZE to;

    [[nodiscard]] int x(LONG length) const { return ::MulDiv(length, to.cx, from.cx); }
    [[nodiscard]] int y(LONG length) const { return ::MulDiv(length, to.cy, from.cy); }
};

void resizeControls(HWND dialog, HFONT font, const Scale& scale) {
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        RECT place{};
        ::GetWindowRect(control, &place);
        ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
        ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        ::SetWindowPos(control, nullptr, scale.x(place.left), scale.y(place.top), scale.x(place.right - place.left),
                       scale.y(place.bottom - place.top), SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void resizeWindow(HWND dialog, const Scale& scale) {
    RECT client{};
    RECT area{};
    ::GetClientRect(dialog, &client);
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    RECT frame{0, 0, scale.x(client.right), scale.y(client.bottom)};
    ::AdjustWindowRectEx(&frame, static_cast<DWORD>(::GetWindowLongPtrW(dialog, GWL_STYLE)), FALSE,
                         static_cast<DWORD>(::GetWindowLongPtrW(dialog, GWL_EXSTYLE)));
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    ::SetWindowPos(dialog, nullptr, (area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2, width,
                   height, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

LOGFONTW messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0) == FALSE) {
        ::GetObjectW(::GetStockObject(DEFAULT_GUI_FONT), sizeof metrics.lfMessageFont, &metrics.lfMessageFont);
    }
    return metrics.lfMessageFont;
}

void setDialogFont(HWND dialog, HFONT font) {
    RECT units{0, 0, 4, 8};
    ::MapDialogRect(dialog, &units);
    const Scale scale{{units.right, units.bottom}, unitsOf(font)};
    if (units.right == 0 || units.bottom == 0 || scale.to.cx == 0 || scale.to.cy == 0) {
        return;
    }
    resizeControls(dialog, font, scale);
    resizeWindow(dialog, scale);
}

}  // namespace setup
