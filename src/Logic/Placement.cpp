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
    // One of the program's own windows stands on the monitor of the cards, so they stay there. Nobody active: the
    // primary screen.
    const HMONITOR monitor = ::MonitorFromWindow(::GetForegroundWindow(), MONITOR_DEFAULTTOPRIMARY);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (::GetMonitorInfoW(monitor, &info) == FALSE) {
        return getWorkArea(outRect);
    }
    outRect = info.rcWork;
    return S_OK;
}
