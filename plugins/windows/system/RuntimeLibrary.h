// Functions of system libraries that some versions of Windows lack.
#pragma once

#include <windows.h>

#include "common/SystemLibrary.h"

namespace win {

// A library from the system's own folder only.
class CRuntimeLibrary {
 public:
    explicit CRuntimeLibrary(const wchar_t* pszName) : m_hModule(loadSystemLibrary(pszName)) {}

    // Null if the library or the function is missing.
    template <typename Function>
    [[nodiscard]] Function find(const char* pszName) const {
        return m_hModule
                   ? reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_hModule.get(), pszName)))
                   : nullptr;
    }

 private:
    common::UniqueModule m_hModule;
};

}  // namespace win
