// What the windows request from the machine and the user. Tests supply their own implementation.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Displays.h"

namespace setup {

struct Surroundings {
    std::function<std::vector<Display>()> displays;
    // Sets up the displays. Returns a system error code; ERROR_NOT_SUPPORTED for an arrangement without its own
    // settings.
    std::function<LONG(LONG arrangement)> apply;
    // A message for the user, and a question with the answers yes (true) and no. Both return when the user has
    // answered; the owner may have been destroyed by then.
    std::function<void(HWND owner, const std::wstring& text)> tell;
    std::function<bool(HWND owner, const std::wstring& text)> ask;
    // The font of the windows; its height is in pixels.
    std::function<LOGFONTW()> font;
    // What the person has to know before a window opens; empty: nothing.
    std::wstring warning;
};

// The machine that the program runs on. Its displays come from the display source in the registry if there is one, else
// from the system.
[[nodiscard]] Surroundings realSurroundings();

}  // namespace setup
