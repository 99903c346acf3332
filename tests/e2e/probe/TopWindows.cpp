// The windows on the desktop, their controls, and messages to them.
#include <windows.h>

#include "Commands.h"
#include "Json.h"
#include "common/Handle.h"

namespace probe {

namespace {

constexpr UINT kPatience = 10000;  // ms that a sent message may take

HWND toWindow(const std::wstring& text) {
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(toNumber(text)));
}

std::string ofWindow(HWND window) {
    return number(reinterpret_cast<LONG_PTR>(window));
}

std::string ofRect(const RECT& rect) {
    return array({number(rect.left), number(rect.top), number(rect.right), number(rect.bottom)});
}

std::string describe(HWND window) {
    wchar_t className[256] = L"";
    wchar_t title[256] = L"";
    RECT rect{};
    DWORD process = 0;
    ::GetClassNameW(window, className, static_cast<int>(std::size(className)));
    // Not GetWindowText, which would wait for a program that hangs.
    ::InternalGetWindowText(window, title, static_cast<int>(std::size(title)));
    ::GetWindowRect(window, &rect);
    const DWORD thread = ::GetWindowThreadProcessId(window, &process);
    return object({{"hwnd", ofWindow(window)},
                   {"pid", number(process)},
                   {"tid", number(thread)},
                   {"class", quoted(className)},
                   {"title", quoted(title)},
                   {"rect", ofRect(rect)},
                   {"visible", boolean(::IsWindowVisible(window) != FALSE)},
                   {"style", number(static_cast<DWORD>(::GetWindowLongW(window, GWL_STYLE)))},
                   {"exstyle", number(static_cast<DWORD>(::GetWindowLongW(window, GWL_EXSTYLE)))},
                   {"id", number(::GetDlgCtrlID(window))},
                   {"owner", ofWindow(::GetWindow(window, GW_OWNER))}});
}

BOOL CALLBACK collect(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<std::string>*>(list)->push_back(describe(window));
    return TRUE;
}

}  // namespace

std::string listWindows(const Arguments&) {
    std::vector<std::string> found;
    ::EnumWindows(collect, reinterpret_cast<LPARAM>(&found));
    return array(found);
}

// With the controls of its child windows.
std::string listControls(const Arguments& arguments) {
    std::vector<std::string> found;
    ::EnumChildWindows(toWindow(arguments[0]), collect, reinterpret_cast<LPARAM>(&found));
    return array(found);
}

std::string foreground(const Arguments&) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(0, &info);
    return object({{"window", ofWindow(::GetForegroundWindow())}, {"focus", ofWindow(info.hwndFocus)}});
}

std::string textField(const Arguments& arguments) {
    const HWND field = ::FindWindowExW(toWindow(arguments[0]), nullptr, L"Edit", nullptr);
    wchar_t text[1024] = L"";
    DWORD_PTR length = 0;
    const LRESULT done = ::SendMessageTimeoutW(field, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text),
                                               SMTO_NORMAL, kPatience, &length);
    return done == 0 ? error(L"there is no text field that answers") : quoted(text);
}

std::string workArea(const Arguments&) {
    RECT area{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const common::WindowDc screen(nullptr);
    return object({{"rect", ofRect(area)}, {"dpi", number(::GetDeviceCaps(screen.get(), LOGPIXELSX))}});
}

std::string sendOrPost(const Arguments& arguments) {
    const HWND window = toWindow(arguments[1]);
    const UINT message = static_cast<UINT>(toNumber(arguments[2]));
    const WPARAM wParam = static_cast<WPARAM>(toNumber(arguments[3]));
    const LPARAM lParam = static_cast<LPARAM>(toNumber(arguments[4]));
    if (arguments[0] == L"post") {
        return number(::PostMessageW(window, message, wParam, lParam));
    }
    DWORD_PTR result = 0;
    const LRESULT done = ::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatience, &result);
    return done == 0 ? error(L"the message was not answered") : number(static_cast<LONG_PTR>(result));
}

std::string registerMessage(const Arguments& arguments) {
    return number(::RegisterWindowMessageW(arguments[0].c_str()));
}

std::string focusWindow(const Arguments& arguments) {
    const HWND window = toWindow(arguments[0]);
    return boolean(::SetForegroundWindow(window == nullptr ? ::GetDesktopWindow() : window) != FALSE);
}

std::string destroyWindow(const Arguments& arguments) {
    return boolean(::DestroyWindow(toWindow(arguments[0])) != FALSE);
}

}  // namespace probe
