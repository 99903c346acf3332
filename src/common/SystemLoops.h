// Messages that windows without a frame keep from the system's own procedure.
#pragma once

#include <windows.h>

#include <iterator>
#include <string_view>

namespace common {

// Whether a WM_SYSCOMMAND requests a service of the system (screen saver, power of the display) rather than an action
// on the window.
[[nodiscard]] constexpr bool isForTheSystem(WPARAM wCommand) noexcept {
    const WPARAM command = wCommand & 0xFFF0U;  // the system uses the lowest four bits itself
    return command == SC_SCREENSAVE || command == SC_MONITORPOWER;
}

// Whether the system answers the message with a message loop of its own: it moves or sizes the window, follows a
// pressed button of its frame, or shows its system menu. The loop lasts until the user releases a mouse button or
// leaves the menu. If another program has sent the message, no button is down and nobody sees a menu, and the thread
// would do nothing else from then on. A window without a frame loses nothing by ignoring it.
[[nodiscard]] constexpr bool startsSystemLoop(UINT nMessage, WPARAM wParam) noexcept {
    constexpr UINT kPopUpSystemMenu = 0x313;  // sent by the task bar
    switch (nMessage) {
        case WM_NCLBUTTONDOWN:
        case WM_NCLBUTTONDBLCLK:
        case WM_NCRBUTTONDOWN:
        case WM_NCRBUTTONUP:
        case WM_CONTEXTMENU:
        case kPopUpSystemMenu:
            return true;
        case WM_SYSCOMMAND:
            return !isForTheSystem(wParam);
        default:
            return false;
    }
}

// The same for a message in a thread's queue for its input method's window, which the system makes for every thread
// that has windows. It never has the keyboard, and some systems answer its keys with a menu.
[[nodiscard]] inline bool startsLoopOfInputMethod(const MSG& message) noexcept {
    wchar_t name[8] = L"";
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    return (isKey || startsSystemLoop(message.message, message.wParam)) &&
           ::GetClassNameW(message.hwnd, name, static_cast<int>(std::size(name))) != 0 &&
           std::wstring_view(name) == L"IME";
}

}  // namespace common
