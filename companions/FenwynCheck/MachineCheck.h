// --machine: goes through the functions, and says what it finds.
#pragma once

#include <string>

#include "CommandLine.h"
#include "FunctionSource.h"
#include "Inspection.h"
#include "Outside.h"

namespace machine {

// ms after which the processes of --inspect and --try-one end themselves and tell which export does not return.
inline constexpr DWORD kInspectMs = 18000;
inline constexpr DWORD kTryMs = 28000;

[[nodiscard]] ExitCode checkMachine(const Options& options, const Outside& outside);

// --ask: the same for one plug-in, in lines that a program reads.
[[nodiscard]] ExitCode askPlugin(const Options& options, const Outside& outside);

// Looks at one function in a process of its own. A plug-in that crashes or does not return is at fault.
[[nodiscard]] Finding inspectApart(const Entry& entry, const Outside& outside);

// Program, system and machine, one line each. Nothing in it tells who the user is.
[[nodiscard]] std::wstring surroundings();

// `text` without the path of the user's profile, which tells the user's name.
[[nodiscard]] std::wstring withoutProfile(std::wstring text, const std::wstring& profile);

}  // namespace machine
