// GDI+ as every source of the program includes it, in the order its headers need, and the owner of its start-up.
#pragma once

#include <windows.h>

#include <algorithm>

#include <objidl.h>
#include <propidl.h>

// NOMINMAX takes the macros away that the header's inline functions call.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>

#include <memory>
#include <new>
#include <utility>

// GDI+ is usable between start() and stop() (or the object's end). Every GDI+ object has to be gone before that.
class GdiplusSession {
 public:
    GdiplusSession() noexcept = default;
    ~GdiplusSession() { stop(); }
    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;

    // S_FALSE when it is started already; E_FAIL when GDI+ refuses.
    [[nodiscard]] HRESULT start() noexcept;
    void stop() noexcept;

 private:
    ULONG_PTR m_token = 0;
};

// A GDI+ object in the memory of GDI+, which answers null when it has none. Null then.
template <typename Type, typename... Arguments>
[[nodiscard]] std::unique_ptr<Type> tryMakeGdiPlus(Arguments&&... arguments) {
    void* const place = Gdiplus::DllExports::GdipAlloc(sizeof(Type));
    if (place == nullptr) {
        return nullptr;
    }
    try {
        return std::unique_ptr<Type>(::new (place) Type(std::forward<Arguments>(arguments)...));
    } catch (...) {
        Gdiplus::DllExports::GdipFree(place);
        throw;
    }
}

// The device context of a graphics, handed back at the end of the scope; the graphics cannot draw until then.
class GraphicsDc {
 public:
    explicit GraphicsDc(Gdiplus::Graphics& graphics) noexcept : m_graphics(graphics), m_hDc(graphics.GetHDC()) {}
    ~GraphicsDc() {
        if (m_hDc != nullptr) {
            m_graphics.ReleaseHDC(m_hDc);
        }
    }
    GraphicsDc(const GraphicsDc&) = delete;
    GraphicsDc& operator=(const GraphicsDc&) = delete;

    [[nodiscard]] HDC get() const noexcept { return m_hDc; }

 private:
    Gdiplus::Graphics& m_graphics;
    HDC m_hDc;
};
