// Owners for the system's raw handles. Each owner closes what it holds exactly once; all are movable, none is copyable,
// and none may be shared between threads without the caller's own lock.
#pragma once

#include <windows.h>

#include <utility>

namespace common {

// Traits supplies `using type`, `static type none()` (the "holds nothing" value) and `static void close(type)`.
template <typename Traits>
class UniqueAny {
 public:
    using type = typename Traits::type;

    UniqueAny() noexcept = default;
    explicit UniqueAny(type value) noexcept : m_value(value) {}
    UniqueAny(UniqueAny&& other) noexcept : m_value(other.release()) {}
    UniqueAny& operator=(UniqueAny&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    UniqueAny(const UniqueAny&) = delete;
    UniqueAny& operator=(const UniqueAny&) = delete;
    ~UniqueAny() { reset(); }

    [[nodiscard]] type get() const noexcept { return m_value; }
    [[nodiscard]] explicit operator bool() const noexcept { return m_value != Traits::none(); }

    // Releases the handle without closing it.
    [[nodiscard]] type release() noexcept { return std::exchange(m_value, Traits::none()); }

    void reset(type value = Traits::none()) noexcept {
        const type old = std::exchange(m_value, value);
        if (old != Traits::none()) {
            Traits::close(old);
        }
    }

    // For calls that write a handle through a pointer; closes the previous one.
    [[nodiscard]] type* put() noexcept {
        reset();
        return &m_value;
    }

 private:
    type m_value = Traits::none();
};

template <typename Handle>
struct NullIsNone {
    using type = Handle;
    static type none() noexcept { return nullptr; }
};

struct ModuleTraits : NullIsNone<HMODULE> {
    static void close(type value) noexcept { ::FreeLibrary(value); }
};
struct KernelHandleTraits : NullIsNone<HANDLE> {
    static void close(type value) noexcept { ::CloseHandle(value); }
};
// For CreateFile, whose failure value is not null.
struct FileHandleTraits {
    using type = HANDLE;
    static type none() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(type value) noexcept { ::CloseHandle(value); }
};
struct RegKeyTraits : NullIsNone<HKEY> {
    static void close(type value) noexcept { ::RegCloseKey(value); }
};
struct WindowTraits : NullIsNone<HWND> {
    static void close(type value) noexcept { ::DestroyWindow(value); }
};
struct HookTraits : NullIsNone<HHOOK> {
    static void close(type value) noexcept { ::UnhookWindowsHookEx(value); }
};
struct BrushTraits : NullIsNone<HBRUSH> {
    static void close(type value) noexcept { ::DeleteObject(value); }
};
struct PenTraits : NullIsNone<HPEN> {
    static void close(type value) noexcept { ::DeleteObject(value); }
};
struct BitmapTraits : NullIsNone<HBITMAP> {
    static void close(type value) noexcept { ::DeleteObject(value); }
};
struct FontTraits : NullIsNone<HFONT> {
    static void close(type value) noexcept { ::DeleteObject(value); }
};
struct MemoryDcTraits : NullIsNone<HDC> {
    static void close(type value) noexcept { ::DeleteDC(value); }
};

using UniqueModule = UniqueAny<ModuleTraits>;
using UniqueHandle = UniqueAny<KernelHandleTraits>;  // events, mutexes, threads, processes
using UniqueFile = UniqueAny<FileHandleTraits>;
using UniqueRegKey = UniqueAny<RegKeyTraits>;
using UniqueWindow = UniqueAny<WindowTraits>;
using UniqueHook = UniqueAny<HookTraits>;
using UniqueBrush = UniqueAny<BrushTraits>;
using UniquePen = UniqueAny<PenTraits>;
using UniqueBitmap = UniqueAny<BitmapTraits>;
using UniqueFont = UniqueAny<FontTraits>;
using UniqueMemoryDc = UniqueAny<MemoryDcTraits>;

// GetDC/ReleaseDC as a scope. A null window means the screen.
class WindowDc {
 public:
    explicit WindowDc(HWND window) noexcept : m_hWnd(window), m_hDc(::GetDC(window)) {}
    ~WindowDc() {
        if (m_hDc != nullptr) {
            ::ReleaseDC(m_hWnd, m_hDc);
        }
    }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;

    [[nodiscard]] HDC get() const noexcept { return m_hDc; }

 private:
    HWND m_hWnd;
    HDC m_hDc;
};

// BeginPaint/EndPaint as a scope.
class PaintDc {
 public:
    explicit PaintDc(HWND window) noexcept : m_hWnd(window), m_hDc(::BeginPaint(window, &m_paint)) {}
    ~PaintDc() { ::EndPaint(m_hWnd, &m_paint); }
    PaintDc(const PaintDc&) = delete;
    PaintDc& operator=(const PaintDc&) = delete;

    [[nodiscard]] HDC get() const noexcept { return m_hDc; }

 private:
    HWND m_hWnd;
    PAINTSTRUCT m_paint{};
    HDC m_hDc;
};

// Selects an object into a device context and restores the previous one at the end of the scope.
class SelectScope {
 public:
    SelectScope(HDC dc, HGDIOBJ object) noexcept : m_hDc(dc), m_hPrevious(::SelectObject(dc, object)) {}
    ~SelectScope() {
        if (m_hPrevious != nullptr) {
            ::SelectObject(m_hDc, m_hPrevious);
        }
    }
    SelectScope(const SelectScope&) = delete;
    SelectScope& operator=(const SelectScope&) = delete;

 private:
    HDC m_hDc;
    HGDIOBJ m_hPrevious;
};

}  // namespace common
