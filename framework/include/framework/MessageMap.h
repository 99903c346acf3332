// Message maps: a window class lists its messages in one constexpr table of (message, member function), read from top
// to bottom. A handler calls CWnd::Default() if it also wants the default processing.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>
#include <type_traits>

class CWnd;

struct MessageEntry {
    UINT message;     // the message number
    UINT notifyCode;  // for reflected WM_NOTIFY entries: the notification code
    bool reflected;   // the parent passes the notification back to the control that sent it
    LRESULT (*invoke)(CWnd& window, WPARAM wParam, LPARAM lParam);
};

// The entries of one class; a message that none of them names is looked up in the base class's map.
struct MessageMap {
    const MessageMap* base;
    std::span<const MessageEntry> entries;
};

namespace framework {

template <typename Member>
struct MemberClass;
template <typename Class, typename Function>
struct MemberClass<Function Class::*> {
    using type = Class;
};

// Calls the member on the window that the map belongs to; the result of a void handler is 0.
template <auto Member, typename... Arguments>
LRESULT call(CWnd& window, Arguments... arguments) {
    auto& object = static_cast<typename MemberClass<decltype(Member)>::type&>(window);
    if constexpr (std::is_void_v<decltype((object.*Member)(arguments...))>) {
        (object.*Member)(arguments...);
        return 0;
    } else {
        return static_cast<LRESULT>((object.*Member)(arguments...));
    }
}

// Mouse coordinates are signed: a second monitor may be on the left.
inline POINT pointOf(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

constexpr MessageEntry entry(UINT message, LRESULT (*invoke)(CWnd&, WPARAM, LPARAM)) {
    return {message, 0, false, invoke};
}

}  // namespace framework

// LRESULT handler(WPARAM, LPARAM), for any message.
template <auto Member>
constexpr MessageEntry onMessage(UINT message) {
    return framework::entry(message,
                            [](CWnd& window, WPARAM w, LPARAM l) { return framework::call<Member>(window, w, l); });
}

// LRESULT handler(NMHDR*): a notification that the parent passes back to the control that sent it.
template <auto Member>
constexpr MessageEntry onReflectedNotify(UINT code) {
    MessageEntry result = framework::entry(WM_NOTIFY, [](CWnd& window, WPARAM, LPARAM l) {
        return framework::call<Member>(window, reinterpret_cast<NMHDR*>(l));
    });
    result.notifyCode = code;
    result.reflected = true;
    return result;
}

// void handler(), for messages whose parameters do not matter.
template <auto Member>
constexpr MessageEntry onEvent(UINT message) {
    return framework::entry(message, [](CWnd& window, WPARAM, LPARAM) { return framework::call<Member>(window); });
}

// void OnPaint()
template <auto Member>
constexpr MessageEntry onPaint() {
    return onEvent<Member>(WM_PAINT);
}

// void OnMouseLeave()
template <auto Member>
constexpr MessageEntry onMouseLeave() {
    return onEvent<Member>(WM_MOUSELEAVE);
}

// void OnTimer(UINT_PTR id)
template <auto Member>
constexpr MessageEntry onTimer() {
    return framework::entry(WM_TIMER, [](CWnd& window, WPARAM w, LPARAM) {
        return framework::call<Member>(window, static_cast<UINT_PTR>(w));
    });
}

// void OnShowWindow(bool shown)
template <auto Member>
constexpr MessageEntry onShowWindow() {
    return framework::entry(WM_SHOWWINDOW,
                            [](CWnd& window, WPARAM w, LPARAM) { return framework::call<Member>(window, w != 0); });
}

// void OnSize(): the new size is the client rectangle's.
template <auto Member>
constexpr MessageEntry onSize() {
    return onEvent<Member>(WM_SIZE);
}

// void handler(POINT client): WM_MOUSEMOVE, WM_LBUTTONDOWN and similar.
template <auto Member>
constexpr MessageEntry onMouse(UINT message) {
    return framework::entry(
        message, [](CWnd& window, WPARAM, LPARAM l) { return framework::call<Member>(window, framework::pointOf(l)); });
}

// void handler(HWND other): WM_SETFOCUS with the window that had the focus, WM_KILLFOCUS with the one that gets it.
template <auto Member>
constexpr MessageEntry onFocus(UINT message) {
    return framework::entry(message, [](CWnd& window, WPARAM w, LPARAM) {
        return framework::call<Member>(window, reinterpret_cast<HWND>(w));
    });
}
