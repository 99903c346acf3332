// Which plug-ins ended the program, and which are set aside for it. companions/include/PluginFaults.h describes the
// registry keys.
#pragma once

#include <windows.h>

#include "companions/include/PluginFaults.h"

// Two faults within this time set a plug-in aside. In units of a FILETIME: ten minutes.
inline constexpr ULONGLONG kFaultMemory = 10ULL * 60 * 10'000'000;

class CFaultMemory {
 public:
    // Adds a fault: `rFault.setAside` on entry says that this one is enough by itself, on return whether the plug-in is
    // set aside now; `when` is filled in. Failures to write are logged, and the fault is then forgotten.
    static void remember(fenwyn::PluginFault& rFault);

    // Whether the plug-in of that path is set aside, and why.
    [[nodiscard]] static bool isSetAside(const std::wstring& strPath, fenwyn::PluginFault& rFault);
};
