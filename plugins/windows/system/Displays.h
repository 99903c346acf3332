// The screens of the machine and how they are used.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "OutputArrangement.h"

namespace win {

// A connected screen. The place of one that is off begins at (0, 0) and has the size that it would get.
struct Screen {
    displays::Display display;
    bool bActive = false;
};

struct DisplayState {
    std::vector<Screen> screens;
    std::size_t nConnectors = 0;    // where a screen is, or could be connected
    bool bRemote = false;           // the session is shown on another machine's screens
    bool bEveryArrangement = true;  // false: neither the same picture on several screens nor the own one off
};

// One active screen of an arrangement. Screens with the same upper left corner show the same picture.
struct PlacedScreen {
    std::wstring path;  // of the monitor's device, never a number of an adapter: those change with each start
    RECT place{};       // an empty one leaves size and place to the system

    bool operator==(const PlacedScreen& other) const {
        return path == other.path && ::EqualRect(&place, &other.place) != FALSE;
    }
};
using Layout = std::vector<PlacedScreen>;

// What the system can set up by itself.
enum class Topology { Internal, Clone, Extend, External };

// One thread, which may wait: screens take seconds. What was asked for is not always what comes: read() tells.
class IDisplays {
 public:
    virtual ~IDisplays() = default;

    [[nodiscard]] virtual DisplayState read() = 0;
    // False: the system refused.
    [[nodiscard]] virtual bool apply(Topology topology) = 0;
    [[nodiscard]] virtual bool apply(const Layout& rLayout) = 0;
};

// The active screens as they are.
[[nodiscard]] Layout layoutOf(const std::vector<Screen>& rScreens);

// By the display configuration of the system; where that changes nothing, by its older settings for each output.
[[nodiscard]] std::shared_ptr<IDisplays> makeWindowsDisplays();

}  // namespace win
