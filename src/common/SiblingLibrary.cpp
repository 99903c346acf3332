#include "common/SiblingLibrary.h"

#include <string>

#include "common/DebugLog.h"

namespace {

// The executable's folder with its trailing backslash; empty if it cannot be determined.
std::wstring programFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return {};
        }
        if (length < path.size()) {
            return path.substr(0, path.substr(0, length).rfind(L'\\') + 1);
        }
        path.resize(path.size() * 2);
    }
}

}  // namespace

common::UniqueModule loadSibling(const wchar_t* pszFileName) {
    // With the altered search path, the library's dependencies are searched in its own folder instead of the current
    // one.
    const std::wstring folder = programFolder();
    const std::wstring path = folder + pszFileName;
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
