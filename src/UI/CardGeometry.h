// The layout: pure functions of the work area, the number of cards and the image ratio. All lengths are pixels; every
// product with the ratio is truncated toward zero.
#pragma once

#include <windows.h>

#include <vector>

namespace geometry {

// Base sizes at ratio 1.0.
inline constexpr double kCardWidth = 96.0;
inline constexpr double kLargeCardHeight = 144.0;
inline constexpr double kPictureAspect = 0.615;  // picture height / card width
inline constexpr double kStripAspect = 1.9;      // strip height / picture height
inline constexpr double kMaxRatio = 1.25;
inline constexpr double kUsableWidth = 0.85;  // of the work area's width, for all cards together
inline constexpr int kPictureRows = 65;       // rows of a card picture
inline constexpr int kPictureBand = 59;       // rows of it that are shown: trunc(96 * 0.615), kept as a fixed number
inline constexpr int kHoverStripHeight = 4;   // not scaled

// The smallest of: the card's share of the work area, the screen's scale, 1.25. cardCount > 0.
struct Ratio {
    double cardWidth;  // the card's share of the work area
    double ratio;
};
[[nodiscard]] Ratio imageRatio(int workAreaWidth, int cardCount, double dpiScale);

[[nodiscard]] int cardWidth(double ratio);

struct Strip {
    RECT place;  // screen coordinates
    int cardWidth;
};
// The card strip: centred, at the top of the work area or at its bottom.
[[nodiscard]] Strip cardStrip(const RECT& workArea, int cardCount, double ratio, bool bottom);
// The hover strip at the same edge, four pixels high.
[[nodiscard]] Strip hoverStrip(const RECT& workArea, int cardCount, double ratio, bool bottom);
// The part of a strip that one card covers, in the strip's client coordinates.
[[nodiscard]] RECT cardRect(const Strip& strip, int index);
// The part of the strip's client area outside the band of pictures: it lets the mouse through.
[[nodiscard]] RECT throughArea(const RECT& client, double ratio, bool bottom);

// The rectangles within one card, in the coordinates of the card's own rectangle.
struct Card {
    RECT image;
    RECT caption;
    RECT desc;
};
[[nodiscard]] Card cardParts(const RECT& card, double ratio, bool bottom);

// The mark of a latched modifier in the lower outer corner of the last card's picture, away from caption and glyph.
[[nodiscard]] RECT latchMark(const RECT& lastImage, double ratio);

// The enlarged card over its card, whose corners are in screen coordinates.
[[nodiscard]] RECT largeCard(const RECT& cardOnScreen, double ratio, bool bottom);

// The texts on the enlarged card, in its client coordinates.
struct LargeCardTexts {
    RECT caption;
    RECT desc;
    RECT text;
};
[[nodiscard]] LargeCardTexts largeCardTexts(const RECT& client, double ratio);

// The row of items under an enlarged card.
struct ItemRow {
    int x;           // left edge of the first item
    int y;           // top edge of all
    int pitch;       // from one item to the next
    int allWidth;    // of the whole row
    double leftMax;  // how many items fit to the left and to the right of the card's centre
    double rightMax;

    // The left edge of an item, counted from 0.
    [[nodiscard]] int left(int item) const;
};
// overhang: how far a caption box sticks out on each side. If the centred row does not fit, it begins twice the
// overhang from the left edge of the work area, or it ends one gap short of the right edge, whatever the overhang is;
// this is the result of the formula, within the pixel lost to truncation. An overhang that wrapped around is harmless,
// because the position is computed in 32-bit arithmetic that wraps.
[[nodiscard]] ItemRow itemRow(const RECT& largeCard, const RECT& workArea, int itemWidth, int itemCount, int overhang,
                              double ratio);

}  // namespace geometry
