#include "common/GdiPlus.h"

#include <utility>

HRESULT GdiplusSession::start() noexcept {
    if (m_token != 0) {
        return S_FALSE;
    }
    const Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) {
        return E_FAIL;
    }
    m_token = token;
    return S_OK;
}

void GdiplusSession::stop() noexcept {
    if (m_token != 0) {
        Gdiplus::GdiplusShutdown(std::exchange(m_token, 0));
    }
}
