// Shared by the tests in this folder: a GDI+ session for the whole program, frames to draw on, and plain pictures.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "common/GdiPlus.h"
#include "common/Handle.h"
#include "common/Picture.h"

namespace rendering {

// 32-bit premultiplied pixels in memory with a device context over them, as frames are. All pixels start as 0.
class Canvas {
 public:
    Canvas(int width, int height);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] HDC dc() const { return m_hDc.get(); }
    [[nodiscard]] FramePixels frame() const { return {m_pBits, m_nWidth, m_nWidth, m_nHeight}; }
    [[nodiscard]] DWORD at(int x, int y) const;              // 0xAARRGGBB, from the top left corner
    [[nodiscard]] RECT ink(DWORD mask = 0xFF000000U) const;  // bounds of the pixels with a bit of the mask
    [[nodiscard]] std::vector<DWORD> pixels() const;
    void clear();

 private:
    int m_nWidth;
    int m_nHeight;
    DWORD* m_pBits = nullptr;
    common::UniqueMemoryDc m_hDc;
    common::UniqueBitmap m_hBitmap;
    common::SelectScope m_selected;
};

// One colour (0xAARRGGBB, not premultiplied) everywhere.
[[nodiscard]] std::unique_ptr<Gdiplus::Bitmap> plainImage(int width, int height, Gdiplus::ARGB colour);

// Row y has the colour rows[y].
[[nodiscard]] std::unique_ptr<Gdiplus::Bitmap> stripedImage(int width, const std::vector<Gdiplus::ARGB>& rows);

// An image that failed to load.
[[nodiscard]] std::unique_ptr<Gdiplus::Image> brokenImage();

[[nodiscard]] inline int alphaOf(DWORD pixel) {
    return static_cast<int>(pixel >> 24U);
}
[[nodiscard]] inline int redOf(DWORD pixel) {
    return static_cast<int>((pixel >> 16U) & 0xFFU);
}
[[nodiscard]] inline int greenOf(DWORD pixel) {
    return static_cast<int>((pixel >> 8U) & 0xFFU);
}
[[nodiscard]] inline int blueOf(DWORD pixel) {
    return static_cast<int>(pixel & 0xFFU);
}

// The class name that the first layered window object of this process was given.
[[nodiscard]] const std::wstring& firstClassName();

}  // namespace rendering
