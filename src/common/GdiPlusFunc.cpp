#include "common/GdiPlusFunc.h"

#include <utility>

#include "common/Status.h"

namespace {

// The last size above 0, which the font mapper would take as "any".
constexpr LONG kSmallestHeight = -1;

bool usable(const Gdiplus::Font& font) {
    return font.GetLastStatus() == Gdiplus::Ok && font.IsAvailable() != FALSE;
}

std::unique_ptr<Gdiplus::Font> fontOfDc(Gdiplus::Graphics& graphics) {
    const GraphicsDc dc(graphics);
    return tryMakeGdiPlus<Gdiplus::Font>(dc.get());
}

// One unit smaller; null if there is no smaller one.
std::unique_ptr<Gdiplus::Font> smallerFont(Gdiplus::Graphics& graphics, const Gdiplus::Font& font) {
    LOGFONTW logFont{};
    font.GetLogFontW(&graphics, &logFont);
    if (logFont.lfHeight >= kSmallestHeight) {
        return nullptr;
    }
    ++logFont.lfHeight;
    const GraphicsDc dc(graphics);
    auto smaller = tryMakeGdiPlus<Gdiplus::Font>(dc.get(), &logFont);
    return smaller != nullptr && usable(*smaller) ? std::move(smaller) : nullptr;
}

}  // namespace

HRESULT measureTextFont(Gdiplus::Graphics& graphics, const wchar_t* pszText, const Gdiplus::RectF& box,
                        std::unique_ptr<Gdiplus::Font>* pFont) {
    if (pFont == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (*pFont == nullptr) {
        *pFont = fontOfDc(graphics);
    }
    if (*pFont == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentCenter);
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    const Gdiplus::RectF layout(0.0F, 0.0F, box.Width, 0.0F);
    for (;;) {
        Gdiplus::RectF measured;
        graphics.MeasureString(pszText != nullptr ? pszText : L"", -1, pFont->get(), layout, &format, &measured);
        coverOtherFonts(graphics, pszText != nullptr ? pszText : L"", **pFont, box.Width, measured);
        if (measured.Height < box.Height) {
            return S_OK;
        }
        auto smaller = smallerFont(graphics, **pFont);
        if (smaller == nullptr) {
            return S_OK;
        }
        *pFont = std::move(smaller);
    }
}
