// The exports of the key libraries when memory runs out, compiled into this program so that it controls the
// allocations.
#include <gtest/gtest.h>

#include <windows.h>

#include "PrtHook.h"
#include "ZelHotkey.h"
#include "support/FailingAllocation.h"

extern "C" {
LONG WINAPI Start(ZelHotkeyCallback hotkeyCallback, ZelConfigCallback configCallback) noexcept;
LONG WINAPI EnableHotkey() noexcept;
LONG WINAPI Stop() noexcept;
LONG WINAPI CancelQueryEvent() noexcept;
BOOL WINAPI InstallHook(PrtHookCallback callback) noexcept;
BOOL WINAPI RemoveHook() noexcept;
}

namespace {

using support::FailingAllocation;
using Extent = support::FailingAllocation::Extent;

void WINAPI onKey(DWORD, DWORD) {}
void WINAPI onConfig(DWORD) {}
LONG WINAPI onPrint() {
    return 0;
}

class ExportMemory : public testing::TestWithParam<Extent> {};

TEST_P(ExportMemory, OfAStartThatFailsLeavesNothingRunning) {
    LONG started = 0;
    const long failures = support::forEachFailure(
        GetParam(), [&] { started = Start(&onKey, &onConfig); },
        [&] {
            EXPECT_TRUE(started == S_OK || started == E_OUTOFMEMORY) << std::hex << started;
            EXPECT_EQ(Stop(), started == S_OK ? S_OK : S_FALSE);
            started = Start(&onKey, &onConfig);
            EXPECT_EQ(started, S_OK) << "with memory it starts: no hook was left behind";
            EXPECT_EQ(EnableHotkey(), S_OK);
            EXPECT_EQ(Stop(), S_OK);
        });
    EXPECT_GE(failures, 3);
}

TEST_P(ExportMemory, OfAHookThatFailsLeavesNothingRunning) {
    BOOL installed = FALSE;
    const long failures = support::forEachFailure(
        GetParam(), [&] { installed = InstallHook(&onPrint); },
        [&] {
            EXPECT_EQ(RemoveHook(), installed);
            EXPECT_TRUE(InstallHook(&onPrint));
            EXPECT_TRUE(RemoveHook());
        });
    EXPECT_GE(failures, 3);
}

TEST_P(ExportMemory, NeitherTheEndNorAQueryNeedsAny) {
    ASSERT_EQ(Start(&onKey, &onConfig), S_OK);
    {
        const FailingAllocation failing(1, GetParam());
        EXPECT_EQ(CancelQueryEvent(), S_OK);
        EXPECT_EQ(EnableHotkey(), S_OK);
        EXPECT_EQ(Stop(), S_OK);
        EXPECT_FALSE(FailingAllocation::happened());
    }
    ASSERT_TRUE(InstallHook(&onPrint));  // only now: a module has one hook at a time
    const FailingAllocation failing(1, GetParam());
    EXPECT_TRUE(RemoveHook());
    EXPECT_FALSE(FailingAllocation::happened());
}

// The library's own threads: the watch of the registry, the digest of the configuration, the hook.
TEST_P(ExportMemory, OfTheLibrarysThreadsMayFailAtAnyTime) {
    for (const long n : {1L, 2L, 5L, 20L}) {
        const FailingAllocation failing(n, GetParam(), FailingAllocation::Threads::Others);
        EXPECT_EQ(Start(&onKey, &onConfig), S_OK);
        EXPECT_EQ(EnableHotkey(), S_OK);
        for (int step = 0; step < 20 && !FailingAllocation::happened(); ++step) {
            ::Sleep(10);
        }
        EXPECT_EQ(Stop(), S_OK);
    }
}

INSTANTIATE_TEST_SUITE_P(Extents, ExportMemory, testing::Values(Extent::Once, Extent::FromThereOn));

}  // namespace
