#include "common/RoundedBox.h"

#include <algorithm>

namespace {

constexpr int kSamples = 8;  // each way

// How many of a pixel's samples lie within the box, whose corner arcs have the radius.
int covered(int x, int y, const RECT& box, double radius) {
    int inside = 0;
    for (int sample = 0; sample < kSamples * kSamples; ++sample) {
        const int row = sample / kSamples;
        const double px = x + (sample % kSamples + 0.5) / kSamples;
        const double py = y + (row + 0.5) / kSamples;
        // The distance to the box spanned by the arcs' centres.
        const double dx = px - std::clamp(px, box.left + radius, box.right - radius);
        const double dy = py - std::clamp(py, box.top + radius, box.bottom - radius);
        inside += dx * dx + dy * dy <= radius * radius || (dx == 0.0 && dy == 0.0) ? 1 : 0;
    }
    return inside;
}

}  // namespace

void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius,
                    const std::function<DWORD(int x)>& colourAt) {
    constexpr int kAll = kSamples * kSamples;
    const double most = std::min(box.right - box.left, box.bottom - box.top) / 2.0;
    const double arc = std::clamp(radius, 0.0, std::max(most, 0.0));
    for (int y = std::max<int>(box.top, 0); y < std::min<int>(box.bottom, frame.height); ++y) {
        for (int x = std::max<int>(box.left, 0); x < std::min<int>(box.right, frame.width); ++x) {
            const bool nearCorner =
                (x < box.left + arc || x + 1 > box.right - arc) && (y < box.top + arc || y + 1 > box.bottom - arc);
            const int inside = nearCorner ? covered(x, y, box, arc) : kAll;
            DWORD& pixel = frame.row(y)[x];
            pixel = inside == kAll ? colourAt(x)
                    : inside == 0  ? pixel
                                   : mixColours(colourAt(x), inside, pixel, kAll - inside, kAll);
        }
    }
}

void fillRoundedBox(const FramePixels& frame, const RECT& box, double radius, DWORD colour) {
    fillRoundedBox(frame, box, radius, [colour](int) { return colour; });
}
