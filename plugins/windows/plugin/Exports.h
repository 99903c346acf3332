// Common to all exports: the function, which lives from initialisation to the end, and a border that no exception
// crosses.
#pragma once

#include <utility>

#include "plugin/Function.h"

namespace win {

inline constexpr LONG kFailed = 1;

// Makes the library's function. FENWYN_OK: the machine has it.
[[nodiscard]] LONG initialize() noexcept;

// Null before the initialisation and after FinalizeHotkeyDll.
[[nodiscard]] IFunction* function() noexcept;

// If there is a function, runs `body`, which returns whether it succeeded.
template <typename Body>
LONG perform(LONG lFailure, Body body) noexcept {
    try {
        return function() != nullptr && body(*function()) ? FENWYN_OK : lFailure;
    } catch (...) {
        return lFailure;
    }
}

}  // namespace win
