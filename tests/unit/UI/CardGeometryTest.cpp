// The layout rules on numbers, and on random cases against an independent implementation of the same rules.
#include "UI/CardGeometry.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>

bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
void PrintTo(const RECT& rect, std::ostream* out) {
    *out << '(' << rect.left << ", " << rect.top << ")-(" << rect.right << ", " << rect.bottom << ')';
}

namespace {

using geometry::ItemRow;

constexpr RECT kScreen{0, 0, 1280, 800};

RECT rect(LONG left, LONG top, LONG right, LONG bottom) {
    return {left, top, right, bottom};
}

TEST(ImageRatio, NarrowWorkAreaGivesEveryCardItsShare) {
    const geometry::Ratio result = geometry::imageRatio(1280, 15, 1.25);
    EXPECT_DOUBLE_EQ(result.cardWidth, 1280 * 0.85 / 15);
    EXPECT_DOUBLE_EQ(result.ratio, 1280 * 0.85 / 15 / 96.0);
}

TEST(ImageRatio, ScreenScaleCapsIt) {
    EXPECT_DOUBLE_EQ(geometry::imageRatio(3840, 3, 1.0).ratio, 1.0);
    EXPECT_DOUBLE_EQ(geometry::imageRatio(3840, 3, 1.2).ratio, 1.2);
}

TEST(ImageRatio, NeverAboveOneAndAQuarter) {
    EXPECT_DOUBLE_EQ(geometry::imageRatio(7680, 1, 2.0).ratio, 1.25);
}

TEST(CardStrip, StandsCentredAtTheTop) {
    const geometry::Strip strip = geometry::cardStrip(kScreen, 10, 1.0, false);
    EXPECT_EQ(strip.cardWidth, 96);
    EXPECT_EQ(strip.place, rect(160, 0, 1120, 112));  // trunc(96 * 0.615 * 1.9) = 112
}

TEST(CardStrip, StandsCentredAtTheBottom) {
    const geometry::Strip strip = geometry::cardStrip(rect(0, 30, 1280, 770), 10, 1.0, true);
    EXPECT_EQ(strip.place, rect(160, 658, 1120, 770));
}

TEST(CardStrip, WidthsAreTruncatedBeforeTheyAreAddedUp) {
    const geometry::Strip strip = geometry::cardStrip(kScreen, 3, 0.999, false);
    EXPECT_EQ(strip.cardWidth, 95);
    EXPECT_EQ(strip.place.right - strip.place.left, 3 * 95);
    EXPECT_EQ(strip.place.bottom, 111);  // trunc(95 * 0.615 * 1.9)
}

TEST(CardStrip, WiderThanTheWorkAreaHalvesTowardZero) {
    EXPECT_EQ(geometry::cardStrip(rect(0, 0, 95, 100), 1, 1.0, false).place.left, 0);
    EXPECT_EQ(geometry::cardStrip(rect(0, 0, 93, 100), 1, 1.0, false).place.left, -1);
}

TEST(CardStrip, WorkAreaThatBeginsElsewhereCarriesTheStripAlong) {
    EXPECT_EQ(geometry::cardStrip(rect(-1280, 100, 0, 900), 2, 1.0, false).place, rect(-736, 100, -544, 212));
}

TEST(CardStrip, CardsStandSideBySide) {
    const geometry::Strip strip = geometry::cardStrip(kScreen, 5, 0.75, false);
    EXPECT_EQ(geometry::cardRect(strip, 0), rect(0, 0, 72, 84));
    EXPECT_EQ(geometry::cardRect(strip, 4), rect(288, 0, 360, 84));
}

TEST(CardStrip, OnlyTheBandOfPicturesTakesTheMouse) {
    EXPECT_EQ(geometry::throughArea(rect(0, 0, 960, 112), 1.0, false), rect(0, 59, 960, 112));
    EXPECT_EQ(geometry::throughArea(rect(0, 0, 960, 112), 1.0, true), rect(0, 0, 960, 53));
    EXPECT_EQ(geometry::throughArea(rect(0, 0, 720, 84), 0.75, false), rect(0, 44, 720, 84));
    // The rule subtracts the top of the area from its bottom as well.
    EXPECT_EQ(geometry::throughArea(rect(0, 10, 960, 112), 1.0, true), rect(0, 10, 960, 43));
}

TEST(HoverStrip, IsFourPixelsAtTheSameEdge) {
    EXPECT_EQ(geometry::hoverStrip(kScreen, 10, 1.0, false).place, rect(160, 0, 1120, 4));
    EXPECT_EQ(geometry::hoverStrip(kScreen, 10, 1.0, true).place, rect(160, 796, 1120, 800));
    EXPECT_EQ(geometry::hoverStrip(kScreen, 10, 0.5, true).place, rect(400, 796, 880, 800));
}

TEST(CardParts, PictureLiesAtTheTopEdge) {
    const geometry::Card parts = geometry::cardParts(rect(96, 0, 192, 112), 1.0, false);
    EXPECT_EQ(parts.image, rect(96, 0, 192, 59));
    EXPECT_EQ(parts.desc, rect(96, 62, 192, 112));
    EXPECT_EQ(parts.caption, rect(96, 5, 192, 21));
}

TEST(CardParts, PictureLiesAtTheBottomEdge) {
    const geometry::Card parts = geometry::cardParts(rect(96, 0, 192, 112), 1.0, true);
    EXPECT_EQ(parts.image, rect(96, 53, 192, 112));
    EXPECT_EQ(parts.desc, rect(96, 0, 192, 50));
    EXPECT_EQ(parts.caption, rect(96, 58, 192, 74));
}

TEST(CardParts, ScaledLengthsAreTruncated) {
    const geometry::Card parts = geometry::cardParts(rect(0, 0, 71, 82), 0.75, false);
    EXPECT_EQ(parts.image, rect(0, 0, 71, 43));        // 71 * 0.615 = 43.665
    EXPECT_EQ(parts.desc, rect(0, 45, 71, 82));        // + trunc(2.25)
    EXPECT_EQ(parts.caption, rect(0, 3, 71, 3 + 12));  // trunc(3.75)
}

TEST(CardParts, AtTheTopTheHeightItselfIsTheBottomEdge) {
    const geometry::Card parts = geometry::cardParts(rect(0, 40, 96, 152), 1.0, false);
    EXPECT_EQ(parts.image, rect(0, 40, 96, 59));
    EXPECT_EQ(parts.desc, rect(0, 62, 96, 152));
}

TEST(LargeCard, CoversItsCard) {
    EXPECT_EQ(geometry::largeCard(rect(160, 0, 256, 112), 1.0, false), rect(160, 0, 256, 144));
    EXPECT_EQ(geometry::largeCard(rect(160, 0, 232, 84), 0.75, false), rect(160, 0, 232, 108));
}

TEST(LargeCard, AtTheBottomItLeavesRoomForItems) {
    EXPECT_EQ(geometry::largeCard(rect(160, 688, 256, 800), 1.0, true), rect(160, 500, 256, 644));
    EXPECT_EQ(geometry::largeCard(rect(160, 716, 232, 800), 0.75, true), rect(160, 575, 232, 683));
}

TEST(LargeCard, TextsHaveTheirPlaces) {
    const geometry::LargeCardTexts texts = geometry::largeCardTexts(rect(0, 0, 96, 144), 1.0);
    EXPECT_EQ(texts.caption, rect(4, 10, 92, 26));
    EXPECT_EQ(texts.desc, rect(4, 26, 92, 74));
    EXPECT_EQ(texts.text, rect(4, 95, 92, 140));
}

TEST(LargeCard, LinesAreScaledBeforeTheyAreCounted) {
    const geometry::LargeCardTexts texts = geometry::largeCardTexts(rect(0, 0, 76, 115), 0.8);
    EXPECT_EQ(texts.caption, rect(3, 8, 73, 20));
    EXPECT_EQ(texts.desc, rect(3, 20, 73, 56));  // 3 * trunc(12.8), not trunc(38.4)
    EXPECT_EQ(texts.text, rect(3, 76, 73, 112));
}

TEST(ItemRow, LiesCentredUnderTheEnlargedCard) {
    const ItemRow row = geometry::itemRow(rect(600, 0, 696, 144), kScreen, 72, 3, 14, 1.0);
    EXPECT_EQ(row.pitch, 82);
    EXPECT_EQ(row.allWidth, 236);
    EXPECT_EQ(row.y, 154);
    EXPECT_EQ(row.x, 600 - (600 - 696 + 236) / 2);  // 530
    EXPECT_DOUBLE_EQ(row.leftMax, (648.0 - 14) / 82);
    EXPECT_DOUBLE_EQ(row.rightMax, (1280.0 - 648 - 14) / 82);
}

TEST(ItemRow, NarrowerThanTheCardHalvesTowardZero) {
    // 600 - 696 + 57 = -39, halved to -19.
    EXPECT_EQ(geometry::itemRow(rect(600, 0, 696, 144), kScreen, 57, 1, 0, 1.0).x, 619);
}

TEST(ItemRow, StartsTwiceTheOverhangFromTheLeftEdge) {
    const ItemRow row = geometry::itemRow(rect(0, 0, 96, 144), kScreen, 72, 3, 14, 1.0);
    EXPECT_LT(row.leftMax, 1.5);
    // centre 48, less trunc(82 * (48 - 14) / 82), plus 14: the caption of the first item is a whole overhang away.
    EXPECT_EQ(row.x, 28);
    for (const int overhang : {-20, 0, 5, 30}) {
        EXPECT_EQ(geometry::itemRow(rect(0, 0, 96, 144), kScreen, 72, 3, overhang, 1.0).x, 2 * overhang);
    }
}

TEST(ItemRow, EndsOneGapShortOfTheRightEdgeWhateverTheOverhang) {
    const ItemRow row = geometry::itemRow(rect(1184, 0, 1280, 144), kScreen, 72, 4, 14, 1.0);
    // centre 1232, less trunc((4 - 34 / 82) * 82) = 294, plus 14.
    EXPECT_EQ(row.x, 952);
    EXPECT_EQ(row.x + row.allWidth, 1270);
    // The overhang is subtracted and added again: the caption of the last item may stick out of the screen.
    for (const int overhang : {-20, 0, 5, 30}) {
        EXPECT_EQ(geometry::itemRow(rect(1184, 0, 1280, 144), kScreen, 72, 4, overhang, 1.0).x, 952);
    }
}

TEST(ItemRow, LeftEdgeWinsWhereBothAreTooNear) {
    const ItemRow row = geometry::itemRow(rect(600, 0, 696, 144), kScreen, 72, 20, 14, 1.0);
    EXPECT_LT(row.leftMax, 10.0);
    EXPECT_LT(row.rightMax, 10.0);
    EXPECT_EQ(row.x, 28);
    EXPECT_GE(row.allWidth, 1280);
}

TEST(ItemRow, HalfCountThatJustFitsStaysCentred) {
    // The centre is 123 pixels from the edge: exactly 1.5 pitches.
    const ItemRow row = geometry::itemRow(rect(75, 0, 171, 144), kScreen, 72, 3, 0, 1.0);
    EXPECT_DOUBLE_EQ(row.leftMax, 1.5);
    EXPECT_EQ(row.x, 75 - (75 - 171 + 236) / 2);
}

TEST(ItemRow, WorkAreaToTheLeftOfTheScreen) {
    const ItemRow row = geometry::itemRow(rect(-1280, 0, -1184, 144), rect(-1280, 0, 0, 800), 72, 3, 14, 1.0);
    EXPECT_EQ(row.x, -1280 + 28);
}

TEST(ItemRow, OverhangThatWrappedAroundWrapsBack) {
    // (50 - 72) / 2 in unsigned arithmetic.
    const int overhang = static_cast<int>((50U - 72U) / 2U);
    ASSERT_EQ(overhang, 0x7FFFFFF5);
    const ItemRow row = geometry::itemRow(rect(600, 0, 696, 144), kScreen, 72, 2, overhang, 1.0);
    EXPECT_LT(row.leftMax, 0.0);
    EXPECT_EQ(row.x, -22);  // the work area's edge plus twice the overhang, in 32 bits
}

TEST(ItemRow, PlacesOfItemsAreAPitchApartAndWrapAroundToo) {
    ItemRow row{};
    row.x = 100;
    row.pitch = 82;
    EXPECT_EQ(row.left(0), 100);
    EXPECT_EQ(row.left(3), 346);
    row.x = 0x7FFFFFFF;
    EXPECT_EQ(row.left(1), static_cast<int>(0x80000051U));
}

TEST(ItemRow, ItemsOfNoSizeAreNoDivisionByZero) {
    for (const LONG left : {0, 600, 1279}) {
        const ItemRow row = geometry::itemRow(rect(left, 0, left + 1, 1), kScreen, 0, 4, 50, 0.01);
        EXPECT_EQ(row.pitch, 0);
        EXPECT_EQ(row.allWidth, 0);
        EXPECT_GE(row.x, kScreen.left);
        EXPECT_LE(row.x, kScreen.right + 50);
    }
}

// ---------------------------------------------------------------------------------------------------------------------

class RandomLayout : public testing::Test {
 protected:
    static constexpr int kCases = 20000;

