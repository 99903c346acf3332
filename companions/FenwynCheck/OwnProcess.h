// This program once more, as a child that is watched.
#pragma once

#include "common/ChildProcess.h"
#include "common/ProgramPath.h"

namespace machine {

using common::ChildResult;
using common::programFolder;
using common::programPath;

[[nodiscard]] inline ChildResult runSelf(const std::wstring& arguments, DWORD patience) {
    return common::runChild(programPath(), arguments, patience);
}

}  // namespace machine
