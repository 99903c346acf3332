// What the windows ask of the machine and of the person at it. Tests put their own answers in.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Displays.h"

namespace setup {

struct Surroundings {
    std::function<std::vector<Display>()> displays;
    // Sets the displays up as one of the arrangements that topologyOf knows. A system error code.
    std::function<LONG(LONG arrangement)> apply;
    // A message for the person, and a question that is answered by yes (true) or no. Both return when it is answered;
    // the owner may be gone by then.
    std::function<void(HWND owner, const std::wstring& text)> tell;
    std::function<bool(HWND owner, const std::wstring& text)> ask;
};

// The machine that the program runs on.
[[nodiscard]] Surroundings realSurroundings();

}  // namespace setup
