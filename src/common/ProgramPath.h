// Where the executable of this process is.
#pragma once

#include <string>

namespace common {

// The executable's full path; empty if the system does not tell it. Throws std::bad_alloc. Thread: any.
[[nodiscard]] std::wstring programPath();

// Its folder, without a backslash at the end; empty if it is unknown.
[[nodiscard]] std::wstring programFolder();

}  // namespace common
