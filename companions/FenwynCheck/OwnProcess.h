// This program once more, as a child that is watched.
#pragma once

#include <windows.h>

#include <string>

#include "common/ProgramPath.h"

namespace machine {

struct ChildResult {
    bool ended = false;  // false: it did not end in time and was ended, or it could not be started
    DWORD exitCode = 0;
    std::wstring text;  // what it wrote to standard output, line feeds only
};

// Runs this program with these arguments and waits until it ends, for `patience` milliseconds at most.
[[nodiscard]] ChildResult runSelf(const std::wstring& arguments, DWORD patience);

using common::programFolder;
using common::programPath;

}  // namespace machine
