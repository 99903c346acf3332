// The single changes of the registry of which storing and moving the favourites consist. Tests let one of them fail, as
// if the process had ended there.
#pragma once

#include <windows.h>

#include "common/Handle.h"

namespace favourites {

class IRegistryChanges {
 public:
    virtual ~IRegistryChanges() = default;
    virtual LSTATUS set(HKEY hKey, const wchar_t* pszSubKey, const wchar_t* pszValue, DWORD type, const void* pData,
                        DWORD bytes) {
        return RegSetKeyValueW(hKey, pszSubKey, pszValue, type, pData, bytes);
    }
    // Keys and values of one key into another.
    virtual LSTATUS copy(HKEY hFrom, HKEY hKey, const wchar_t* pszSubKey) {
        common::UniqueRegKey to;
        const LSTATUS error =
            RegCreateKeyExW(hKey, pszSubKey, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, to.put(), nullptr);
        return error != ERROR_SUCCESS ? error : RegCopyTreeW(hFrom, nullptr, to.get());
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
