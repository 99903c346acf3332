// Starting and stopping the real library.
#include <windows.h>

#include <tlhelp32.h>

#include <atomic>
#include <utility>

#include "companions/hotkey/HotkeyLibraryFixture.h"
#include "support/ResourceCounters.h"

namespace companions {
namespace {

int threadCount() {
    const common::UniqueFile snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    int nThreads = 0;
    for (BOOL more = ::Thread32First(snapshot.get(), &entry); more; more = ::Thread32Next(snapshot.get(), &entry)) {
        nThreads += entry.th32OwnerProcessID == ::GetCurrentProcessId() ? 1 : 0;
    }
    return nThreads;
}

}  // namespace

class HotkeyStop : public HotkeyLibraryTest {};

TEST_F(HotkeyStop, CallsInTheWrongOrderFail) {
    EXPECT_EQ(m_pfnEnable(), E_UNEXPECTED);
    EXPECT_EQ(m_pfnStop(), S_FALSE);
    EXPECT_EQ(m_pfnStart(nullptr, &CCallbackRecord::configCallback), E_POINTER);
    EXPECT_EQ(m_pfnStart(&CCallbackRecord::hotkeyCallback, nullptr), E_POINTER);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(start(), E_UNEXPECTED);
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(m_pfnStop(), S_FALSE);
}

TEST_F(HotkeyStop, DeliversTheBreaksOfWhatIsStillDown) {
    startAndEnable();
    sendKey(VK_RCONTROL, true);
    sendKey(VK_F1, true);
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(m_record.keys(), "0 3b /3b /0") << "and no callback comes after Stop has returned";
}

TEST_F(HotkeyStop, AfterItKeysPassUnreported) {
    startAndEnable();
    EXPECT_EQ(m_pfnStop(), 0);
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F1);
    sendKey(VK_RCONTROL, false);
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(m_window.keys(), (std::vector<int>{VK_CONTROL, VK_F1, -VK_F1, -VK_CONTROL}));
    EXPECT_EQ(m_record.keys(), "");
}

TEST_F(HotkeyStop, DoesNotWaitForACallbackForEver) {
    const common::UniqueHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const common::UniqueHandle returned(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_record.onKey = [&] {
        ::WaitForSingleObject(release.get(), 20000);
        ::SetEvent(returned.get());
    };
    startAndEnable();
    pressKey(VK_RCONTROL);
    ASSERT_TRUE(reports("0"));
    const ULONGLONG before = ::GetTickCount64();
    EXPECT_EQ(m_pfnStop(), HRESULT_FROM_WIN32(ERROR_TIMEOUT));
    EXPECT_LT(::GetTickCount64() - before, 1500u);

    m_record.onKey = nullptr;
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 0 /0")) << "it starts again beside the callback that hangs";
    ::SetEvent(release.get());
    ASSERT_EQ(::WaitForSingleObject(returned.get(), 5000), WAIT_OBJECT_0);
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(m_record.keys(), "0 0 /0") << "what was left of the first run is dropped";
}

TEST_F(HotkeyStop, FromACallbackIsRefused) {
    std::atomic<LONG> result{0};
    m_record.onKey = [&] { result = m_pfnStop(); };
    startAndEnable();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
    EXPECT_EQ(m_pfnStop(), 0);
    EXPECT_EQ(result, HRESULT_FROM_WIN32(ERROR_POSSIBLE_DEADLOCK));
}

TEST_F(HotkeyStop, HundredCyclesLeaveNoThreadHandleOrMemoryBehind) {
    const auto cycle = [this] {
        startAndEnable();
        pressKey(VK_RCONTROL);
        ASSERT_EQ(m_pfnStop(), 0);
    };
    for (int i = 0; i < 5; ++i) {
        cycle();
    }
    const int nThreads = threadCount();
    const std::size_t nHandles = testsupport::kernelHandles();
    const std::size_t nBytes = testsupport::heapBytes();
    ASSERT_GT(nThreads, 0);
    {
        const common::UniqueHandle leak(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
        ASSERT_EQ(testsupport::kernelHandles(), nHandles + 1) << "the counter must see a leak";
    }
    for (int i = 0; i < 100; ++i) {
        m_record.clear();
        cycle();
    }
    EXPECT_TRUE(waitUntil([=] { return threadCount() <= nThreads; }));
    EXPECT_TRUE(waitUntil([=] { return testsupport::kernelHandles() <= nHandles; }))
        << nHandles << " -> " << testsupport::kernelHandles();
    EXPECT_LT(testsupport::heapBytes(), nBytes + 20000) << "200 bytes per cycle";
}

TEST_F(HotkeyStop, LibraryFreedWhileItRunsStaysUntilItIsStopped) {
    startAndEnable();
    wchar_t file[MAX_PATH];
    ASSERT_NE(::GetModuleFileNameW(m_library.get(), file, MAX_PATH), 0u);
    m_library.reset();
    pressKey(VK_RCONTROL);
    EXPECT_TRUE(reports("0 /0"));
    EXPECT_NE(::GetModuleHandleW(file), nullptr);
    m_library = loadBuilt(ZEL_MAIN_FILE);  // nobody may call into a library without its own reference
    EXPECT_EQ(std::exchange(m_pfnStop, nullptr)(), 0);
    m_library.reset();
    EXPECT_TRUE(waitUntil([&] { return ::GetModuleHandleW(file) == nullptr; }));
}

}  // namespace companions
