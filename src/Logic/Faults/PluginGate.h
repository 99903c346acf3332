// Which plug-ins may be loaded.
#pragma once

#include <string>

namespace faults {

// From now on none may: a start without plug-ins.
void closeGate() noexcept;

// False, after a line in the log that says why: the gate is closed, or the plug-in is set aside.
[[nodiscard]] bool mayLoad(const std::wstring& strPath);

}  // namespace faults
