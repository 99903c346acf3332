// What becomes of an exception where it must go no further: at the borders between this code and the system, a thread
// or another module. Memory that ran out is the only one that is expected.
#pragma once

#include <windows.h>

#include <new>

namespace common {

// The status of the exception that is being handled; for catch blocks only. E_UNEXPECTED: something else than memory.
[[nodiscard]] inline HRESULT caughtStatus() noexcept {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

// Runs what returns a status; an exception becomes one, too.
template <typename Operation>
[[nodiscard]] HRESULT statusOf(Operation operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return caughtStatus();
    }
}

}  // namespace common
