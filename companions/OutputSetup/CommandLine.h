// What the program is asked to do, as the display-output function of the strip writes it on the command line.
#pragma once

#include <optional>
#include <string_view>

namespace setup {

enum class Task {
    Output,  // "\OutputConf N": set up one of the arrangements that need it
    Config,  // "\Config": the displays and the saved favourites
    Save,    // "\Save": name and keep the present arrangement
};

inline constexpr int kMaskBits = 16;

struct Request {
    Task task = Task::Config;
    int mode = 0;       // Output: the arrangement to begin with, one of the mask
    unsigned mask = 0;  // Output: bit m stands for arrangement m

    bool operator==(const Request&) const = default;
};

// The part of the command line after the program's name. Upper and lower case mean the same. Nothing for anything else
// than the three requests; N = mode * 65536 | mask, decimal, whose mode must be one of the mask.
[[nodiscard]] std::optional<Request> parseCommandLine(std::wstring_view commandLine);

}  // namespace setup
