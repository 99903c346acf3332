// What the windows request from the machine and the user. Tests supply their own implementation.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Displays.h"

namespace setup {

struct Surroundings {
    std::function<std::vector<Display>()> displays;
    // Sets up the displays as one of the arrangements that topologyOf knows. Returns a system error code.
    std::function<LONG(LONG arrangement)> apply;
    // A message for the user, and a question with the answers yes (true) and no. Both return when the user has
    // answered; the owner may have been destroyed by then.
    std::function<void(HWND owner, const std::wstring& text)> tell;
    std::function<bool(HWND owner, const std::wstring& text)> ask;
};

// The machine that the program runs on.
[[nodiscard]] Surroundings realSurroundings();

}  // namespace setup
