// The surface that a frame is composed on, independent of any window system: one operation that draws a part of an
// image into a rectangle through a colour matrix, onto 32-bit premultiplied pixels; and the composing itself.
#pragma once

#include "common/GdiPlus.h"
#include "common/Picture.h"

class IFrameSurface {
 public:
    virtual ~IFrameSurface() = default;

    // Scales `source` (pixels of the image) into `destination` (pixels of the surface), over the existing pixels. A
    // negative status stops the frame.
    [[nodiscard]] virtual HRESULT drawImage(Gdiplus::Image& image, const Gdiplus::RectF& source,
                                            const Gdiplus::RectF& destination, const Gdiplus::ColorMatrix& colours) = 0;
};

// The rows that a frame takes from every image; a height below 1 means all rows from `top` on.
struct SourceSlice {
    int top = 0;
    int height = 0;
};

// The identity, with the alpha row scaled by alpha / 255.
[[nodiscard]] Gdiplus::ColorMatrix alphaMatrix(DWORD alpha) noexcept;

// Draws one image's slice over its whole width into the rectangle. S_FALSE if there is no image.
[[nodiscard]] HRESULT composeImage(IFrameSurface& surface, Gdiplus::Image* image, DWORD alpha, const SourceSlice& slice,
                                   const RECT& destination);

// A surface on the pixels of a frame, which must outlive it. Pictures are scaled only here: those of the image library
// once for each size, and cached. Of the colour matrix it applies the opacity; the rest must be the identity's. E_FAIL,
// unlogged: the image was not decoded, or the rectangle is too large for any screen.
class PixelSurface final : public IFrameSurface {
 public:
    explicit PixelSurface(const FramePixels& frame) noexcept : m_frame(frame) {}

    [[nodiscard]] HRESULT drawImage(Gdiplus::Image& image, const Gdiplus::RectF& source,
                                    const Gdiplus::RectF& destination, const Gdiplus::ColorMatrix& colours) override;

 private:
    FramePixels m_frame;
};
