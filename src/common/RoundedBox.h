// Rounded boxes with smooth corners, which some drawing libraries lack.
#pragma once

#include <functional>

#include "common/Picture.h"

// Fills the box (pixels of the frame) with opaque colours (0xFFRRGGBB) over the existing pixels, which are opaque or
// fully transparent; `colourAt` returns the colour of each column of the frame. Corners are arcs of the radius,
// averaged in linear light; on transparent pixels they are as transparent as they leave them uncovered. Nothing for an
// empty box; parts outside the frame are omitted.
void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius,
                    const std::function<DWORD(int x)>& colourAt);
void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius, DWORD colour);
