// Every plug-in for real machines must load on Windows 7: its imports are compared with the list of what that system
// exports and why it is needed. Newer functions are bound at run time.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "common/Handle.h"
#include "plugins/windows/Windows7Exports.h"

namespace win {
namespace {

using Imports = std::map<std::string, std::set<std::string>>;  // library, in lower case -> names

std::string lower(std::string text) {
    for (char& rChar : text) {
        rChar = static_cast<char>(std::tolower(static_cast<unsigned char>(rChar)));
    }
    return text;
}

// The import table of a loaded library, whose addresses the loader has checked.
Imports importsOf(HMODULE hModule) {
    const auto* const pBase = reinterpret_cast<const BYTE*>(hModule);
    const auto* const pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase);
    const auto* const pNt = reinterpret_cast<const IMAGE_NT_HEADERS*>(pBase + pDos->e_lfanew);
    const DWORD dwPlace = pNt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    Imports imports;
    for (const auto* pLibrary = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(pBase + dwPlace); pLibrary->Name != 0;
         ++pLibrary) {
        std::set<std::string>& rNames = imports[lower(reinterpret_cast<const char*>(pBase + pLibrary->Name))];
        for (const auto* pThunk = reinterpret_cast<const IMAGE_THUNK_DATA*>(pBase + pLibrary->OriginalFirstThunk);
             pThunk->u1.AddressOfData != 0; ++pThunk) {
            const bool bOrdinal = IMAGE_SNAP_BY_ORDINAL(pThunk->u1.Ordinal);
            rNames.insert(
                bOrdinal ? "by number"
                         : reinterpret_cast<const char*>(
                               reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(pBase + pThunk->u1.AddressOfData)->Name));
        }
    }
    return imports;
}

// library -> function -> how often a plug-in needed it.
using Allowed = std::map<std::string, std::map<std::string, int>>;

Allowed windows7Exports() {
    Allowed allowed;
    for (const Windows7Row& row : kWindows7Exports) {
        const std::string names = row.functions;
        for (std::size_t begin = 0; begin < names.size();) {
            const std::size_t end = std::min(names.find(' ', begin), names.size());
            allowed[row.library].emplace(names.substr(begin, end - begin), 0);
            begin = end + 1;
        }
    }
    return allowed;
}

TEST(Imports, EachIsExportedByWindows7AndHasItsReasonInTheList) {
    Allowed allowed = windows7Exports();
    WIN32_FIND_DATAW file{};
    const std::wstring folder = std::wstring(STAGE_DIR) + L"\\plugins\\";
    const HANDLE hFind = ::FindFirstFileW((folder + L"Win*.dll").c_str(), &file);
    ASSERT_NE(hFind, INVALID_HANDLE_VALUE);
    do {
        const std::wstring name = file.cFileName;
        const common::UniqueModule hModule(
            ::LoadLibraryExW((folder + name).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
        ASSERT_TRUE(hModule);
        for (const auto& [library, functions] : importsOf(hModule.get())) {
            for (const std::string& function : functions) {
                const auto place = allowed[library].find(function);
                if (place == allowed[library].end()) {
                    ADD_FAILURE() << std::string(name.begin(), name.end()) << " imports " << function << " of "
                                  << library
                                  << ": when Windows 7 exports it, give it a row with its reason in Windows7Exports.h; "
                                     "otherwise bind it at run time";
                } else {
                    ++place->second;
                }
            }
        }
    } while (::FindNextFileW(hFind, &file));
    ::FindClose(hFind);
    for (const auto& [library, functions] : allowed) {
        for (const auto& [function, uses] : functions) {
            EXPECT_GT(uses, 0) << "no plug-in needs " << function << " of " << library << " any more";
        }
    }
}

}  // namespace
}  // namespace win
