#include "common/FrameSurface.h"

#include <algorithm>

namespace {

constexpr Gdiplus::ColorMatrix kIdentity = {{{1, 0, 0, 0, 0},  //
                                             {0, 1, 0, 0, 0},
                                             {0, 0, 1, 0, 0},
                                             {0, 0, 0, 1, 0},
                                             {0, 0, 0, 0, 1}}};
constexpr int kAlphaRow = 3;
constexpr float kOpaque = 255.0F;

bool isIdentity(const Gdiplus::ColorMatrix& colours) noexcept {
    return std::ranges::equal(colours.m, kIdentity.m,
                              [](const auto& row, const auto& other) { return std::ranges::equal(row, other); });
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

HRESULT CGraphicsSurface::drawImage(Gdiplus::Image& image, const Gdiplus::RectF& source,
                                    const Gdiplus::RectF& destination, const Gdiplus::ColorMatrix& colours) {
    Gdiplus::ImageAttributes attributes;
    const Gdiplus::ImageAttributes* used = nullptr;
    // Attributes take a path many times slower; a matrix that changes nothing is not worth it.
    if (!isIdentity(colours)) {
        attributes.SetColorMatrix(&colours, Gdiplus::ColorMatrixFlagsDefault, Gdiplus::ColorAdjustTypeBitmap);
        used = &attributes;
    }
    const Gdiplus::Status status = m_graphics.DrawImage(&image, destination, source.X, source.Y, source.Width,
                                                        source.Height, Gdiplus::UnitPixel, used);
    return status == Gdiplus::Ok ? S_OK : E_FAIL;
}
