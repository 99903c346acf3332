// WM_PAINT through an off-screen bitmap: nothing flickers, and small text is smoothed, which not every system does when
// text is drawn straight onto a window.
#pragma once

#include "common/FrameBitmap.h"
#include "common/Handle.h"

class BufferedPaint {
 public:
    // Covers the client area. Draw onto get(); the end of the scope shows it.
    BufferedPaint(HWND hWnd, const RECT& client)
        : m_paint(hWnd),
          m_memory(::CreateCompatibleDC(m_paint.get())),
          m_width(client.right - client.left),
          m_height(client.bottom - client.top),
          m_bitmap(common::createFrameBitmap(m_width, m_height)),
          m_selected(m_memory.get(), m_bitmap.get()) {}
    ~BufferedPaint() { ::BitBlt(m_paint.get(), 0, 0, m_width, m_height, m_memory.get(), 0, 0, SRCCOPY); }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    [[nodiscard]] HDC get() const noexcept { return m_memory.get(); }

 private:
    common::PaintDc m_paint;
    common::UniqueMemoryDc m_memory;
    int m_width;
    int m_height;
    common::UniqueBitmap m_bitmap;
    common::SelectScope m_selected;
};
