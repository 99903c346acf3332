#include "UI/CardGeometry.h"

#include <algorithm>
#include <cstdint>

#include "Logic/ZelCommonFunc.h"
#include "res/Pictures.h"

namespace geometry {

namespace {

constexpr int trunc(double value) {
    return truncToInt(value);
}

// For values that may wrap around. Items with zero width yield not-a-number here.
constexpr std::int64_t truncWide(double value) {
    return value == value ? static_cast<std::int64_t>(value) : 0;
}

// 32-bit arithmetic that wraps; the positions have always been computed like this.
constexpr int wrapped(std::int64_t value) {
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

constexpr int widthOf(const RECT& rect) {
    return rect.right - rect.left;
}

// A strip of the given height at the chosen edge, centred over the work area.
Strip stripAtEdge(const RECT& workArea, int cardCount, double ratio, bool bottom, int height) {
    const int card = cardWidth(ratio);
    const int total = cardCount * card;
    const int x = workArea.left + (workArea.right - total - workArea.left) / 2;
    const int y = bottom ? workArea.bottom - height : workArea.top;
    return {{x, y, x + total, y + height}, card};
}

}  // namespace

Ratio imageRatio(int workAreaWidth, int cardCount, double dpiScale) {
    const double card = workAreaWidth * kUsableWidth / cardCount;
    return {card, std::min({card / kCardWidth, dpiScale, kMaxRatio})};
}

int cardWidth(double ratio) {
    return trunc(ratio * kCardWidth);
}

Strip cardStrip(const RECT& workArea, int cardCount, double ratio, bool bottom) {
    const int height = trunc(cardWidth(ratio) * kPictureAspect * kStripAspect);
    return stripAtEdge(workArea, cardCount, ratio, bottom, height);
}

Strip hoverStrip(const RECT& workArea, int cardCount, double ratio, bool bottom) {
    return stripAtEdge(workArea, cardCount, ratio, bottom, kHoverStripHeight);
}

RECT cardRect(const Strip& strip, int index) {
    const int left = index * strip.cardWidth;
    return {left, 0, left + strip.cardWidth, strip.place.bottom - strip.place.top};
}

RECT throughArea(const RECT& client, double ratio, bool bottom) {
    RECT area = client;
    const int band = trunc(kPictureBand * ratio);
    if (bottom) {
        area.bottom -= band + area.top;
    } else {
        area.top = band;
    }
    return area;
}

Card cardParts(const RECT& card, double ratio, bool bottom) {
    const int height = trunc(widthOf(card) * kPictureAspect);
    const int gap = trunc(ratio * 3.0);
    Card parts{};
    if (bottom) {
        parts.image = {card.left, card.bottom - height, card.right, card.bottom};
        parts.desc = {card.left, card.top, card.right, parts.image.top - gap};
    } else {
        // The bottom edge equals the height: this is correct because cards are at the strip's top edge.
        parts.image = {card.left, card.top, card.right, height};
        parts.desc = {card.left, height + gap, card.right, card.bottom};
    }
    parts.caption = parts.image;
    parts.caption.top += trunc(ratio * 5.0);
    parts.caption.bottom = parts.caption.top + trunc(ratio * 16.0);
    return parts;
}

RECT latchMark(const RECT& lastImage, double ratio) {
    const int size = trunc(ratio * 16.0);
    const int margin = trunc(ratio * 5.0);
    const int right = lastImage.right - margin;
    const int bottom = lastImage.bottom - margin;
    return {right - size, bottom - size, right, bottom};
}

RECT largeCard(const RECT& cardOnScreen, double ratio, bool bottom) {
    const int x = cardOnScreen.left;
    const int y = bottom ? cardOnScreen.bottom - trunc(ratio * 300.0) : cardOnScreen.top;
    return {x, y, x + trunc(ratio * kCardWidth), y + trunc(ratio * kLargeCardHeight)};
}

LargeCardTexts largeCardTexts(const RECT& client, double ratio) {
    const int line = trunc(ratio * 16.0);
    const int margin = trunc(ratio * 4.0);
    const int left = client.left + margin;
    const int right = client.right - margin;
    const int caption = trunc(ratio * 10.0);
    const int desc = trunc(ratio * 26.0);
    return {{left, caption, right, caption + line},
            {left, desc, right, desc + 3 * line},
            {left, trunc(ratio * 95.0), right, client.bottom - margin}};
}

int ItemRow::left(int item) const {
    return wrapped(x + std::int64_t{pitch} * item);
}

ItemRow itemRow(const RECT& largeCard, const RECT& workArea, int itemWidth, int itemCount, int overhang, double ratio) {
    const int gap = trunc(ratio * kItemGap);
    ItemRow row{};
    row.y = largeCard.bottom + gap;
    row.pitch = itemWidth + gap;
    row.allWidth = row.pitch * itemCount - gap;

    const std::int64_t centre = largeCard.left + widthOf(largeCard) / 2;
    row.leftMax = static_cast<double>(centre - workArea.left - overhang) / row.pitch;
    row.rightMax = static_cast<double>(workArea.right - centre - overhang) / row.pitch;

    const double half = itemCount * 0.5;
    if (half > row.leftMax) {
        row.x = wrapped(centre - truncWide(row.pitch * row.leftMax) + overhang);
    } else if (half > row.rightMax) {
        row.x = wrapped(centre - truncWide((itemCount - row.rightMax) * row.pitch) + overhang);
    } else {
        row.x = largeCard.left - (largeCard.left - largeCard.right + row.allWidth) / 2;
    }
    return row;
}

}  // namespace geometry
