// The counters that other tests rely on: each detects a deliberate leak and its removal.
#include "support/ResourceCounters.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

constexpr std::size_t kLeaks = 25;

TEST(ResourceCounters, GdiHandlesSeeEveryKindOfLeakedObject) {
    ::DeleteDC(::CreateCompatibleDC(nullptr));  // the first one creates the system's stock objects
    const std::size_t before = testsupport::gdiHandles();
    ASSERT_GT(before, 0U);
    std::vector<HGDIOBJ> leaked;
    std::vector<HDC> contexts;
    for (std::size_t i = 0; i < kLeaks; ++i) {
        leaked.push_back(::CreateBitmap(4, 4, 1, 32, nullptr));
        leaked.push_back(::CreateSolidBrush(RGB(1, 2, static_cast<int>(i))));
        leaked.push_back(::CreatePen(PS_SOLID, 1, RGB(1, 2, static_cast<int>(i))));
        contexts.push_back(::CreateCompatibleDC(nullptr));
    }
    EXPECT_EQ(testsupport::gdiHandles() - before, 4 * kLeaks);
    for (const HGDIOBJ object : leaked) {
        ::DeleteObject(object);
    }
    for (const HDC context : contexts) {
        ::DeleteDC(context);
    }
    EXPECT_EQ(testsupport::gdiHandles(), before);
}

TEST(ResourceCounters, KernelHandlesSeeALeakedEvent) {
    const std::size_t before = testsupport::kernelHandles();
    ASSERT_GT(before, 0U);
    std::vector<HANDLE> leaked;
    for (std::size_t i = 0; i < kLeaks; ++i) {
        leaked.push_back(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    }
    EXPECT_EQ(testsupport::kernelHandles() - before, kLeaks);
    for (const HANDLE handle : leaked) {
        ::CloseHandle(handle);
    }
    EXPECT_EQ(testsupport::kernelHandles(), before);
}

TEST(ResourceCounters, HeapBytesSeeLeakedMemoryOfTheSystemAndOfTheLanguage) {
    constexpr std::size_t kSize = 3000;
    const std::size_t before = testsupport::heapBytes();
    ASSERT_GT(before, 0U);
    std::vector<void*> leaked;
    std::vector<std::unique_ptr<char[]>> owned;
    for (std::size_t i = 0; i < kLeaks; ++i) {
        leaked.push_back(::HeapAlloc(::GetProcessHeap(), 0, kSize));
        owned.push_back(std::make_unique<char[]>(kSize));
    }
    EXPECT_GE(testsupport::heapBytes(), before + 2 * kLeaks * kSize);
    for (void* const block : leaked) {
        ::HeapFree(::GetProcessHeap(), 0, block);
    }
    owned.clear();
    EXPECT_LT(testsupport::heapBytes(), before + kLeaks * kSize);
}

}  // namespace
