// A program as a child that is watched.
#pragma once

#include <windows.h>

#include <string>

namespace common {

struct ChildResult {
    bool ended = false;  // false: it did not end in time and was ended, or it could not be started
    DWORD exitCode = 0;
    std::wstring text;  // what it wrote to standard output, in UTF-8
};

// Runs the program with these arguments, without a window, and waits until it ends, for `patience` milliseconds at
// most. Thread: any.
[[nodiscard]] ChildResult runChild(const std::wstring& program, const std::wstring& arguments, DWORD patience);

// One argument as it stands on a command line, quoted so that it arrives as it is.
[[nodiscard]] std::wstring quotedArgument(const std::wstring& argument);

}  // namespace common
