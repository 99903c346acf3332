#include "Logic/FuncX/OutputRules.h"

#include <gmock/gmock.h>

#include <random>

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace outputrules;

namespace {

std::vector<DWORD> values(DWORD dwFirst, DWORD dwSecond) {
    std::vector<DWORD> found;
    for (const functiontables::Item* pRow : offeredOutputs(dwFirst, dwSecond)) {
        found.push_back(pRow->dwValue);
    }
    return found;
}

// The rule in words: from the last entry to the first, checking the size after each removal.
std::vector<int> plainFilter(std::vector<int> entries, const std::vector<bool>& keep, std::size_t limit) {
    for (int position = static_cast<int>(entries.size()) - 1; position >= 0; --position) {
        if (keep[static_cast<std::size_t>(position)]) {
            continue;
        }
        entries.erase(entries.begin() + position);
        if (entries.size() <= limit) {
            return entries;
        }
    }
    return entries;
}

}  // namespace

TEST(OutputRules, BitsGiveItemsInTableOrder) {
    EXPECT_THAT(values(0x5, 0x80000001), ElementsAre(0, 2, 32, 63));
    const auto rows = offeredOutputs(0x5, 0x80000001);
    EXPECT_THAT((std::vector<UINT>{rows[0]->uTextId, rows[1]->uTextId, rows[2]->uTextId, rows[3]->uTextId}),
                ElementsAre(310, 312, 350, 376));
    EXPECT_THAT(values(0, 0), IsEmpty());
    EXPECT_EQ(values(~DWORD{0}, ~DWORD{0}).size(), 46U);
    EXPECT_THAT(values(0xFFF80000, 0x7C000000), IsEmpty());  // bits of no row
}

TEST(OutputRules, EveryMaskAgreesWithAPlainReading) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int run = 0; run < 2000; ++run) {
        const DWORD dwFirst = random();
        const DWORD dwSecond = random();
        std::vector<DWORD> expected;
        for (DWORD bit = 0; bit < 19; ++bit) {
            if ((dwFirst >> bit & 1) != 0) {
                expected.push_back(bit);
            }
        }
        for (DWORD bit = 0; bit < 32; ++bit) {
            if ((dwSecond >> bit & 1) != 0 && (bit < 26 || bit == 31)) {
                expected.push_back(32 + bit);
            }
        }
        ASSERT_EQ(values(dwFirst, dwSecond), expected) << dwFirst << " " << dwSecond;
    }
}

TEST(OutputRules, PicturesAreThoseOfTheTable) {
    const auto images = [](DWORD dwFirst, DWORD dwSecond) {
        const auto rows = offeredOutputs(dwFirst, dwSecond);
        return rows.size() == 1 ? std::pair(rows[0]->uImageId1, rows[0]->uImageId2) : std::pair(0U, 0U);
    };
    EXPECT_EQ(images(0x1, 0), std::pair(740U, 739U));
    EXPECT_EQ(images(0x400, 0), std::pair(700U, 745U));
    EXPECT_EQ(images(0x20000, 0), std::pair(768U, 769U));
    EXPECT_EQ(images(0x40000, 0), std::pair(790U, 787U));
    EXPECT_EQ(images(0, 0x400000), std::pair(772U, 773U));
    EXPECT_EQ(images(0, 0x2000000), std::pair(786U, 791U));
    EXPECT_EQ(images(0, 0x80000000), std::pair(726U, 725U));
}

TEST(OutputRules, AWideRowShrinksByTheShareThatFits) {
    EXPECT_EQ(totalItemWidth(20, 1.0, 0), 1640);
    EXPECT_DOUBLE_EQ(shrinkRatio(1640, 1280).value(), 1280.0 / 1640.0);
    EXPECT_DOUBLE_EQ(shrinkRatio(1280, 1280).value(), 1.0);  // exactly the width that counts as too wide
    EXPECT_FALSE(shrinkRatio(1279, 1280).has_value());
    EXPECT_FALSE(shrinkRatio(0, 0).has_value());
    EXPECT_FALSE(shrinkRatio(-5, -10).has_value());
}

TEST(OutputRules, TheItemWidthIsTruncatedAndTheOverhangCountsTwice) {
    EXPECT_EQ(totalItemWidth(3, 0.999, 14), 3 * 81 + 28);
    EXPECT_EQ(totalItemWidth(2, 1.25, 0), 204);
    // (100 - 120) / 2, in unsigned arithmetic.
    const int wrapped = static_cast<int>((100U - 120U) / 2);
    EXPECT_EQ(totalItemWidth(4, 1.0, wrapped), 4 * 82 - 20);
}

TEST(OutputRules, EntriesAreLimitedWhenTheirScaledRowFillsTheScreen) {
    EXPECT_FALSE(entryLimit(15, 1.0, 1280).has_value());  // 1230
    EXPECT_EQ(entryLimit(16, 1.0, 1280).value(), 15U);    // 1312
    EXPECT_EQ(entryLimit(13, 1.25, 1280).value(), 15U);   // 1326: the bound itself is unscaled
    EXPECT_FALSE(entryLimit(31, 0.5, 1280).has_value());  // 1271
    EXPECT_EQ(entryLimit(10, 1.0, 820).value(), 10U);     // just as wide
}

TEST(OutputRules, AbsurdCountsDoNotOverflow) {
    EXPECT_EQ(entryLimit(0x7FFFFFFF, 1.25, 1280).value(), 15U);
    EXPECT_FALSE(entryLimit(-1, 1.0, 1280).has_value());
    EXPECT_FALSE(entryLimit(-0x7FFFFFFF - 1, 1.25, 1280).has_value());
}

TEST(OutputRules, FavouritesGoFromTheEnd) {
    // Eight entries, the last four favourites, the last one current.
    EXPECT_THAT(entriesToDrop({true, true, true, true, false, false, false, true}, 6), ElementsAre(6, 5));
    EXPECT_THAT(entriesToDrop({true, true, true}, 2), IsEmpty());
    EXPECT_THAT(entriesToDrop({false, false, false}, 0), ElementsAre(2, 1, 0));
    EXPECT_THAT(entriesToDrop({false, true, false}, 9), ElementsAre(2));
    EXPECT_THAT(entriesToDrop({}, 0), IsEmpty());
}

TEST(OutputRules, FilteringAgreesWithAPlainWalk) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int run = 0; run < 5000; ++run) {
        const std::size_t count = random() % 24;
        const std::size_t limit = random() % 26;
        std::vector<int> entries;
        std::vector<bool> keep;
        for (std::size_t i = 0; i < count; ++i) {
            entries.push_back(static_cast<int>(i));
            keep.push_back(random() % 3 == 0);
        }
        std::vector<int> filtered = entries;
        for (const std::size_t position : entriesToDrop(keep, limit)) {
            filtered.erase(filtered.begin() + static_cast<std::ptrdiff_t>(position));
        }
        ASSERT_EQ(filtered, plainFilter(entries, keep, limit)) << "run " << run;
    }
}

TEST(OutputRules, TheSetupNumberHoldsModeAndModes) {
    const DWORD dwModes = setupModeBit(1) | setupModeBit(2);
    EXPECT_EQ(setupNumber(2, dwModes), 131078U);
    EXPECT_EQ(setupModeBit(33), 2U);  // modulo 32
    EXPECT_EQ(setupModeBit(-1), 0x80000000U);
    EXPECT_EQ(setupNumber(0, 0xFFFF0003), 3U);  // only the low half of the modes
}

}  // namespace functest
