// The libraries that stand beside the executable: bound at run time, by name, from the program's own folder, so that a
// maker's own file of the same name can take the place of ours and a planted one elsewhere cannot.
#pragma once

#include "common/Handle.h"

// Restricts the process's default library search to its own folder and the system's. Call it first of all; systems
// without the function (Windows 7 before its update) keep their old order, for which siblings name their full path.
void restrictLibrarySearch();

// Loads a library from the executable's folder; empty, after one log line, when that fails.
[[nodiscard]] common::UniqueModule loadSibling(const wchar_t* pszFileName);

// An export of a library by its name; null, after one log line, when it is missing.
[[nodiscard]] FARPROC findExport(HMODULE hModule, const char* pszName);

template <typename Function>
[[nodiscard]] Function findExport(const common::UniqueModule& module, const char* pszName) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(findExport(module.get(), pszName)));
}
