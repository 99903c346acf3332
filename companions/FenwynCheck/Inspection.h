// One plug-in, looked at or tried. Runs in a process of its own, because a plug-in may crash or never return.
#pragma once

#include <string>

namespace machine {

// How it went; the exit code of the process that did it. Every other code means that the process came to grief.
enum class Outcome : int { Offered = 0, Faulty = 1, Declined = 10 };

struct Finding {
    Outcome outcome;
    std::wstring text;  // lines, each ended by a line feed
};

// Asks the plug-in what Fenwyn asks it, and changes nothing.
[[nodiscard]] Finding inspect(const std::wstring& function, const std::wstring& plugin);

}  // namespace machine
