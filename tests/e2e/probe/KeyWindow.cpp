// A window of another program: it takes the focus and records the messages that a test may query.
#include <windows.h>

#include <map>

#include "Commands.h"
#include "Json.h"

namespace probe {

namespace {

using Received = std::vector<std::string>;

// Only used by the thread that owns the windows.
std::map<HWND, Received>& records() {
    static std::map<HWND, Received> all;
    return all;
}

bool isOfInterest(UINT message) {
    constexpr UINT kFirstRegistered = 0xC000;
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) || (message >= WM_USER && message < WM_APP) ||
           message == WM_SETFOCUS || message == WM_KILLFOCUS || message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN ||
           (message >= kFirstRegistered && message <= 0xFFFF);
}

LRESULT CALLBACK keyWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (isOfInterest(message)) {
        records()[window].push_back(
            array({number(message), number(static_cast<LONG_PTR>(wParam)), number(static_cast<LONG_PTR>(lParam))}));
    }
    if (message == WM_NCDESTROY) {
        records().erase(window);
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

std::string makeWindow(const Arguments& arguments) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = keyWindowProc;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = arguments[0].c_str();
    ::RegisterClassW(&windowClass);  // fails when it is registered already, which does not matter
    const HWND window =
        ::CreateWindowExW(0, arguments[0].c_str(), arguments[1].c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                          static_cast<int>(toNumber(arguments[2])), static_cast<int>(toNumber(arguments[3])),
                          static_cast<int>(toNumber(arguments[4])), static_cast<int>(toNumber(arguments[5])), nullptr,
                          nullptr, windowClass.hInstance, nullptr);
    return window == nullptr ? error(L"the window could not be made") : number(reinterpret_cast<LONG_PTR>(window));
}

std::string receivedMessages(const Arguments& arguments) {
    const HWND window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(toNumber(arguments[0])));
    const auto found = records().find(window);
    if (found == records().end()) {
        return array({});
    }
    const Received since = std::move(found->second);
    found->second.clear();
    return array(since);
}

// The system drops a slow hook without telling its owner. Hooks and windows have their numbers from one table, and
// Wine accepts a number without its generation.
std::string takeHooks(const Arguments& /*arguments*/) {
    constexpr ULONG_PTR kFirst = 0x20;
    constexpr ULONG_PTR kLast = 0x4000;
    int nTaken = 0;
    for (ULONG_PTR handle = kFirst; handle < kLast; handle += 2) {
        nTaken += ::UnhookWindowsHookEx(reinterpret_cast<HHOOK>(handle)) ? 1 : 0;
    }
    return number(nTaken);
}

}  // namespace probe
