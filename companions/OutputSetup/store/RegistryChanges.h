// The single changes of the registry of which storing the favourites consists. Tests let one of them fail, as if the
// process had ended there.
#pragma once

#include <windows.h>

namespace favourites {

class IRegistryChanges {
 public:
    virtual ~IRegistryChanges() = default;
    virtual LSTATUS set(HKEY hKey, const wchar_t* pszSubKey, const wchar_t* pszValue, DWORD type, const void* pData,
                        DWORD bytes) {
        return RegSetKeyValueW(hKey, pszSubKey, pszValue, type, pData, bytes);
    }
    // A key that does not exist is deleted already.
    virtual LSTATUS remove(HKEY hKey, const wchar_t* pszSubKey) {
        const LSTATUS error = RegDeleteTreeW(hKey, pszSubKey);
        return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
    }
};

// The registry itself, but in tests.
IRegistryChanges*& registryChanges() noexcept;

}  // namespace favourites
