// The system as a test wants it: screen saver, work area, pointer and timers. What is not said here goes to the real
// system. The doubles take the place of the imports when the test program is linked.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace system_double {

// A frame that a layered window was given, top row first, premultiplied BGRA.
struct Frame {
    SIZE size{};
    std::vector<DWORD> pixels;
    [[nodiscard]] DWORD at(int x, int y) const {
        const bool inside = x >= 0 && y >= 0 && x < size.cx && y < size.cy;
        return inside ? pixels[static_cast<std::size_t>(y * size.cx + x)] : 0xDEADBEEFU;
    }
};

struct State {
    bool screenSaver = false;
    bool workAreaFails = false;
    std::optional<RECT> workArea;  // nothing: the real one
    std::optional<POINT> cursor;   // nothing: the real one
    // The window that the user works in, and the work area of the monitor that it is on; none: the real monitors.
    HWND foreground = nullptr;
    std::optional<RECT> monitorOfForeground;
    bool monitorFails = false;
    bool keepFrames = false;
    std::map<HWND, Frame> frames;  // the last one of each owner of a layered window

    // As asked for; timers run in the real system too.
    std::map<std::pair<HWND, UINT_PTR>, UINT> timers;
    std::vector<std::vector<INPUT>> inputs;  // not given to the system
    std::vector<EXECUTION_STATE> executionStates;
    std::vector<TRACKMOUSEEVENT> tracked;  // not given to the system: the test sends what it wants to arrive

    // What the test watches (windows, modules, handles) by the names it gives them, and the names in the order in which
    // their owners let go of them.
    std::map<const void*, const wchar_t*> watched;
    std::vector<std::wstring> released;
};

// One for the process; only the user-interface thread of a test looks at it while other threads may write.
[[nodiscard]] State& state();
inline void reset() {
    state() = State();
}

// How often GDI+ is started and not shut down again.
[[nodiscard]] int gdiplusSessions();

// The period of a running timer; 0: there is none.
[[nodiscard]] inline UINT timer(HWND window, UINT_PTR id) {
    const auto found = state().timers.find({window, id});
    return found == state().timers.end() ? 0 : found->second;
}

}  // namespace system_double
