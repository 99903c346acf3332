// What the command line asks for.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace machine {

enum class Command {
    CheckMachine,  // go through the functions
    Register,      // write a function list
    Unregister,    // remove it again
    Forgive,       // load plug-ins again that ended the program
    Ask,           // one plug-in, for another program
    Inspect,       // one plug-in, in a process of its own
    Try,           // the same, with a change that is taken back
    ListScreens,   // and whether Fenwyn may change their brightness
    AllowScreen,
    ForbidScreen,
    ScreenBrightness  // of one screen, in a process of its own
};

struct Options {
    Command command = Command::CheckMachine;
    bool tryChanges = false;
    bool forUser = false;           // the user's own list
    bool replace = false;           // a list that is there
    bool elevated = false;          // this is the run with administrator rights; there is no further one
    std::wstring reportFile;        // empty: none
    std::wstring functions;         // of the list to be written, as in "Mute;Lock;"; empty: what the machine offers
    std::wstring function, plugin;  // of Ask, Inspect and Try
    std::wstring screen;            // a number of the list or a path; of ScreenBrightness a path
    std::optional<unsigned long> percentage;  // that ScreenBrightness sets; nothing: it reads
};

// `arguments` without the program's name. Nothing when they make no sense.
[[nodiscard]] std::optional<Options> parseCommandLine(std::span<const std::wstring> arguments);

[[nodiscard]] std::wstring usage();

}  // namespace machine
