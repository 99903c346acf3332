#include "functions/Mute.h"

#include <gtest/gtest.h>

#include "system/fake/FakeAudio.h"

namespace win {
namespace {

class Mute : public testing::Test {
 protected:
    std::shared_ptr<AudioState> m_pSound = std::make_shared<AudioState>();
    CMute m_function{std::make_unique<CFakeAudio>(m_pSound)};
};

TEST_F(Mute, IsOfferedWhenThereIsASoundOutput) {
    EXPECT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.items(), FENWYN_TWO_ITEMS);
}

TEST_F(Mute, SaysThatThereIsNoSoundOutput) {
    m_pSound->bDevice = false;
    EXPECT_EQ(m_function.initialize(), L"There is no sound output device.");
}

TEST_F(Mute, CurrentItemFollowsChangesMadeElsewhere) {
    EXPECT_EQ(m_function.currentItem(), 1);
    m_pSound->bMuted = true;
    EXPECT_EQ(m_function.currentItem(), 0);
    m_pSound->bDevice = false;
    EXPECT_EQ(m_function.currentItem(), std::nullopt);
}

TEST_F(Mute, ItemZeroMutesAndItemOneEndsIt) {
    EXPECT_TRUE(m_function.select(0));
    EXPECT_TRUE(m_pSound->bMuted);
    EXPECT_TRUE(m_function.select(1));
    EXPECT_FALSE(m_pSound->bMuted);
}

TEST_F(Mute, RefusesItemsThatThereAreNot) {
    EXPECT_FALSE(m_function.select(-1));
    EXPECT_FALSE(m_function.select(2));
    EXPECT_FALSE(m_pSound->bMuted);
}

TEST_F(Mute, TellsWhenTheDeviceRefuses) {
    m_pSound->bRefuses = true;
    EXPECT_FALSE(m_function.select(0));
}

}  // namespace
}  // namespace win
