// What a library leaves in the process when it is unloaded.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "common/Handle.h"

namespace {

// The bytes that are taken in all heaps of the process.
SIZE_T bytesTaken() {
    std::vector<HANDLE> heaps(::GetProcessHeaps(0, nullptr) + 8);
    heaps.resize(::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    SIZE_T bytes = 0;
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heap);
        while (::HeapWalk(heap, &entry) != FALSE) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
        ::HeapUnlock(heap);
    }
    return bytes;
}

void loadAndUnload(const std::wstring& strFile) {
    const common::UniqueModule library(::LoadLibraryW(strFile.c_str()));
    ASSERT_TRUE(library) << ::GetLastError();
}

class EmergencyMemory : public testing::TestWithParam<const wchar_t*> {};

// The runtime of one library takes 72 KB, so that one that were kept would be seen.
TEST_P(EmergencyMemory, IsGivenBackWhenTheLibraryIsUnloaded) {
    constexpr int kLoads = 20;
    constexpr SIZE_T kMost = 10000;
    const std::wstring strFile = std::wstring(STAGE_DIR) + GetParam();
    loadAndUnload(strFile);
    const SIZE_T before = bytesTaken();
    for (int i = 0; i < kLoads; ++i) {
        loadAndUnload(strFile);
    }
    EXPECT_LT(bytesTaken(), before + kMost);
}

INSTANTIATE_TEST_SUITE_P(Shipped, EmergencyMemory,
                         testing::Values(L"\\plugins\\SimMute.dll", L"\\plugins\\WinMute.dll", L"\\PrtHook.dll",
                                         L"\\ZelMain.dll"));

}  // namespace
