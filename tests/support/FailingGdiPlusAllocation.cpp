// GDI+ objects are allocated by GDI+ itself: the linker uses these functions instead of the system's.
#include "common/GdiPlus.h"
#include "support/FailingAllocation.h"

namespace {

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"gdiplus.dll"), name)));
}

}  // namespace

namespace Gdiplus::DllExports {

extern "C" VOID* WINAPI GdipAlloc(size_t size) {
    static const auto call = real<decltype(&GdipAlloc)>("GdipAlloc");
    return support::allocationFails() ? nullptr : call(size);
}

extern "C" GpStatus WINAPI GdipCreateFromHDC(HDC dc, GpGraphics** graphics) {
    static const auto call = real<decltype(&GdipCreateFromHDC)>("GdipCreateFromHDC");
    return support::allocationFails() ? OutOfMemory : call(dc, graphics);
}

}  // namespace Gdiplus::DllExports
