// Statuses in the HRESULT convention and the few macros that handle it. Negative is failure; S_FALSE: nothing to do.
#pragma once

#include <windows.h>

#include "common/Caught.h"
#include "common/DebugLog.h"

namespace common {

// A system error as a status: a positive error e becomes 0x80070000 | (e & 0xFFFF), anything else is unchanged.
[[nodiscard]] constexpr HRESULT statusFromWin32(LONG error) noexcept {
    return error <= 0 ? static_cast<HRESULT>(error)
                      : static_cast<HRESULT>((static_cast<ULONG>(error) & 0x0000FFFFU) | 0x80070000U);
}

// The calling thread's last system error as a status.
[[nodiscard]] inline HRESULT statusFromLastError() noexcept {
    return statusFromWin32(static_cast<LONG>(::GetLastError()));
}

}  // namespace common

// Logs a status and returns it. The argument is evaluated once.
#define RETURN_LOGGED(status)                   \
    do {                                        \
        const HRESULT loggedStatus_ = (status); \
        LOG_STATUS(loggedStatus_);              \
        return loggedStatus_;                   \
    } while (false)

// Continues if the call succeeded; if it failed, logs and returns its status. Never use it beside a raw handle.
#define RETURN_IF_FAILED(call)              \
    do {                                    \
        const HRESULT callStatus_ = (call); \
        if (FAILED(callStatus_)) {          \
            LOG_STATUS(callStatus_);        \
            return callStatus_;             \
        }                                   \
    } while (false)

// The same for an expectation: if it does not hold, logs "ASSERT( text )" and returns the status.
#define RETURN_UNLESS(condition, text, status) \
    do {                                       \
        if (!(condition)) {                    \
            LOG_ASSERT(text);                  \
            return (status);                   \
        }                                      \
    } while (false)
