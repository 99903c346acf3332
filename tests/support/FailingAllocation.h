// Simulated out of memory. Every unit-test program has this operator new; a program that lists
// FailingGdiPlusAllocation.cpp among its sources controls the allocation of GDI+ objects in the same way. Libraries
// that a test loads have their own allocations, which succeed.
#pragma once

#include <windows.h>

namespace support {

// During its lifetime, one allocation of the chosen threads fails. One object at a time.
class FailingAllocation {
 public:
    enum class Threads { This, Others };
    enum class Extent { Once, FromThereOn };

    // The n-th allocation from here on fails; 1 is the next one.
    explicit FailingAllocation(long n, Extent extent = Extent::Once, Threads threads = Threads::This) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Whether an allocation has failed.
    [[nodiscard]] static bool happened() noexcept;
};

// During its lifetime, this thread's allocations succeed and are not counted: for the test's own records.
class AllocationsSucceed {
 public:
    AllocationsSucceed() noexcept;
    ~AllocationsSucceed();
    AllocationsSucceed(const AllocationsSucceed&) = delete;
    AllocationsSucceed& operator=(const AllocationsSucceed&) = delete;
};

// For replacements of allocating functions: whether this allocation is to fail.
[[nodiscard]] bool allocationFails() noexcept;

// Repeats `body`, each time with a later allocation that fails, until a run ends without a failure. The early
// allocations are tried one by one, the later ones in growing steps. Returns how many runs had a failure. `after`
// follows each run, with memory.
template <typename Body, typename After>
long forEachFailure(FailingAllocation::Extent extent, Body body, After after) {
    long runs = 0;
    for (long n = 1;; n += 1 + n / 20) {
        bool happened = false;
        {
            const FailingAllocation failing(n, extent);
            body();
            happened = FailingAllocation::happened();
        }
        after();
        if (!happened) {
            return runs;
        }
        ++runs;
    }
}

template <typename Body>
long forEachFailure(FailingAllocation::Extent extent, Body body) {
    return forEachFailure(extent, body, [] {});
}

}  // namespace support
