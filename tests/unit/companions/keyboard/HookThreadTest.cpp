// The thread of a keyboard hook, and what its start waits for.
#include "keyboard/HookThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "KeyboardRoom.h"
#include "common/Handle.h"

namespace companions {
namespace {

constexpr DWORD kLongest = 5000;  // ms

// Takes its time with what may come after the start.
class SlowClient : public keyboard::IHookClient {
 public:
    bool handleKey(const keyboard::KeyEvent& /*event*/) noexcept override {
        ++m_nKeys;
        return true;
    }
    void handleStart() noexcept override { m_bStarted = true; }
    void handleWake() noexcept override {
        ::WaitForSingleObject(m_mayWake.get(), kLongest);
        m_bAwake = true;
    }

    common::UniqueHandle m_mayWake{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<bool> m_bStarted = false;
    std::atomic<bool> m_bAwake = false;
    std::atomic<int> m_nKeys = 0;
};

}  // namespace

TEST(HookThread, StartWaitsOnlyForWhatHasToBeThere) {
    ASSERT_TRUE(CFocusWindow::instance().prepare());
    SlowClient client;
    keyboard::CHookThread thread;
    ASSERT_EQ(thread.start(client, nullptr), S_OK);
    EXPECT_TRUE(client.m_bStarted);
    EXPECT_FALSE(client.m_bAwake);
    ::SetEvent(client.m_mayWake.get());
    sendKey('A', true);
    sendKey('A', false);
    EXPECT_TRUE(waitUntil([&client] { return client.m_nKeys == 2; }));
    EXPECT_TRUE(client.m_bAwake);
    thread.requestStop();
    EXPECT_TRUE(thread.wait(kLongest));
}

}  // namespace companions
