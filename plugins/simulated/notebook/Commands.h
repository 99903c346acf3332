// The commands of the program's command line, which need no window.
#pragma once

#include <string>
#include <vector>

#include "common/ProgramPath.h"

namespace sim {

enum ExitCode : int { kDone = 0, kWrongUse = 1, kRegistryRefused = 2, kStillRunning = 3 };

// Carries out the command in `arguments` (without the program's name; at least one). `answer` receives the output:
// lines, each ended by a line feed.
[[nodiscard]] ExitCode runCommand(const std::vector<std::wstring>& arguments, std::wstring& answer);

using common::programFolder;

}  // namespace sim
