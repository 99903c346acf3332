// Where the system may look for libraries. Programs that load plug-ins share it, so that all of them find the same
// ones.
#pragma once

#include <windows.h>

#include <string>

#include "common/Handle.h"

// For the whole process, first of all: the default search for libraries is restricted to the program's own folder and
// the system's, and the loader shows no message boxes. Systems without the restriction (Windows 7 before its update)
// keep their old order without the current folder; siblings name their full path for them.
void prepareLibraryLoading();

// How a library of that path is to be loaded, as flags of LoadLibraryEx. The library of an absolute path may find what
// it needs in its own folder; nothing is looked for in the current folder or along PATH. 0 is the default search: for
// every other path, and on systems that do not know the flags.
[[nodiscard]] DWORD librarySearchFlags(const std::wstring& strPath, bool bFlagsKnown);

// Loads a library by its path in that way. Empty: the last system error says why.
[[nodiscard]] common::UniqueModule loadLibraryByPath(const std::wstring& strPath);
