#include <windows.h>

#include <exdisp.h>
#include <shlobj.h>
#include <shobjidl.h>

#include <array>
#include <cstdlib>

#include "common/Handle.h"
#include "system/Com.h"
#include "system/Zoom.h"

namespace win {

namespace {

// Pixels of an icon in the shell's view, which calls the first two "medium" and "large".
constexpr ZoomTable kViewSizes{48, 96, 144};

// Without a view, at 96 dots per inch: distance of two icons, and height of their font.
constexpr ZoomTable kSpacings{75, 100, 125};
constexpr ZoomTable kFontHeights{12, 15, 18};
constexpr int kPlainDpi = 96;

constexpr GUID kTopLevelBrowser = {0x4C96BE40, 0x915C, 0x11CF, {0x99, 0xD3, 0x00, 0xAA, 0x00, 0x4A, 0xE8, 0x37}};
constexpr CLSID kShellWindows = {0x9BA05972, 0xF6A8, 0x11CF, {0xA4, 0x42, 0x00, 0xA0, 0xC9, 0x0A, 0x8F, 0x39}};
constexpr IID kIidShellWindows = {0x85CB6900, 0x4D95, 0x11CF, {0x96, 0x0C, 0x00, 0x80, 0xC7, 0xF4, 0xEE, 0x85}};
constexpr IID kIidServiceProvider = {0x6D5140C1, 0x7436, 0x11CE, {0x80, 0x34, 0x00, 0xAA, 0x00, 0x60, 0x09, 0xFA}};
constexpr IID kIidShellBrowser = {0x000214E2, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr IID kIidFolderView2 = {0x1AF3A467, 0x214F, 0x4298, {0x90, 0x8E, 0x06, 0xB0, 0x3E, 0x0B, 0x39, 0xF9}};

// The folder view that the shell shows as the desktop; empty if there is no shell, or one without such a view.
CComRef<IFolderView2> desktopView() {
    CComRef<IShellWindows> windows;
    CComRef<IDispatch> desktop;
    CComRef<IServiceProvider> provider;
    CComRef<IShellBrowser> browser;
    CComRef<IShellView> view;
    CComRef<IFolderView2> folder;
    VARIANT place{};
    place.vt = VT_I4;
    place.lVal = CSIDL_DESKTOP;
    VARIANT nothing{};
    LONG lWnd = 0;
    if (SUCCEEDED(
            ::CoCreateInstance(kShellWindows, nullptr, CLSCTX_LOCAL_SERVER, kIidShellWindows, windows.putVoid())) &&
        windows->FindWindowSW(&place, &nothing, SWC_DESKTOP, &lWnd, SWFO_NEEDDISPATCH, desktop.put()) == S_OK &&
        desktop && SUCCEEDED(desktop->QueryInterface(kIidServiceProvider, provider.putVoid())) &&
        SUCCEEDED(provider->QueryService(kTopLevelBrowser, kIidShellBrowser, browser.putVoid())) &&
        SUCCEEDED(browser->QueryActiveShellView(view.put()))) {
        view->QueryInterface(kIidFolderView2, folder.putVoid());
    }
    return folder;
}

std::optional<ICONMETRICSW> iconMetrics() {
    ICONMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    return ::SystemParametersInfoW(SPI_GETICONMETRICS, sizeof(metrics), &metrics, 0) != FALSE
               ? std::optional<ICONMETRICSW>(metrics)
               : std::nullopt;
}

int dotsPerInch() {
    const common::WindowDc screen(nullptr);
    return ::GetDeviceCaps(screen.get(), LOGPIXELSX);
}

void resizeMetrics(std::size_t size) {
    std::optional<ICONMETRICSW> metrics = iconMetrics();
    if (!metrics) {
        return;
    }
    const int nDpi = dotsPerInch();
    metrics->iHorzSpacing = ::MulDiv(kSpacings[size], nDpi, kPlainDpi);
    metrics->iVertSpacing = metrics->iHorzSpacing;
    metrics->lfFont.lfHeight = -::MulDiv(kFontHeights[size], nDpi, kPlainDpi);
    ::SystemParametersInfoW(SPI_SETICONMETRICS, sizeof(*metrics), &*metrics, SPIF_UPDATEINIFILE | SPIF_SENDCHANGE);
}

class CWindowsDesktopIcons final : public IDesktopIcons {
 public:
    std::optional<std::size_t> size() override {
        const CComScope com(COINIT_MULTITHREADED);
        FOLDERVIEWMODE mode = FVM_AUTO;
        int nPixels = 0;
        if (const CComRef<IFolderView2> view = desktopView()) {
            if (SUCCEEDED(view->GetViewModeAndIconSize(&mode, &nPixels))) {
                return nearestSize(kViewSizes, nPixels);
            }
        }
        const std::optional<ICONMETRICSW> metrics = iconMetrics();
        const int nDpi = dotsPerInch();
        if (!metrics || nDpi <= 0) {
            return std::nullopt;
        }
        return nearestSize(kSpacings, ::MulDiv(metrics->iHorzSpacing, kPlainDpi, nDpi));
    }

    void resize(std::size_t size) override {
        const CComScope com(COINIT_MULTITHREADED);
        const CComRef<IFolderView2> view = desktopView();
        if (!view || FAILED(view->SetViewModeAndIconSize(FVM_ICON, kViewSizes[size]))) {
            resizeMetrics(size);
        }
    }
};

}  // namespace

std::size_t nearestSize(const ZoomTable& rTable, int nSize) {
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < rTable.size(); ++i) {
        if (std::abs(rTable[i] - nSize) < std::abs(rTable[nearest] - nSize)) {
            nearest = i;
        }
    }
    return nearest;
}

std::shared_ptr<IDesktopIcons> makeWindowsDesktopIcons() {
    return std::make_shared<CWindowsDesktopIcons>();
}

}  // namespace win
