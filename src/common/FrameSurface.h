// What a frame is composed on, apart from any window system: one operation that draws a part of an image into a
// rectangle through a colour matrix, over a surface of 32-bit premultiplied pixels; and the composing itself.
#pragma once

#include <vector>

#include "common/GdiPlus.h"

class IFrameSurface {
 public:
    virtual ~IFrameSurface() = default;

    // Scales `source` (pixels of the image) into `destination` (pixels of the surface), over what is there already.
    // A negative status stops the frame.
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

// Draws one image's slice over its whole width into the rectangle. S_FALSE when there is no image.
[[nodiscard]] HRESULT composeImage(IFrameSurface& surface, Gdiplus::Image* image, DWORD alpha, const SourceSlice& slice,
                                   const RECT& destination);

// A surface over a GDI+ graphics, which has to outlive it. Failures are E_FAIL, unlogged.
class CGraphicsSurface final : public IFrameSurface {
 public:
    explicit CGraphicsSurface(Gdiplus::Graphics& graphics) noexcept : m_graphics(graphics) {}

    [[nodiscard]] HRESULT drawImage(Gdiplus::Image& image, const Gdiplus::RectF& source,
                                    const Gdiplus::RectF& destination, const Gdiplus::ColorMatrix& colours) override;

 private:
    Gdiplus::Graphics& m_graphics;
};
