// Off-screen bitmaps with an alpha channel.
#pragma once

#include "common/Handle.h"

namespace common {

// A bottom-up 32-bit bitmap whose pixels start as fully transparent; empty when there is no memory for it.
[[nodiscard]] inline UniqueBitmap createFrameBitmap(int width, int height) {
    constexpr WORD kBits = 32;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = kBits;
    info.bmiHeader.biCompression = BI_RGB;
    info.bmiHeader.biSizeImage = static_cast<DWORD>(width) * static_cast<DWORD>(height) * (kBits / 8);
    void* bits = nullptr;
    return UniqueBitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
}

}  // namespace common
