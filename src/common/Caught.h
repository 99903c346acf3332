// Exceptions at the borders between this code and the system, a thread or another module, which they must not cross.
// The only expected one is out of memory.
#pragma once

#include <windows.h>

#include <new>

namespace common {

// The status of the exception that is being handled; for catch blocks only. E_UNEXPECTED: anything but out of memory.
[[nodiscard]] inline HRESULT caughtStatus() noexcept {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

// Runs code that returns a status; an exception becomes a status too.
template <typename Operation>
[[nodiscard]] HRESULT statusOf(Operation operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return caughtStatus();
    }
}

}  // namespace common
