#include "support/FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace support {

namespace {

std::atomic<long> g_left = 0;  // allocations until the one that fails; 0: none fails
std::atomic<bool> g_bLaterToo = false;
std::atomic<bool> g_bHappened = false;
std::atomic<bool> g_bThisThread = true;
std::atomic<DWORD> g_dwThread = 0;
thread_local int t_nExempt = 0;

bool concerned() noexcept {
    return t_nExempt == 0 && (::GetCurrentThreadId() == g_dwThread) == g_bThisThread;
}

}  // namespace

FailingAllocation::FailingAllocation(long n, Extent extent, Threads threads) noexcept {
    g_bHappened = false;
    g_bLaterToo = extent == Extent::FromThereOn;
    g_bThisThread = threads == Threads::This;
    g_dwThread = ::GetCurrentThreadId();
    g_left = n;
}

FailingAllocation::~FailingAllocation() {
    g_left = 0;
}

bool FailingAllocation::happened() noexcept {
    return g_bHappened;
}

AllocationsSucceed::AllocationsSucceed() noexcept {
    ++t_nExempt;
}

AllocationsSucceed::~AllocationsSucceed() {
    --t_nExempt;
}

bool allocationFails() noexcept {
    if (g_left == 0 || !concerned()) {
        return false;
    }
    if (g_left > 1) {
        --g_left;
        return false;
    }
    g_left = g_bLaterToo ? 1 : 0;
    g_bHappened = true;
    return true;
}

}  // namespace support

namespace {

void* allocate(std::size_t size) noexcept {
    return support::allocationFails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
    void* const memory = allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
