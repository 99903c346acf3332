// The system as a test configures it: screen saver, work area, pointer and timers. Everything else goes to the real
// system. The doubles replace the imports when the test program is linked.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace system_double {

// A frame passed to a layered window, top row first, premultiplied BGRA.
struct Frame {
    SIZE size{};
    std::vector<DWORD> pixels;
    [[nodiscard]] DWORD at(int x, int y) const {
        const bool inside = x >= 0 && y >= 0 && x < size.cx && y < size.cy;
        return inside ? pixels[static_cast<std::size_t>(y * size.cx + x)] : 0xDEADBEEFU;
    }
};

struct State {
    QUERY_USER_NOTIFICATION_STATE notificationState = QUNS_ACCEPTS_NOTIFICATIONS;
    bool notificationStateFails = false;
    bool screenSaver = false;
    bool workAreaFails = false;
    std::optional<RECT> workArea;  // nothing: the real one
    std::optional<POINT> cursor;   // nothing: the real one
    // The window that the user works in, and the work area of its monitor; none: the real monitors.
    HWND foreground = nullptr;
    std::optional<RECT> monitorOfForeground;
    bool monitorFails = false;
    double scaleOfForeground = 1.0;  // of that monitor
    double scaleOfOthers = 1.0;
    bool keepFrames = false;
    std::map<HWND, Frame> frames;  // the last one of each owner of a layered window

    // As requested; timers also run in the real system.
    std::map<std::pair<HWND, UINT_PTR>, UINT> timers;
    std::vector<std::vector<INPUT>> inputs;  // not given to the system
    std::vector<EXECUTION_STATE> executionStates;
    std::vector<TRACKMOUSEEVENT> tracked;  // not passed to the system: the test sends the input that is to arrive

    // The watched objects (windows, modules, handles) by the test's names, and the names in the order in which their
    // owners released them.
    std::map<const void*, const wchar_t*> watched;
    std::vector<std::wstring> released;
};

// One for the process; only the user-interface thread of a test reads it while other threads may write.
[[nodiscard]] State& state();
inline void reset() {
    state() = State();
}

// How often GDI+ was started and not shut down.
[[nodiscard]] int gdiplusSessions();

// The period of a running timer; 0: there is none.
[[nodiscard]] inline UINT timer(HWND window, UINT_PTR id) {
    const auto found = state().timers.find({window, id});
    return found == state().timers.end() ? 0 : found->second;
}

}  // namespace system_double
