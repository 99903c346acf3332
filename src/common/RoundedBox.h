// Rounded boxes with smooth corners, which not every drawing library makes.
#pragma once

#include <functional>

#include "common/Picture.h"

// Fills the box (pixels of the frame) with opaque colours (0xFFRRGGBB) over what is there; `colourAt` gives the colour
// of each column of the frame. Corners are arcs of the radius, averaged in linear light. Nothing for an empty box; what
// sticks out of the frame is left out.
void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius,
                    const std::function<DWORD(int x)>& colourAt);
void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius, DWORD colour);
