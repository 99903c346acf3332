// The frame around the exports: the function that lives between initialisation and the end, and no exception that
// leaves the library.
#pragma once

#include <utility>

#include "plugin/Function.h"

namespace win {

inline constexpr LONG kFailed = 1;

// Null before InitializeHotkeyDll and after FinalizeHotkeyDll.
[[nodiscard]] IFunction* function() noexcept;

// Runs `body`, which returns whether it was done, when there is a function.
template <typename Body>
LONG perform(LONG lFailure, Body body) noexcept {
    try {
        return function() != nullptr && body(*function()) ? FENWYN_OK : lFailure;
    } catch (...) {
        return lFailure;
    }
}

}  // namespace win
