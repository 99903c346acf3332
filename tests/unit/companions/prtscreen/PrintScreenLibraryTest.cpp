// PrtHook.dll with injected keys.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <utility>

#include "PrtHook.h"
#include "companions/keyboard/KeyboardRoom.h"
#include "support/ResourceCounters.h"

namespace companions {
namespace {

std::atomic<int> s_nCalls{0};
std::atomic<int> s_nReturned{0};
std::atomic<DWORD> s_nThread{0};
std::atomic<DWORD> s_nCallbackTime{0};  // ms that the callback takes

LONG WINAPI callback() {
    ++s_nCalls;
    s_nThread = ::GetCurrentThreadId();
    ::Sleep(s_nCallbackTime);
    ++s_nReturned;
    return E_FAIL;  // must not matter
}

}  // namespace

class PrintScreenLibrary : public testing::Test {
 protected:
    void SetUp() override {
        s_nCalls = 0;
        s_nReturned = 0;
        s_nCallbackTime = 0;
        ASSERT_TRUE(m_window.prepare());
        m_library = loadBuilt(PRT_HOOK_FILE);
        ASSERT_TRUE(m_library);
        m_pfnInstall = exportOf<PrtInstallHook>(m_library, PRT_INSTALL_HOOK);
        m_pfnRemove = exportOf<PrtRemoveHook>(m_library, PRT_REMOVE_HOOK);
        ASSERT_TRUE(m_pfnInstall != nullptr && m_pfnRemove != nullptr);
    }
    void TearDown() override {
        if (m_pfnRemove != nullptr) {
            m_pfnRemove();
        }
    }

    CFocusWindow& m_window = CFocusWindow::instance();
    common::UniqueModule m_library;
    PrtInstallHook m_pfnInstall = nullptr;
    PrtRemoveHook m_pfnRemove = nullptr;
};

TEST_F(PrintScreenLibrary, CallsBackOncePerPressOnAThreadOfItsOwn) {
    ASSERT_TRUE(m_pfnInstall(&callback));
    sendKey(VK_SNAPSHOT, true);
    sendKey(VK_SNAPSHOT, true);
    sendKey(VK_SNAPSHOT, false);
    EXPECT_TRUE(waitUntil([] { return s_nCalls == 1; }));
    EXPECT_NE(s_nThread, ::GetCurrentThreadId());
    pressKey(VK_SNAPSHOT);
    EXPECT_TRUE(waitUntil([] { return s_nCalls == 2; }));
}

TEST_F(PrintScreenLibrary, OtherKeysDoNotCallBack) {
    ASSERT_TRUE(m_pfnInstall(&callback));
    pressKey('A');
    pressKey(VK_F1);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(s_nCalls, 0);
}

TEST_F(PrintScreenLibrary, KeyReachesTheSystemAfterTheCallback) {
    s_nCallbackTime = 50;
    ASSERT_TRUE(m_pfnInstall(&callback));
    sendKey(VK_SNAPSHOT, true);
    ASSERT_TRUE(waitUntil([this] { return !m_window.keys().empty(); }));
    EXPECT_EQ(s_nReturned, 1);
    EXPECT_EQ(m_window.keys().front(), VK_SNAPSHOT);
    sendKey(VK_SNAPSHOT, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_SNAPSHOT, -VK_SNAPSHOT}));
}

TEST_F(PrintScreenLibrary, SlowCallbackHoldsTheKeyBackForATenthOfASecondOnly) {
    s_nCallbackTime = 800;
    ASSERT_TRUE(m_pfnInstall(&callback));
    const ULONGLONG start = ::GetTickCount64();
    sendKey(VK_SNAPSHOT, true);
    ASSERT_TRUE(waitUntil([this] { return !m_window.keys().empty(); }));
    EXPECT_LT(::GetTickCount64() - start, 400u);
    EXPECT_EQ(s_nReturned, 0);
    EXPECT_TRUE(waitUntil([] { return s_nReturned == 1; })) << s_nReturned << " of " << s_nCalls;
}

TEST_F(PrintScreenLibrary, IsInstalledOnceAndNeedsACallback) {
    EXPECT_FALSE(m_pfnInstall(nullptr));
    EXPECT_FALSE(m_pfnRemove());
    EXPECT_TRUE(m_pfnInstall(&callback));
    EXPECT_FALSE(m_pfnInstall(&callback));
    EXPECT_TRUE(m_pfnRemove());
    pressKey(VK_SNAPSHOT);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(s_nCalls, 0);
}

TEST_F(PrintScreenLibrary, FreedWithoutRemovalItStaysAndWorks) {
    ASSERT_TRUE(m_pfnInstall(&callback));
    wchar_t file[MAX_PATH];
    ASSERT_NE(::GetModuleFileNameW(m_library.get(), file, MAX_PATH), 0u);
    m_library.reset();
    EXPECT_NE(::GetModuleHandleW(file), nullptr);
    pressKey(VK_SNAPSHOT);
    EXPECT_TRUE(waitUntil([] { return s_nCalls == 1; }));
    m_library = loadBuilt(PRT_HOOK_FILE);  // nobody may call into a library without its own reference
    EXPECT_TRUE(std::exchange(m_pfnRemove, nullptr)());
    m_library.reset();
    EXPECT_TRUE(waitUntil([&] { return ::GetModuleHandleW(file) == nullptr; }));
}

TEST_F(PrintScreenLibrary, HundredCyclesLeaveNoHandleBehind) {
    const auto cycle = [this] {
        ASSERT_TRUE(m_pfnInstall(&callback));
        ASSERT_TRUE(m_pfnRemove());
    };
    for (int i = 0; i < 5; ++i) {
        cycle();
    }
    const std::size_t nHandles = testsupport::kernelHandles();
    ASSERT_GT(nHandles, 0u);
    for (int i = 0; i < 100; ++i) {
        cycle();
    }
    EXPECT_TRUE(waitUntil([=] { return testsupport::kernelHandles() <= nHandles; }))
        << nHandles << " -> " << testsupport::kernelHandles();
}

}  // namespace companions
