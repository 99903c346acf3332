// The companion libraries in the executable's folder: bound at run time, by name, from that folder only, so that a
// maker's own file of the same name can replace ours and a planted one elsewhere cannot.
#pragma once

#include "common/Handle.h"

// Loads a library from the executable's folder; empty, after one log line, on failure.
[[nodiscard]] common::UniqueModule loadSibling(const wchar_t* pszFileName);

// An export of a library by its name; null, after one log line, if it is missing.
[[nodiscard]] FARPROC findExport(HMODULE hModule, const char* pszName);

template <typename Function>
[[nodiscard]] Function findExport(HMODULE hModule, const char* pszName) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(findExport(hModule, pszName)));
}
