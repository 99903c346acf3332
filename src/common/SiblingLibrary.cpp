#include "common/SiblingLibrary.h"

#include <string>

#include "common/DebugLog.h"
#include "common/ProgramPath.h"

common::UniqueModule loadSibling(const wchar_t* pszFileName) {
    // With the altered search path, the library's dependencies are searched in its own folder instead of the current
    // one.
    const std::wstring folder = common::programFolder();
    const std::wstring path = folder.empty() ? std::wstring(pszFileName) : folder + L"\\" + pszFileName;
    common::UniqueModule module;
    if (!folder.empty()) {  // a bare name would be searched for elsewhere
        module.reset(::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    }
    if (!module) {
        LOG_LINE(::dbglog::Level::Error, L"Library %s cannot be loaded, error %u.", path.c_str(),
                 static_cast<unsigned>(::GetLastError()));
    }
    return module;
}

FARPROC findExport(HMODULE hModule, const char* pszName) {
    FARPROC address = hModule == nullptr ? nullptr : ::GetProcAddress(hModule, pszName);
    if (address == nullptr) {
        LOG_LINE(::dbglog::Level::Error, L"Export %S is missing.", pszName);
    }
    return address;
}
