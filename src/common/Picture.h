// Pictures as plain pixels, and the one way in which they are scaled.
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

// A part of the picture (its pixels; what lies outside of it is transparent) at another size. A reduction averages the
// area that each pixel covers, an enlargement is a cubic one. Colours are averaged in linear light and weighted with
// their alpha, so that thin light lines keep their weight and no dark fringe shows. The same size gives the same
// pixels. Empty for an empty part or size.
[[nodiscard]] Picture scalePicture(const Picture& picture, const RECT& part, SIZE size);

// What a pixel shows of which `first` parts of `total` have one colour (0xAARRGGBB, not premultiplied), `second` parts
// the other, and the rest none: averaged in the same light, premultiplied.
[[nodiscard]] DWORD mixColours(DWORD firstColour, int first, DWORD secondColour, int second, int total);

// Such pixels that somebody else owns.
struct FramePixels {
    DWORD* top = nullptr;       // the first pixel of the upper row
    std::ptrdiff_t stride = 0;  // pixels from one row to the next; below 0 where the lower row is the first in memory
    int width = 0;
    int height = 0;

    [[nodiscard]] DWORD* row(int y) const { return top + y * stride; }
};

// Lays the picture, made more transparent by opacity / 255, over the frame, its corner at (left, top). What sticks out
// of the frame is left out.
void blendPicture(const FramePixels& frame, const Picture& picture, int left, int top, DWORD opacity);
