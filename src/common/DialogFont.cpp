#include "common/DialogFont.h"

#include <cwchar>
#include <string_view>

#include "common/Handle.h"

namespace common {
namespace {

constexpr std::wstring_view kAlphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

struct Scale {
    SIZE from;
    SIZE to;

    [[nodiscard]] int x(LONG length) const { return ::MulDiv(length, to.cx, from.cx); }
    [[nodiscard]] int y(LONG length) const { return ::MulDiv(length, to.cy, from.cy); }
};

// The whole height of a control, for a drop-down list the one with its list.
LONG heightOf(HWND control, const RECT& place) {
    wchar_t kind[16] = L"";
    ::GetClassNameW(control, kind, 16);
    RECT dropped{};
    const bool drops = ::_wcsicmp(kind, L"ComboBox") == 0 &&
                       ::SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped)) != 0;
    return drops ? dropped.bottom - dropped.top : place.bottom - place.top;
}

void resizeControls(HWND dialog, HFONT font, const Scale& scale) {
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        RECT place{};
        ::GetWindowRect(control, &place);
        ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
        const LONG height = heightOf(control, place);
        ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        ::SetWindowPos(control, nullptr, scale.x(place.left), scale.y(place.top), scale.x(place.right - place.left),
                       scale.y(height), SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void resizeWindow(HWND dialog, const Scale& scale) {
    RECT client{};
    RECT area{};
    ::GetClientRect(dialog, &client);
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    RECT frame{0, 0, scale.x(client.right), scale.y(client.bottom)};
    const auto style = static_cast<DWORD>(::GetWindowLongPtrW(dialog, GWL_STYLE));
    ::AdjustWindowRectEx(&frame, style, FALSE, static_cast<DWORD>(::GetWindowLongPtrW(dialog, GWL_EXSTYLE)));
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    ::SetWindowPos(dialog, nullptr, (area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2, width,
                   height, SWP_NOZORDER | SWP_NOACTIVATE | ((style & WS_CHILD) != 0 ? SWP_NOMOVE : 0));
}

void resizeDialog(HWND dialog, HFONT font, const Scale& scale) {
    if (scale.from.cx == 0 || scale.from.cy == 0 || scale.to.cx == 0 || scale.to.cy == 0) {
        return;
    }
    resizeControls(dialog, font, scale);
    resizeWindow(dialog, scale);
}

// A function of newer systems, which scale each screen by itself.
template <typename Function>
Function newFunction(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), name)));
}

UINT systemDpi() {
    const WindowDc screen(nullptr);
    return static_cast<UINT>(::GetDeviceCaps(screen.get(), LOGPIXELSY));
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

LOGFONTW messageFont(UINT dpi) {
    using ForDpi = BOOL(WINAPI*)(UINT, UINT, void*, UINT, UINT);
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (const auto ask = newFunction<ForDpi>("SystemParametersInfoForDpi");
        ask != nullptr && ask(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi) != FALSE) {
        return metrics.lfMessageFont;
    }
    LOGFONTW font = messageFont();
    font.lfHeight = ::MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(systemDpi()));
    return font;
}

UINT dpiOf(HWND window) {
    using ForWindow = UINT(WINAPI*)(HWND);
    const auto ask = newFunction<ForWindow>("GetDpiForWindow");
    const UINT dpi = ask != nullptr ? ask(window) : 0;
    return dpi != 0 ? dpi : systemDpi();
}

SIZE dialogUnitsOf(HFONT font) {
    const WindowDc screen(nullptr);
    const SelectScope select(screen.get(), font);
    TEXTMETRICW metrics{};
    SIZE extent{};
    ::GetTextMetricsW(screen.get(), &metrics);
    ::GetTextExtentPoint32W(screen.get(), kAlphabet.data(), static_cast<int>(kAlphabet.size()), &extent);
    return {(extent.cx / 26 + 1) / 2, metrics.tmHeight};
}

void setDialogFont(HWND dialog, HFONT font) {
    RECT units{0, 0, 4, 8};
    ::MapDialogRect(dialog, &units);
    resizeDialog(dialog, font, {{units.right, units.bottom}, dialogUnitsOf(font)});
}

void changeDialogFont(HWND dialog, HFONT from, HFONT to) {
    resizeDialog(dialog, to, {dialogUnitsOf(from), dialogUnitsOf(to)});
}

void leaveScalingToDialog(HWND dialog) {
    using SetBehaviour = BOOL(WINAPI*)(HWND, int, int);
    constexpr int kNothingByItself = 1;
    if (const auto set = newFunction<SetBehaviour>("SetDialogDpiChangeBehavior"); set != nullptr) {
        set(dialog, kNothingByItself, kNothingByItself);
    }
}

}  // namespace common
