// Which function list is in force: the machine's, or the user's own.
#pragma once

#include <windows.h>

#include "FenwynRegistry.h"

namespace fenwyn {

// Whether there is a function list below `root`. One that exists but may not be read counts as existing.
[[nodiscard]] inline bool hasFunctionList(HKEY root) noexcept {
    const LSTATUS error = RegGetValueW(root, FENWYN_REG_HOTKEY, FENWYN_VALUE_FUNC_LIST, RRF_RT_ANY | RRF_NOEXPAND,
                                       nullptr, nullptr, nullptr);
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

// The root below which FENWYN_REG_HOTKEY and everything in it, and the install path, are read: HKEY_CURRENT_USER if
// only the user has a list, so that the program needs no administrator rights; otherwise HKEY_LOCAL_MACHINE, even if
// there is no list at all. Thread: any.
[[nodiscard]] inline HKEY functionListRoot() noexcept {
    return !hasFunctionList(HKEY_LOCAL_MACHINE) && hasFunctionList(HKEY_CURRENT_USER) ? HKEY_CURRENT_USER
                                                                                      : HKEY_LOCAL_MACHINE;
}

}  // namespace fenwyn
