#include "common/LibrarySearch.h"

#include <algorithm>
#include <cwctype>

namespace {

// The headers hide these from programs that also run on Windows 7 without its update.
constexpr DWORD kLibrarysOwnFolder = 0x00000100;  // LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR
constexpr DWORD kProgramFolder = 0x00000200;      // LOAD_LIBRARY_SEARCH_APPLICATION_DIR
constexpr DWORD kSystemFolder = 0x00000800;       // LOAD_LIBRARY_SEARCH_SYSTEM32
constexpr DWORD kDefaultFolders = 0x00001000;     // LOAD_LIBRARY_SEARCH_DEFAULT_DIRS

// The update that added this function also added the flags.
using SetDefaultDllDirectories = BOOL(WINAPI*)(DWORD);
SetDefaultDllDirectories setDefaultDllDirectories() {
    return reinterpret_cast<SetDefaultDllDirectories>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "SetDefaultDllDirectories")));
}

// "C:\x.dll", "\\server\share\x.dll", "\\?\C:\x.dll"; not "C:x.dll" and "\x.dll", which depend on the current folder.
bool isAbsolute(const std::wstring& strPath) {
    const bool bDrive =
        strPath.size() > 2 && std::iswalpha(strPath[0]) != 0 && strPath[1] == L':' && strPath[2] == L'\\';
    return bDrive || strPath.starts_with(L"\\\\");
}

}  // namespace

void prepareLibraryLoading() {
    if (const auto restrict = setDefaultDllDirectories(); restrict != nullptr) {
        restrict(kProgramFolder | kSystemFolder);
    }
    ::SetDllDirectoryW(L"");  // no current folder in the old search order either
    // If a plug-in's library is missing, this costs its card and a line in the log instead of a blocking message box.
    ::SetErrorMode(::GetErrorMode() | SEM_FAILCRITICALERRORS);
}

DWORD librarySearchFlags(const std::wstring& strPath, bool bFlagsKnown) {
    return bFlagsKnown && isAbsolute(strPath) ? kLibrarysOwnFolder | kDefaultFolders : 0;
}

common::UniqueModule loadLibraryByPath(const std::wstring& strPath) {
    std::wstring strFile = strPath;
    std::ranges::replace(strFile, L'/', L'\\');  // the loader requires backslashes
    const DWORD dwFlags = librarySearchFlags(strFile, setDefaultDllDirectories() != nullptr);
    return common::UniqueModule(::LoadLibraryExW(strFile.c_str(), nullptr, dwFlags));
}
