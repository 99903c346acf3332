// Off-screen bitmaps with an alpha channel.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>

#include "common/Handle.h"
#include "common/Picture.h"

namespace common {

// A bottom-up 32-bit bitmap whose pixels start as fully transparent; empty if there is no memory for it. `pBits`
// receives the address of its pixels.
[[nodiscard]] inline UniqueBitmap createFrameBitmap(int width, int height, DWORD** ppBits) {
    constexpr WORD kBits = 32;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = kBits;
    info.bmiHeader.biCompression = BI_RGB;
    info.bmiHeader.biSizeImage = static_cast<DWORD>(width) * static_cast<DWORD>(height) * (kBits / 8);
    return UniqueBitmap(
        ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(ppBits), nullptr, 0));
}

// Such a bitmap in a device context of its own. Without memory there are no pixels.
class FrameBuffer {
 public:
    FrameBuffer(int width, int height)
        : m_hDc(::CreateCompatibleDC(nullptr)),
          m_hBitmap(createFrameBitmap(width, height, &m_pBits)),
          m_selected(m_hDc.get(), m_hBitmap.get()) {
        if (m_hBitmap) {
            m_pixels = {m_pBits + std::ptrdiff_t{height - 1} * width, -std::ptrdiff_t{width}, width, height};
        }
    }

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(m_hBitmap); }
    [[nodiscard]] HDC dc() const noexcept { return m_hDc.get(); }
    [[nodiscard]] bool hasSize(int width, int height) const noexcept {
        return m_pixels.width == width && m_pixels.height == height;
    }
    // The pixels, after all requested drawing through the device context.
    [[nodiscard]] const FramePixels& pixels() const noexcept {
        ::GdiFlush();
        return m_pixels;
    }
    void clear() noexcept {
        ::GdiFlush();
        std::fill_n(m_pBits, std::ptrdiff_t{m_pixels.width} * m_pixels.height, DWORD{0});
    }
    // A hash of the pixels.
    [[nodiscard]] std::size_t hash() const {
        ::GdiFlush();
        const auto count = static_cast<std::size_t>(m_pixels.width) * static_cast<std::size_t>(m_pixels.height);
        return std::hash<std::string_view>()({reinterpret_cast<const char*>(m_pBits), count * sizeof(DWORD)});
    }

 private:
    DWORD* m_pBits = nullptr;
    FramePixels m_pixels;
    UniqueMemoryDc m_hDc;
    UniqueBitmap m_hBitmap;
    SelectScope m_selected;
};

}  // namespace common
