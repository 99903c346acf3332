// Letters as masks.
#include "common/GlyphMasks.h"

#include <gtest/gtest.h>

#include <algorithm>

// The picture of an em dash is a filled rectangle, in every width: also in those that fill the words of a row exactly.
TEST(GlyphMasks, EveryWidthIsReadRowByRow) {
    constexpr wchar_t kDash = L'\u2014';
    int nFullWords = 0;
    for (int size = 10; size < 80; ++size) {
        GlyphFont font({L"Tahoma", 0, static_cast<float>(size)});
        const GlyphMask& mask = font.glyph(kDash);
        ASSERT_EQ(mask.points.size(), static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height));
        EXPECT_GT(mask.width, 0);
        EXPECT_GT(mask.height, 1);
        EXPECT_TRUE(std::ranges::all_of(mask.points, [](std::uint8_t point) { return point == 1; })) << size;
        nFullWords += mask.width % 32 == 0 ? 1 : 0;
    }
    EXPECT_GT(nFullWords, 0);
}
