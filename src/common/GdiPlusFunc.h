// Text on cards: fitted to a box, and drawn with an outline.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "common/GdiPlus.h"
#include "common/Picture.h"

// Replaces the font by smaller ones of its kind until the text, wrapped to the box's width, is lower than the box; a
// font that fits stays the same object. An empty `*pFont` starts from the font of the graphics' device context. If no
// size fits, the smallest one remains. E_POINTER: `pFont` is null.
[[nodiscard]] HRESULT measureTextFont(Gdiplus::Graphics& graphics, const wchar_t* pszText, const Gdiplus::RectF& box,
                                      std::unique_ptr<Gdiplus::Font>* pFont);

// Enlarges what MeasureString measured of a text that is wrapped at `width`, if need be, to what is drawn of it: some
// systems measure letters that come from another font as if they were missing ones.
void coverOtherFonts(Gdiplus::Graphics& graphics, const wchar_t* pszText, const Gdiplus::Font& font, float width,
                     Gdiplus::RectF& measured);

// Draws the text with an outline of which half of `outlineWidth` (pixels; 0: none) stays visible outside the letters.
// Baselines and upright strokes are aligned to whole pixels, strokes are at least a pixel wide if the letters' size
// allows it. The format decides position, wrapping and, with StringTrimmingEllipsisCharacter, that text that does not
// fit the rectangle ends with an ellipsis; null means the default format. Leaves the graphics antialiasing.
void drawOutlineText(Gdiplus::Graphics& graphics, const Gdiplus::RectF& layoutRect, const wchar_t* pszText,
                     const Gdiplus::Font& font, const Gdiplus::StringFormat* pFormat, double outlineWidth,
                     Gdiplus::ARGB fillColour, Gdiplus::ARGB outlineColour);

// The same for a text that is drawn repeatedly: its picture is cached until an argument changes, because outlines cost
// far more than everything else on a card. Must be destroyed before GDI+ is stopped.
class OutlineText {
 public:
    void draw(Gdiplus::Graphics& graphics, const Gdiplus::RectF& layoutRect, const wchar_t* pszText,
              const Gdiplus::Font& font, const Gdiplus::StringFormat* pFormat, double outlineWidth,
              Gdiplus::ARGB fillColour, Gdiplus::ARGB outlineColour);
    // False if there was no memory for what was to be drawn last.
    [[nodiscard]] bool complete() const { return m_key.has_value(); }

    // Where the text was drawn last, in pixels of the graphics. Empty: nowhere.
    [[nodiscard]] RECT place() const {
        return {m_place.x, m_place.y, m_place.x + m_picture.width, m_place.y + m_picture.height};
    }

 private:
    struct Key {
        std::wstring text;
        std::array<float, 4> layout;
        std::wstring fontFamily;
        float fontSize;
        INT fontStyle;
        Gdiplus::StringAlignment alignment;
        Gdiplus::StringAlignment lineAlignment;
        Gdiplus::StringTrimming trimming;
        INT formatFlags;
        double outlineWidth;
        Gdiplus::ARGB fillColour;
        Gdiplus::ARGB outlineColour;
        bool operator==(const Key&) const = default;
    };

    std::optional<Key> m_key;
    Picture m_picture;
    std::unique_ptr<Gdiplus::Bitmap> m_pBitmap;  // over the picture's pixels
    POINT m_place{};
};
