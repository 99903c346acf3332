#include "functions/Mute.h"

#include <gtest/gtest.h>

#include "common/Handle.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeAudio.h"
#include "system/fake/FakeOfferMemory.h"

namespace win {
namespace {

class Mute : public testing::Test {
 protected:
    std::shared_ptr<AudioState> m_pSound = std::make_shared<AudioState>();
    CMute m_function{std::make_shared<CFakeAudio>(m_pSound)};
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
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.currentItem(), 1);
    m_pSound->bMuted = true;
    EXPECT_EQ(m_function.currentItem(), 0);
    m_pSound->bDevice = false;
    EXPECT_EQ(m_function.currentItem(), std::nullopt);
}

TEST_F(Mute, ItemZeroMutesAndItemOneEndsIt) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(m_function.select(0));
    EXPECT_TRUE(m_pSound->bMuted);
    EXPECT_TRUE(m_function.select(1));
    EXPECT_FALSE(m_pSound->bMuted);
}

TEST_F(Mute, RefusesItemsThatThereAreNot) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_FALSE(m_function.select(-1));
    EXPECT_FALSE(m_function.select(2));
    EXPECT_FALSE(m_pSound->bMuted);
}

TEST_F(Mute, TellsWhenTheDeviceRefuses) {
    ASSERT_EQ(m_function.initialize(), L"");
    m_pSound->bRefuses = true;
    EXPECT_FALSE(m_function.select(0));
}

// A sound system that is only being started.
class CStartingAudio final : public IAudio {
 public:
    std::optional<bool> muted() override {
        ::WaitForSingleObject(hStarted.get(), kDeadlineMs);
        return false;
    }
    bool setMuted(bool /*bMuted*/) override { return muted().has_value(); }

    common::UniqueHandle hStarted{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

TEST_F(Mute, NobodyWaitsForASoundSystemThatStarts) {
    const auto pAudio = std::make_shared<CStartingAudio>();
    CMute function(pAudio);
    function.remember(std::make_shared<CFakeOfferMemory>(CFakeOfferMemory::Yes));
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.currentItem(), std::nullopt);
    EXPECT_FALSE(function.select(0));
    EXPECT_LT(::GetTickCount64() - start, kFirstAnswerMs);
    ::SetEvent(pAudio->hStarted.get());
    EXPECT_TRUE(soon([&] { return function.currentItem() == 1; }));
    EXPECT_TRUE(function.select(0));
}

}  // namespace
}  // namespace win
