// Memory that runs out at will. Every unit-test program has this operator new; one that lists
// FailingGdiPlusAllocation.cpp among its sources has the memory of GDI+ objects under the same control. Libraries that
// a test loads have allocations of their own, which succeed.
#pragma once

#include <windows.h>

namespace support {

// While it lives, an allocation of the chosen threads fails. One at a time.
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

// While it lives, this thread's allocations succeed and are not counted: what a test needs for its own records.
class AllocationsSucceed {
 public:
    AllocationsSucceed() noexcept;
    ~AllocationsSucceed();
    AllocationsSucceed(const AllocationsSucceed&) = delete;
    AllocationsSucceed& operator=(const AllocationsSucceed&) = delete;
};

// Asked by whatever stands in for an allocating function: whether this allocation is to fail.
[[nodiscard]] bool allocationFails() noexcept;

// Runs `body` again and again, each time with a later allocation that fails, until a run comes to its end without one.
// The early ones are tried one by one, the later ones with growing steps. Returns how many runs had a failure. `after`
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
