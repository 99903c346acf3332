#include "common/SystemLibrary.h"

#include <string>

common::UniqueModule loadSystemLibrary(const wchar_t* pszName) {
    wchar_t folder[MAX_PATH];
    const UINT uLength = ::GetSystemDirectoryW(folder, MAX_PATH);
    return uLength != 0 && uLength < MAX_PATH
               ? common::UniqueModule(::LoadLibraryW((std::wstring(folder, uLength) + L"\\" + pszName).c_str()))
               : common::UniqueModule();
}
