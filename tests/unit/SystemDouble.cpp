#include "SystemDouble.h"

#include "common/GdiPlus.h"
#include "support/FailingAllocation.h"

namespace system_double {

State& state() {
    static State& only = *new State;  // windows may be queried after the end of main
    return only;
}

namespace {

template <typename Function>
Function real(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(library), name)));
}

BOOL WINAPI systemParameters(UINT action, UINT parameter, void* value, UINT flags) {
    static const auto call = real<BOOL(WINAPI*)(UINT, UINT, void*, UINT)>(L"user32.dll", "SystemParametersInfoW");
    if (action == SPI_GETSCREENSAVERRUNNING) {
        *static_cast<BOOL*>(value) = state().screenSaver ? TRUE : FALSE;
        return TRUE;
    }
    if (action == SPI_GETWORKAREA && state().workAreaFails) {
        return FALSE;
    }
    if (action == SPI_GETWORKAREA && state().workArea) {
        *static_cast<RECT*>(value) = *state().workArea;
        return TRUE;
    }
    return call(action, parameter, value, flags);
}

HRESULT WINAPI notificationState(QUERY_USER_NOTIFICATION_STATE* out) {
    *out = state().notificationState;
    return state().notificationStateFails ? E_FAIL : S_OK;
}

UINT WINAPI sendInput(UINT count, INPUT* inputs, int /*size*/) {
    const support::AllocationsSucceed mine;
    state().inputs.emplace_back(inputs, inputs + count);
    return count;
}

EXECUTION_STATE WINAPI executionState(EXECUTION_STATE wanted) {
    const support::AllocationsSucceed mine;
    state().executionStates.push_back(wanted);
    return ES_CONTINUOUS;
}

BOOL WINAPI cursorPosition(POINT* point) {
    static const auto call = real<BOOL(WINAPI*)(POINT*)>(L"user32.dll", "GetCursorPos");
    if (!state().cursor) {
        return call(point);
    }
    *point = *state().cursor;
    return TRUE;
}

int g_gdiplusSessions = 0;

void noteRelease(const void* released) {
    // Threads of the tests also close handles, but watch none.
    if (state().watched.empty()) {
        return;
    }
    const support::AllocationsSucceed mine;
    if (const auto found = state().watched.find(released); found != state().watched.end()) {
        state().released.emplace_back(found->second);
    }
}

BOOL WINAPI destroyWindow(HWND window) {
    static const auto call = real<BOOL(WINAPI*)(HWND)>(L"user32.dll", "DestroyWindow");
    noteRelease(window);
    return call(window);
}

BOOL WINAPI freeLibrary(HMODULE module) {
    static const auto call = real<BOOL(WINAPI*)(HMODULE)>(L"kernel32.dll", "FreeLibrary");
    noteRelease(module);
    return call(module);
}

BOOL WINAPI closeHandle(HANDLE handle) {
    static const auto call = real<BOOL(WINAPI*)(HANDLE)>(L"kernel32.dll", "CloseHandle");
    noteRelease(handle);
    return call(handle);
}

HWND WINAPI foregroundWindow() {
    static const auto call = real<HWND(WINAPI*)()>(L"user32.dll", "GetForegroundWindow");
    return state().monitorOfForeground ? state().foreground : call();
}

HMONITOR WINAPI monitorFromWindow(HWND window, DWORD flags) {
    static const auto call = real<HMONITOR(WINAPI*)(HWND, DWORD)>(L"user32.dll", "MonitorFromWindow");
    if (!state().monitorOfForeground || window != state().foreground) {
        return call(window, flags);
    }
    return reinterpret_cast<HMONITOR>(&state().monitorOfForeground);
}

BOOL WINAPI monitorInfo(HMONITOR monitor, MONITORINFO* info) {
    static const auto call = real<BOOL(WINAPI*)(HMONITOR, MONITORINFO*)>(L"user32.dll", "GetMonitorInfoW");
    if (monitor != reinterpret_cast<HMONITOR>(&state().monitorOfForeground)) {
        return call(monitor, info);
    }
    info->rcWork = *state().monitorOfForeground;
    return state().monitorFails ? FALSE : TRUE;
}

BOOL WINAPI trackMouse(TRACKMOUSEEVENT* event) {
    const support::AllocationsSucceed mine;
    state().tracked.push_back(*event);
    return TRUE;
}

UINT_PTR WINAPI setTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
    static const auto call = real<UINT_PTR(WINAPI*)(HWND, UINT_PTR, UINT, TIMERPROC)>(L"user32.dll", "SetTimer");
    {
        const support::AllocationsSucceed mine;
        state().timers[{window, id}] = period;
    }
    return call(window, id, period, procedure);
}