    RandomLayout() : m_seed(std::random_device{}()), m_engine(m_seed) {
        RecordProperty("seed", std::to_string(m_seed));
    }

    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    double ratio() { return std::uniform_real_distribution<double>(0.1, 1.25)(m_engine); }
    bool coin() { return between(0, 1) == 1; }
    RECT workArea() {
        const int left = between(-2000, 2000);
        const int top = between(-500, 500);
        return {left, top, left + between(200, 4000), top + between(200, 2400)};
    }
    // Printed with every failure.
    [[nodiscard]] std::string trace(int i) const {
        return "seed " + std::to_string(m_seed) + ", case " + std::to_string(i);
    }

    const unsigned m_seed;
    std::mt19937 m_engine;
};

int cut(double value) {
    return static_cast<int>(std::trunc(value));
}

TEST_F(RandomLayout, StripAndCardsAreAsThePlainRuleSays) {
    for (int i = 0; i < kCases; ++i) {
        SCOPED_TRACE(trace(i));
        const RECT area = workArea();
        const int count = between(1, 20);
        const double r = ratio();
        const bool bottom = coin();
        const geometry::Strip strip = geometry::cardStrip(area, count, r, bottom);

        const int cw = cut(r * 96.0);
        const int ch = cut(static_cast<double>(cw) * 0.615 * 1.9);
        const int x = area.left + (area.right - count * cw - area.left) / 2;
        const int y = bottom ? area.bottom - ch : area.top;
        ASSERT_EQ(strip.place, rect(x, y, x + count * cw, y + ch));

        const int index = between(0, count - 1);
        const RECT card = geometry::cardRect(strip, index);
        ASSERT_EQ(card, rect(index * cw, 0, (index + 1) * cw, ch));

        const geometry::Card parts = geometry::cardParts(card, r, bottom);
        const int h = cut(cw * 0.615);
        ASSERT_EQ(parts.image, bottom ? rect(card.left, ch - h, card.right, ch) : rect(card.left, 0, card.right, h));
        ASSERT_EQ(parts.desc, bottom ? rect(card.left, 0, card.right, ch - h - cut(r * 3.0))
                                     : rect(card.left, h + cut(r * 3.0), card.right, ch));
        const int captionTop = parts.image.top + cut(r * 5.0);
        ASSERT_EQ(parts.caption, rect(card.left, captionTop, card.right, captionTop + cut(r * 16.0)));
    }
}

TEST_F(RandomLayout, EnlargedCardIsAsThePlainRuleSays) {
    for (int i = 0; i < kCases; ++i) {
        SCOPED_TRACE(trace(i));
        const double r = ratio();
        const int x = between(-3000, 3000);
        const int y = between(-1000, 1000);
        const RECT card = rect(x, y, x + cut(r * 96.0), y + 100);
        const bool bottom = coin();
        const int top = bottom ? card.bottom - cut(r * 300.0) : card.top;
        const RECT place = geometry::largeCard(card, r, bottom);
        ASSERT_EQ(place, rect(x, top, x + cut(r * 96.0), top + cut(r * 144.0)));

        const RECT client = rect(0, 0, place.right - place.left, place.bottom - place.top);
        const geometry::LargeCardTexts texts = geometry::largeCardTexts(client, r);
        const int s4 = cut(r * 4.0);
        const int s16 = cut(r * 16.0);
        ASSERT_EQ(texts.caption, rect(s4, cut(r * 10.0), client.right - s4, cut(r * 10.0) + s16));
        ASSERT_EQ(texts.desc, rect(s4, cut(r * 26.0), client.right - s4, cut(r * 26.0) + 3 * s16));
        ASSERT_EQ(texts.text, rect(s4, cut(r * 95.0), client.right - s4, client.bottom - s4));
    }
}

TEST_F(RandomLayout, ItemRowIsAsThePlainRuleSays) {
    std::array<int, 3> branches{};
    for (int i = 0; i < kCases; ++i) {
        SCOPED_TRACE(trace(i));
        const RECT area = workArea();
        const double r = ratio();
        const int left = between(area.left, area.right);
        const RECT large = rect(left, area.top, left + cut(r * 96.0), area.top + cut(r * 144.0));
        const int w = between(1, 300);
        const int n = between(1, 20);
        const int m = between(-50, 60);
        const ItemRow row = geometry::itemRow(large, area, w, n, m, r);

        const int gap = cut(r * 10.0);
        const int pitch = w + gap;
        const int allWidth = pitch * n - gap;
        const int c = large.left + (large.right - large.left) / 2;
        const double leftMax = static_cast<double>(c - area.left - m) / pitch;
        const double rightMax = static_cast<double>(area.right - c - m) / pitch;
        int x = large.left - (large.left - large.right + allWidth) / 2;
        std::size_t branch = 0;
        if (n * 0.5 > leftMax) {
            x = c - cut(pitch * leftMax) + m;
            branch = 1;
        } else if (n * 0.5 > rightMax) {
            x = c - cut((n - rightMax) * pitch) + m;
            branch = 2;
        }
        ++branches[branch];
        ASSERT_EQ(row.x, x);
        // What the formula yields at the edges; truncation takes at most a pixel.
        if (branch == 1) {
            ASSERT_NEAR(row.x, area.left + 2 * m, 1);
        } else if (branch == 2) {
            ASSERT_NEAR(row.x + row.allWidth, area.right - gap, 1);
        }
        ASSERT_EQ(row.y, large.bottom + gap);
        ASSERT_EQ(row.pitch, pitch);
        ASSERT_EQ(row.allWidth, allWidth);
        ASSERT_EQ(row.leftMax, leftMax);
        ASSERT_EQ(row.rightMax, rightMax);
    }
    for (const int cases : branches) {
        EXPECT_GT(cases, kCases / 50) << "seed " << m_seed << ": the random cases miss one of the three rules";
    }
}

}  // namespace
