// --register and --unregister: a function list of what this machine offers.
#pragma once

#include "CommandLine.h"
#include "Outside.h"

namespace machine {

// Writes the list, for the machine or the user. Without the right to write for the machine it runs this program once
// more with administrator rights. A list that is there stays unless it is to be replaced.
[[nodiscard]] ExitCode registerFunctions(const Options& options, const Outside& outside);

// Removes what registerFunctions wrote and nobody changed since.
[[nodiscard]] ExitCode unregisterFunctions(const Options& options, const Outside& outside);

}  // namespace machine
