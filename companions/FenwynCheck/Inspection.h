// Inspects or tries one plug-in. Runs in a process of its own, because a plug-in may crash or never return.
#pragma once

#include <string>

namespace machine {

// The result, which is the exit code of the inspecting process. Any other code means that the process crashed or hung.
enum class Outcome : int { Offered = 0, Faulty = 1, Declined = 10 };

struct Finding {
    Outcome outcome;
    std::wstring text;  // lines, each ended by a line feed
};

// Asks the plug-in what Fenwyn asks it, and changes nothing.
[[nodiscard]] Finding inspect(const std::wstring& function, const std::wstring& plugin);

// A plug-in for real machines, by its name without ending, remembers whether it was offered, and goes by it where the
// machine answers late. Without it, its next start waits for the machine.
void forgetOffer(const wchar_t* name);

}  // namespace machine
