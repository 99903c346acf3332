// The request on the program's command line, whose syntax is in OutputSetup.h.
#pragma once

#include <optional>
#include <string_view>

#include "OutputSetup.h"

namespace setup {

enum class Task {
    Output,  // set up one of the arrangements that need it
    Config,  // the displays and the saved favourites
    Save,    // name and store the current arrangement
};

inline constexpr int kMaskBits = OUTPUT_SETUP_MASK_BITS;

struct Request {
    Task task = Task::Config;
    int mode = 0;       // Output: the arrangement to begin with, one of the mask
    unsigned mask = 0;  // Output: bit m stands for arrangement m

    bool operator==(const Request&) const = default;
};

// The part of the command line after the program's name. Nothing for anything but the three requests.
[[nodiscard]] std::optional<Request> parseCommandLine(std::wstring_view commandLine);

}  // namespace setup
