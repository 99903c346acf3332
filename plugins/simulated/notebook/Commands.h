// What the program does without a window: the switches of its command line.
#pragma once

#include <string>
#include <vector>

namespace sim {

enum ExitCode : int { kDone = 0, kWrongUse = 1, kRegistryRefused = 2, kStillRunning = 3 };

// Carries out the command in `arguments` (without the program's name; at least one). `answer` receives what to tell the
// person: lines, each ended by a line feed.
[[nodiscard]] ExitCode runCommand(const std::vector<std::wstring>& arguments, std::wstring& answer);

// Folder of the running program, without a backslash at its end.
[[nodiscard]] std::wstring programFolder();

}  // namespace sim
