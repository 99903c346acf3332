#include "NotificationQueue.h"

#include <gtest/gtest.h>

using hotkey::CNotificationQueue;
using hotkey::Notification;

namespace {

bool isSignalled(HANDLE event) {
    return ::WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

}  // namespace

TEST(NotificationQueue, HandsOutInOrder) {
    CNotificationQueue queue;
    EXPECT_FALSE(queue.pop());
    EXPECT_TRUE(queue.make(0));
    EXPECT_TRUE(queue.make(0x3B));
    queue.breakOf(0x3B);
    queue.breakOf(0);
    EXPECT_EQ(queue.pop(), (Notification{0, false}));
    EXPECT_EQ(queue.pop(), (Notification{0x3B, false}));
    EXPECT_EQ(queue.pop(), (Notification{0x3B, true}));
    EXPECT_EQ(queue.pop(), (Notification{0, true}));
    EXPECT_FALSE(queue.pop());
}

TEST(NotificationQueue, SignalsWhatWasStored) {
    CNotificationQueue queue;
    EXPECT_FALSE(isSignalled(queue.filledEvent()));
    EXPECT_TRUE(queue.make(1));
    EXPECT_TRUE(isSignalled(queue.filledEvent()));
    queue.breakOf(1);
    EXPECT_TRUE(isSignalled(queue.filledEvent()));
    queue.latchChanged(true);
    EXPECT_TRUE(isSignalled(queue.filledEvent()));
    EXPECT_FALSE(isSignalled(queue.filledEvent()));
}

TEST(NotificationQueue, FullQueueRefusesMakesButTakesTheBreaksThatAreDue) {
    CNotificationQueue queue;
    DWORD nMade = 0;
    while (queue.make(nMade)) {
        ASSERT_LT(++nMade, CNotificationQueue::kCapacity);
    }
    EXPECT_EQ(nMade, CNotificationQueue::kCapacity / 2);
    for (DWORD code = 0; code < nMade; ++code) {
        queue.breakOf(code);
    }
    for (DWORD code = 0; code < nMade; ++code) {
        EXPECT_EQ(queue.pop(), (Notification{code, false}));
    }
    for (DWORD code = 0; code < nMade; ++code) {
        EXPECT_EQ(queue.pop(), (Notification{code, true}));
    }
    EXPECT_TRUE(queue.make(7)) << "there is room again";
}

TEST(NotificationQueue, KeepsRoomForABreakThatWasPromised) {
    CNotificationQueue queue;
    ASSERT_TRUE(queue.make(7));
    std::size_t nPromised = 0;
    while (queue.promiseBreak()) {
        ASSERT_LT(++nPromised, CNotificationQueue::kCapacity);
    }
    EXPECT_EQ(nPromised, CNotificationQueue::kCapacity - 2);
    EXPECT_FALSE(queue.make(8));
    for (std::size_t n = 0; n <= nPromised; ++n) {
        queue.breakOf(9);
    }
    EXPECT_EQ(queue.pop(), (Notification{7, false}));
    for (std::size_t n = 0; n <= nPromised; ++n) {
        EXPECT_EQ(queue.pop(), (Notification{9, true}));
    }
    EXPECT_FALSE(queue.pop());
    EXPECT_TRUE(queue.promiseBreak()) << "there is room again";
}

TEST(NotificationQueue, KeepsOrderAcrossTheEndOfTheRing) {
    CNotificationQueue queue;
    for (DWORD code = 0; code < 3 * CNotificationQueue::kCapacity; ++code) {
        ASSERT_TRUE(queue.make(code));
        queue.breakOf(code);
        ASSERT_EQ(queue.pop(), (Notification{code, false}));
        ASSERT_EQ(queue.pop(), (Notification{code, true}));
    }
}

TEST(NotificationQueue, IgnoresABreakWithoutAMake) {
    CNotificationQueue queue;
    queue.breakOf(5);
    EXPECT_FALSE(queue.pop());
}

TEST(NotificationQueue, TellsOnlyTheLatestLatch) {
    CNotificationQueue queue;
    EXPECT_FALSE(queue.takeLatchChange());
    queue.latchChanged(true);
    queue.latchChanged(false);
    EXPECT_EQ(queue.takeLatchChange(), false);
    EXPECT_FALSE(queue.takeLatchChange());
}
