#include "Logic/MonitorScale.h"

#include "Logic/ZelCommonFunc.h"
#include "common/Handle.h"
#include "common/NeverDestroyed.h"
#include "common/SystemLibrary.h"

namespace {

// As declared by newer headers.
using GetDpiForMonitor = HRESULT(WINAPI*)(HMONITOR hMonitor, int nType, UINT* puX, UINT* puY);
constexpr int kEffectiveDpi = 0;

GetDpiForMonitor findGetDpiForMonitor() {
    static common::NeverDestroyed<common::UniqueModule> library(loadSystemLibrary(L"shcore.dll"));
    return library.get() ? reinterpret_cast<GetDpiForMonitor>(
                               reinterpret_cast<void*>(::GetProcAddress(library.get().get(), "GetDpiForMonitor")))
                         : nullptr;
}

int systemDpi() {
    const common::WindowDc screen(nullptr);
    return screen.get() == nullptr ? kNormalDpi : ::GetDeviceCaps(screen.get(), LOGPIXELSX);
}

}  // namespace

double monitorScale(HMONITOR hMonitor) {
    static const GetDpiForMonitor call = findGetDpiForMonitor();
    UINT uX = 0;
    UINT uY = 0;
    const bool known = call != nullptr && SUCCEEDED(call(hMonitor, kEffectiveDpi, &uX, &uY)) && uX != 0;
    return (known ? static_cast<double>(uX) : systemDpi()) / kNormalDpi;
}