BOOL WINAPI killTimer(HWND window, UINT_PTR id) {
    static const auto call = real<BOOL(WINAPI*)(HWND, UINT_PTR)>(L"user32.dll", "KillTimer");
    state().timers.erase({window, id});
    return call(window, id);
}

void keepFrame(HWND window, HDC source) {
    const support::AllocationsSucceed mine;
    DIBSECTION section{};
    ::GetObjectW(::GetCurrentObject(source, OBJ_BITMAP), sizeof(section), &section);
    Frame frame;
    frame.size = {section.dsBm.bmWidth, section.dsBm.bmHeight};
    const auto* const bits = static_cast<const DWORD*>(section.dsBm.bmBits);
    for (LONG row = frame.size.cy - 1; row >= 0; --row) {  // the lowest row comes first in memory
        frame.pixels.insert(frame.pixels.end(), bits + row * frame.size.cx, bits + (row + 1) * frame.size.cx);
    }
    state().frames[::GetWindow(window, GW_OWNER)] = std::move(frame);
}

BOOL WINAPI updateLayered(HWND window, HDC screen, POINT* target, SIZE* size, HDC source, POINT* from, COLORREF key,
                          BLENDFUNCTION* blend, DWORD flags) {
    static const auto call = real<decltype(&updateLayered)>(L"user32.dll", "UpdateLayeredWindow");
    if (state().keepFrames && source != nullptr) {
        keepFrame(window, source);
    }
    return call(window, screen, target, size, source, from, key, blend, flags);
}

}  // namespace

int gdiplusSessions() {
    return g_gdiplusSessions;
}

double scaleOf(HMONITOR monitor) asm("__wrap__Z12monitorScaleP10HMONITOR__");
double scaleOf(HMONITOR monitor) {
    return monitor == reinterpret_cast<HMONITOR>(&state().monitorOfForeground) ? state().scaleOfForeground
                                                                               : state().scaleOfOthers;
}

}  // namespace system_double

// The linker prefers these functions to the system's import libraries.
extern "C" {
extern const auto __imp_SystemParametersInfoW = &system_double::systemParameters;
extern const auto __imp_SHQueryUserNotificationState = &system_double::notificationState;
extern const auto __imp_SendInput = &system_double::sendInput;
extern const auto __imp_SetThreadExecutionState = &system_double::executionState;
extern const auto __imp_GetCursorPos = &system_double::cursorPosition;
extern const auto __imp_TrackMouseEvent = &system_double::trackMouse;
extern const auto __imp_SetTimer = &system_double::setTimer;
extern const auto __imp_KillTimer = &system_double::killTimer;
extern const auto __imp_UpdateLayeredWindow = &system_double::updateLayered;
extern const auto __imp_GetForegroundWindow = &system_double::foregroundWindow;
extern const auto __imp_MonitorFromWindow = &system_double::monitorFromWindow;
extern const auto __imp_GetMonitorInfoW = &system_double::monitorInfo;
extern const auto __imp_DestroyWindow = &system_double::destroyWindow;
extern const auto __imp_FreeLibrary = &system_double::freeLibrary;
extern const auto __imp_CloseHandle = &system_double::closeHandle;

// GDI+ is called without the detour over an import pointer: the linker substitutes these (--wrap).
Gdiplus::GpStatus WINAPI __real_GdiplusStartup(ULONG_PTR* token, const Gdiplus::GdiplusStartupInput* input,
                                               Gdiplus::GdiplusStartupOutput* output);
Gdiplus::GpStatus WINAPI __wrap_GdiplusStartup(ULONG_PTR* token, const Gdiplus::GdiplusStartupInput* input,
                                               Gdiplus::GdiplusStartupOutput* output);
void WINAPI __real_GdiplusShutdown(ULONG_PTR token);
void WINAPI __wrap_GdiplusShutdown(ULONG_PTR token);

Gdiplus::GpStatus WINAPI __wrap_GdiplusStartup(ULONG_PTR* token, const Gdiplus::GdiplusStartupInput* input,
                                               Gdiplus::GdiplusStartupOutput* output) {
    const Gdiplus::GpStatus status = __real_GdiplusStartup(token, input, output);
    system_double::g_gdiplusSessions += status == Gdiplus::Ok ? 1 : 0;
    return status;
}

void WINAPI __wrap_GdiplusShutdown(ULONG_PTR token) {
    const support::AllocationsSucceed mine;
    --system_double::g_gdiplusSessions;
    system_double::state().released.emplace_back(L"GDI+");
    __real_GdiplusShutdown(token);
}
}
