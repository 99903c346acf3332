// How often a held key is checked.
#include "LostKeyRhythm.h"

#include <gtest/gtest.h>

namespace companions {

using hotkey::CLostKeyRhythm;

TEST(LostKeyRhythm, LooksEverMoreSeldomWhileAKeyIsHeld) {
    CLostKeyRhythm rhythm;
    rhythm.keyCame(false);
    DWORD waited = 0;
    int looks = 0;
    for (; waited < 60000; ++looks) {
        waited += rhythm.interval();
        rhythm.looked(false);
    }
    EXPECT_LE(looks, 45) << "in a minute";
    EXPECT_EQ(rhythm.interval(), CLostKeyRhythm::kLast);
}

TEST(LostKeyRhythm, ANewKeyIsLookedAtSoon) {
    CLostKeyRhythm rhythm;
    for (int i = 0; i < 10; ++i) {
        rhythm.looked(false);
    }
    rhythm.keyCame(true);
    EXPECT_EQ(rhythm.interval(), CLostKeyRhythm::kLast) << "a repeat is no new key";
    rhythm.keyCame(false);
    EXPECT_EQ(rhythm.interval(), CLostKeyRhythm::kFirst);
}

TEST(LostKeyRhythm, AMissingKeyIsLookedAtAgainSoon) {
    CLostKeyRhythm rhythm;
    for (int i = 0; i < 10; ++i) {
        rhythm.looked(false);
    }
    rhythm.looked(true);
    EXPECT_EQ(rhythm.interval(), CLostKeyRhythm::kFirst);
}

}  // namespace companions
