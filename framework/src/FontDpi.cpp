#include "FontDpi.h"

namespace framework {

namespace {

// As declared by newer headers; Windows 7 has none of them.
using Context = HANDLE;
using ContextOf = Context(WINAPI*)(HWND window);
using AreEqual = BOOL(WINAPI*)(Context first, Context second);
using DpiOf = UINT(WINAPI*)(HWND window);

// "Per monitor, version 2": the only kind of process whose dialogs the system scales for each screen.
Context scaledForEachScreen() {
    constexpr LONG_PTR kPerMonitorV2 = -4;
    return reinterpret_cast<Context>(kPerMonitorV2);
}

template <typename Function>
Function find(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), name)));
}

}  // namespace

int systemDpi() {
    static const int dpi = [] {
        const HDC screen = ::GetDC(nullptr);
        if (screen == nullptr) {
            return USER_DEFAULT_SCREEN_DPI;
        }
        const int found = ::GetDeviceCaps(screen, LOGPIXELSY);
        ::ReleaseDC(nullptr, screen);
        return found;
    }();
    return dpi;
}

int newFontDpi(HWND dialog) {
    static const auto contextOf = find<ContextOf>("GetWindowDpiAwarenessContext");
    static const auto areEqual = find<AreEqual>("AreDpiAwarenessContextsEqual");
    static const auto dpiOf = find<DpiOf>("GetDpiForWindow");
    if (contextOf == nullptr || areEqual == nullptr || dpiOf == nullptr ||
        areEqual(contextOf(dialog), scaledForEachScreen()) == FALSE) {
        return systemDpi();
    }
    const UINT dpi = dpiOf(dialog);
    return dpi == 0 ? systemDpi() : static_cast<int>(dpi);
}

}  // namespace framework
