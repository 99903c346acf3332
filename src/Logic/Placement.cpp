#include "Logic/Placement.h"

#include "Data/ZelConfig.h"
#include "Logic/ZelCommonFunc.h"
#include "common/Handle.h"

double screenScale() {
    static const double scale = [] {
        const common::WindowDc screen(nullptr);
        return (screen.get() == nullptr ? kNormalDpi : ::GetDeviceCaps(screen.get(), LOGPIXELSX)) /
               static_cast<double>(kNormalDpi);
    }();
    return scale;
}

HRESULT getCardsWorkArea(RECT& outRect) {
    if (!CZelConfig::getQrdConfig().bMonitorOfActiveWindow) {
        return getWorkArea(outRect);
    }
    // If one of the program's own windows is active, it is on the cards' monitor, so they stay there. No active window:
    // the primary screen.
    const HMONITOR monitor = ::MonitorFromWindow(::GetForegroundWindow(), MONITOR_DEFAULTTOPRIMARY);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (::GetMonitorInfoW(monitor, &info) == FALSE) {
        return getWorkArea(outRect);
    }
    outRect = info.rcWork;
    return S_OK;
}
