// What the program does about faults of its plug-ins, put together: the section, the handlers, the keeper, the memory
// of the registry, and what the user is told.
#pragma once

#include <windows.h>

namespace faultcare {

// Before anything else. False: this process was only to look at its predecessor, and ends at once. Without memory the
// program runs on without this care.
[[nodiscard]] bool start(const wchar_t* pszCommandLine) noexcept;

// The settings may have changed: how long a plug-in may take.
void readPatience() noexcept;

// The orderly end.
void end() noexcept;

}  // namespace faultcare
