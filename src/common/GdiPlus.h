// The includes of GDI+ in the order that its headers need, and the owner of its start-up.
#pragma once

#include <windows.h>

#include <algorithm>

#include <objidl.h>
#include <propidl.h>

// NOMINMAX removes the macros that the header's inline functions call.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>

#include <memory>
#include <new>
#include <utility>

// GDI+ is usable between start() and stop() (or the object's end). Every GDI+ object must be destroyed before that.
class GdiplusSession {
 public:
    GdiplusSession() noexcept = default;
    ~GdiplusSession() { stop(); }
    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;

    // S_FALSE if it is started already; E_FAIL if GDI+ refuses.
    [[nodiscard]] HRESULT start() noexcept;
    void stop() noexcept;

 private:
    ULONG_PTR m_token = 0;
};

// A GDI+ object in memory of GDI+; null if there is none.
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

// The device context of a graphics, released at the end of the scope; the graphics cannot draw until then.
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
