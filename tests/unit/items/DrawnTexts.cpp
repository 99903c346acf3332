#include "items/DrawnTexts.h"

namespace items {

std::vector<DrawnText>& drawnTexts() {
    static std::vector<DrawnText> only;
    return only;
}

}  // namespace items

// The linker puts this in the place of the system's function (--wrap).
extern "C" {

Gdiplus::GpStatus WINAPI __real_GdipDrawString(Gdiplus::GpGraphics*, const WCHAR*, INT, const Gdiplus::GpFont*,
                                               const Gdiplus::RectF*, const Gdiplus::GpStringFormat*,
                                               const Gdiplus::GpBrush*);
Gdiplus::GpStatus WINAPI __wrap_GdipDrawString(Gdiplus::GpGraphics* graphics, const WCHAR* text, INT length,
                                               const Gdiplus::GpFont* font, const Gdiplus::RectF* layout,
                                               const Gdiplus::GpStringFormat* format, const Gdiplus::GpBrush* brush);

Gdiplus::GpStatus WINAPI __wrap_GdipDrawString(Gdiplus::GpGraphics* graphics, const WCHAR* text, INT length,
                                               const Gdiplus::GpFont* font, const Gdiplus::RectF* layout,
                                               const Gdiplus::GpStringFormat* format, const Gdiplus::GpBrush* brush) {
    items::DrawnText drawn{length < 0 ? std::wstring(text) : std::wstring(text, static_cast<std::size_t>(length)),
                           *layout, Gdiplus::StringTrimmingNone, Gdiplus::StringAlignmentNear};
    if (format != nullptr) {
        Gdiplus::DllExports::GdipGetStringFormatTrimming(const_cast<Gdiplus::GpStringFormat*>(format), &drawn.trimming);
        Gdiplus::DllExports::GdipGetStringFormatAlign(const_cast<Gdiplus::GpStringFormat*>(format), &drawn.alignment);
    }
    items::drawnTexts().push_back(drawn);
    return __real_GdipDrawString(graphics, text, length, font, layout, format, brush);
}

}  // extern "C"
