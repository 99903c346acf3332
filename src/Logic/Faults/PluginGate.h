// Which plug-ins may be loaded.
#pragma once

#include <string>

namespace faults {

// For a start without plug-ins: from now on none may be loaded.
void closeGate() noexcept;

// False, after a line in the log that says why: the gate is closed, or the plug-in is set aside.
[[nodiscard]] bool mayLoad(const std::wstring& strPath);

}  // namespace faults
