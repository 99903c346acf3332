#include "common/FrameSurface.h"

#include <algorithm>
#include <cmath>

#include "common/PictureStore.h"

namespace {

constexpr Gdiplus::ColorMatrix kIdentity = {{{1, 0, 0, 0, 0},  //
                                             {0, 1, 0, 0, 0},
                                             {0, 0, 1, 0, 0},
                                             {0, 0, 0, 1, 0},
                                             {0, 0, 0, 0, 1}}};
constexpr int kAlphaRow = 3;
constexpr float kOpaque = 255.0F;

// Farther away, and larger, than any screen.
constexpr float kFarthest = 32768.0F;
constexpr float kLargest = 8192.0F;

bool inReach(const Gdiplus::RectF& rect) noexcept {
    return std::fabs(rect.X) <= kFarthest && std::fabs(rect.Y) <= kFarthest && rect.Width <= kLargest &&
           rect.Height <= kLargest;
}

// All rectangles have integer coordinates. One without an area stays empty.
RECT toRect(const Gdiplus::RectF& rect) noexcept {
    const auto left = static_cast<LONG>(std::lround(rect.X));
    const auto top = static_cast<LONG>(std::lround(rect.Y));
    return {left, top, left + static_cast<LONG>(std::lround(std::max(rect.Width, 0.0F))),
            top + static_cast<LONG>(std::lround(std::max(rect.Height, 0.0F)))};
}

DWORD toOpacity(const Gdiplus::ColorMatrix& colours) noexcept {
    return static_cast<DWORD>(std::lround(std::clamp(colours.m[kAlphaRow][kAlphaRow], 0.0F, 1.0F) * kOpaque));
}

}  // namespace

Gdiplus::ColorMatrix alphaMatrix(DWORD alpha) noexcept {
    Gdiplus::ColorMatrix matrix = kIdentity;
    matrix.m[kAlphaRow][kAlphaRow] = static_cast<float>(alpha) / kOpaque;
    return matrix;
}

HRESULT composeImage(IFrameSurface& surface, Gdiplus::Image* image, DWORD alpha, const SourceSlice& slice,
                     const RECT& destination) {
    if (image == nullptr) {
        return S_FALSE;
    }
    const auto top = static_cast<float>(slice.top);
    const float height =
        slice.height < 1 ? static_cast<float>(image->GetHeight()) - top : static_cast<float>(slice.height);
    const Gdiplus::RectF source(0.0F, top, static_cast<float>(image->GetWidth()), height);
    const auto left = static_cast<float>(destination.left);
    const auto upper = static_cast<float>(destination.top);
    const Gdiplus::RectF target(left, upper, static_cast<float>(destination.right) - left,
                                static_cast<float>(destination.bottom) - upper);
    return surface.drawImage(*image, source, target, alphaMatrix(alpha));
}

HRESULT PixelSurface::drawImage(Gdiplus::Image& image, const Gdiplus::RectF& source, const Gdiplus::RectF& destination,
                                const Gdiplus::ColorMatrix& colours) {
    if (!inReach(source) || !inReach(destination)) {
        return E_FAIL;
    }
    const RECT part = toRect(source);
    const RECT place = toRect(destination);
    const SIZE size{place.right - place.left, place.bottom - place.top};
    const DWORD opacity = toOpacity(colours);
    if (auto* const stored = dynamic_cast<StoredImage*>(&image); stored != nullptr) {
        blendPicture(m_frame, stored->master().scaled(part, size), place.left, place.top, opacity);
        return S_OK;
    }
    const Picture picture = pixelsOf(image);
    if (picture.pixels.empty()) {
        return E_FAIL;
    }
    blendPicture(m_frame, scalePicture(picture, part, size), place.left, place.top, opacity);
    return S_OK;
}
