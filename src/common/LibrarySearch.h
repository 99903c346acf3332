// Where the system may search for libraries. Shared by programs that load plug-ins, so that all of them find the same
// ones.
#pragma once

#include <windows.h>

#include <string>

#include "common/Handle.h"

// For the whole process, before anything else: the default search for libraries is restricted to the program's own
// folder and the system's, and the loader shows no message boxes. Systems without the restriction (Windows 7 before its
// update) keep their old order without the current folder; companion libraries are therefore loaded by full path.
void prepareLibraryLoading();

// The flags of LoadLibraryEx for a library of that path. A library with an absolute path may find its dependencies in
// its own folder; the current folder and PATH are never searched. 0 is the default search: for every other path, and on
// systems that do not know the flags.
[[nodiscard]] DWORD librarySearchFlags(const std::wstring& strPath, bool bFlagsKnown);

// Loads a library by its path in that way. Empty: the last system error tells why.
[[nodiscard]] common::UniqueModule loadLibraryByPath(const std::wstring& strPath);
