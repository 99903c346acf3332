#include "Logic/ZelCommonFunc.h"

#include "ZelMain.h"
#include "common/Status.h"
#include "framework/Wnd.h"

HRESULT getNormalDPIWndFont(const CWnd* pWindow, Gdiplus::Graphics& graphics, std::unique_ptr<Gdiplus::Font>& outFont) {
    if (pWindow == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    LOGFONTW logFont{};
    const LRESULT font = ::SendMessageW(pWindow->m_hWnd, WM_GETFONT, 0, 0);
    ::GetObjectW(reinterpret_cast<HFONT>(font), sizeof(logFont), &logFont);
    logFont.lfHeight = normalDpiFontHeight(logFont.lfHeight, pWindow->fontDpi(), theApp.getPngRatio());
    const GraphicsDc dc(graphics);
    auto made = tryMakeGdiPlus<Gdiplus::Font>(dc.get(), &logFont);
    if (made == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    outFont = std::move(made);
    return S_OK;
}

HRESULT getWorkArea(RECT& outRect) noexcept {
    RECT rect{};
    if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &rect, 0) == FALSE) {
        return E_FAIL;
    }
    outRect = rect;
    return S_OK;
}

bool isOwnWindow(HWND hWnd) noexcept {
    DWORD process = 0;
    return hWnd != nullptr && ::GetWindowThreadProcessId(hWnd, &process) != 0 && process == ::GetCurrentProcessId();
}
