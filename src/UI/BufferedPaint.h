// WM_PAINT through an off-screen bitmap: nothing flickers, and small text is smoothed, which some systems do not do
// when text is drawn directly onto a window.
#pragma once

#include "common/Contrast.h"
#include "common/FrameBitmap.h"
#include "common/Handle.h"

class CBufferedPaint {
 public:
    // Covers the client area. Draw onto get() or pixels(); the end of the scope shows the result.
    CBufferedPaint(HWND hWnd, const RECT& client)
        : m_paint(hWnd),
          m_width(client.right - client.left),
          m_height(client.bottom - client.top),
          m_buffer(m_width, m_height) {}
    ~CBufferedPaint() {
        contrast::recolour(m_buffer.pixels(), contrast::Tone::Light);
        ::BitBlt(m_paint.get(), 0, 0, m_width, m_height, m_buffer.dc(), 0, 0, SRCCOPY);
    }
    CBufferedPaint(const CBufferedPaint&) = delete;
    CBufferedPaint& operator=(const CBufferedPaint&) = delete;

    [[nodiscard]] HDC get() const noexcept { return m_buffer.dc(); }
    [[nodiscard]] const FramePixels& pixels() const noexcept { return m_buffer.pixels(); }

 private:
    common::PaintDc m_paint;
    int m_width;
    int m_height;
    common::FrameBuffer m_buffer;
};
