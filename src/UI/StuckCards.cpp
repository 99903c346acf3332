#include "UI/StuckCards.h"

#include "common/Handle.h"

namespace {

constexpr LONG kFarAway = -32000;

// One transparent pixel where nobody sees it. Does nothing to windows that show no picture.
void replacePicture(HWND hWnd) noexcept {
    const common::WindowDc screen(nullptr);
    const common::UniqueMemoryDc memory(::CreateCompatibleDC(screen.get()));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 1, -1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pBits = nullptr;  // all zero: transparent
    const common::UniqueBitmap bitmap(::CreateDIBSection(memory.get(), &info, DIB_RGB_COLORS, &pBits, nullptr, 0));
    if (!memory || !bitmap) {
        return;
    }
    const common::SelectScope selected(memory.get(), bitmap.get());
    POINT place{kFarAway, kFarAway};
    SIZE size{1, 1};
    POINT source{};
    BLENDFUNCTION blend{AC_SRC_OVER, 0, 0, AC_SRC_ALPHA};
    ::UpdateLayeredWindow(hWnd, screen.get(), &place, &size, memory.get(), &source, 0, &blend, ULW_ALPHA);
}

}  // namespace

// The pictures come last: some systems keep changes of opacity back until something else of the thread changes.
CStuckCards::CStuckCards(DWORD dwThread) noexcept {
    ::EnumThreadWindows(dwThread, &CStuckCards::_hideSurface, reinterpret_cast<LPARAM>(this));
    ::EnumThreadWindows(dwThread, &CStuckCards::_hidePicture, 0);
}

CStuckCards::~CStuckCards() {
    for (std::size_t i = 0; i < m_uSurfaces; ++i) {
        const Surface& surface = m_surfaces[i];
        ::SetLayeredWindowAttributes(surface.hWnd, surface.key, surface.alpha, surface.flags);
    }
}

BOOL CALLBACK CStuckCards::_hideSurface(HWND hWnd, LPARAM lParam) noexcept {
    auto& rCards = *reinterpret_cast<CStuckCards*>(lParam);
    Surface surface{hWnd, 0, 0, 0};
    if (rCards.m_uSurfaces < rCards.m_surfaces.size() && ::IsWindowVisible(hWnd) != FALSE &&
        ::GetLayeredWindowAttributes(hWnd, &surface.key, &surface.alpha, &surface.flags) != FALSE) {
        rCards.m_surfaces[rCards.m_uSurfaces++] = surface;
        ::SetLayeredWindowAttributes(hWnd, surface.key, 0, surface.flags | LWA_ALPHA);
    }
    return TRUE;
}

BOOL CALLBACK CStuckCards::_hidePicture(HWND hWnd, LPARAM /*unused*/) noexcept {
    if (::IsWindowVisible(hWnd) != FALSE && (::GetWindowLongPtrW(hWnd, GWL_EXSTYLE) & WS_EX_LAYERED) != 0) {
        replacePicture(hWnd);
    }
    return TRUE;
}
