#include "Logic/Placement.h"

#include "Data/ZelConfig.h"
#include "Logic/MonitorScale.h"
#include "Logic/ZelCommonFunc.h"

namespace {

[[nodiscard]] HRESULT getPrimaryScreen(CardsScreen& outScreen) {
    RECT workArea{};
    if (FAILED(getWorkArea(workArea))) {
        return E_FAIL;
    }
    outScreen = {workArea, monitorScale(::MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY))};
    return S_OK;
}

}  // namespace

HRESULT getCardsScreen(CardsScreen& outScreen) {
    if (!CZelConfig::getQrdConfig().bMonitorOfActiveWindow) {
        return getPrimaryScreen(outScreen);
    }
    // If one of the program's own windows is active, it is on the cards' monitor, so they stay there. No active window:
    // the primary screen.
    const HMONITOR monitor = ::MonitorFromWindow(::GetForegroundWindow(), MONITOR_DEFAULTTOPRIMARY);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (::GetMonitorInfoW(monitor, &info) == FALSE) {
        return getPrimaryScreen(outScreen);
    }
    outScreen = {info.rcWork, monitorScale(monitor)};
    return S_OK;
}
