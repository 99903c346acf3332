// Pictures as plain pixels, and the only function that scales them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

// 32-bit premultiplied pixels, 0xAARRGGBB, the upper row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<DWORD> pixels;

    [[nodiscard]] const DWORD* row(int y) const { return pixels.data() + std::ptrdiff_t{y} * width; }
    [[nodiscard]] DWORD* row(int y) { return pixels.data() + std::ptrdiff_t{y} * width; }
};

// A part of the picture (in its pixels; the outside is transparent) at another size. A reduction averages the area that
// each pixel covers, an enlargement is cubic. Colours are averaged in linear light and weighted with their alpha, so
// that thin light lines keep their weight and no dark fringe appears. The same size yields the same pixels. Empty for
// an empty part or size.
[[nodiscard]] Picture scalePicture(const Picture& picture, const RECT& part, SIZE size);

// A pixel of which `first` parts of `total` have one colour (0xAARRGGBB, not premultiplied), `second` parts the other,
// and the rest none: averaged in linear light, premultiplied.
[[nodiscard]] DWORD mixColours(DWORD firstColour, int first, DWORD secondColour, int second, int total);

// Such pixels in foreign memory.
struct FramePixels {
    DWORD* top = nullptr;       // the first pixel of the upper row
    std::ptrdiff_t stride = 0;  // pixels from one row to the next; negative if the lower row is the first in memory
    int width = 0;
    int height = 0;

    [[nodiscard]] DWORD* row(int y) const { return top + y * stride; }
};

// Draws the picture, made more transparent by opacity / 255, onto the frame, its corner at (left, top). Parts outside
// the frame are omitted.
void blendPicture(const FramePixels& frame, const Picture& picture, int left, int top, DWORD opacity);
