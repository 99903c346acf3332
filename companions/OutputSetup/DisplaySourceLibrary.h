// The library that describes the machine's displays in place of the system: see DisplaySource.h.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DisplaySource.h"
#include "Displays.h"
#include "common/Handle.h"

namespace setup {

// The path in the registry; empty if there is none.
[[nodiscard]] std::wstring displaySourcePath();

class CDisplaySource {
 public:
    // Null if the library cannot be loaded or lacks an export; `error` is then the system's error code.
    [[nodiscard]] static std::shared_ptr<CDisplaySource> load(const std::wstring& path, DWORD& error);

    // Empty if the library reports none or fails.
    [[nodiscard]] std::vector<Display> displays() const;
    // A system error code.
    [[nodiscard]] LONG apply(LONG arrangement) const;

 private:
    explicit CDisplaySource(common::UniqueModule module);

    common::UniqueModule m_module;
    DisplaySourceGetDisplays m_pfnGetDisplays;
    DisplaySourceSetArrangement m_pfnSetArrangement;
};

}  // namespace setup
