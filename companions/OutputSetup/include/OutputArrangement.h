// How the displays of a machine form its desktop: names of connectors, arrangements, places. Numbers only, for the
// program that sets the displays up and for the plug-ins that offer arrangements. Thread: any.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "OutputFavourites.h"

namespace displays {

struct Display {
    std::wstring device;  // the adapter's output, e.g. \\.\DISPLAY1; two displays of one output show the same picture
    std::wstring name;
    std::wstring connector;  // as the contract's display records want it, e.g. "LCD" or "HDMI 1"
    bool builtIn = false;
    RECT place{};         // on the desktop, in pixels
    std::wstring path{};  // of the monitor's device: stays the same from one start of the system to the next
};

// How a display is connected; the numbers are the system's DISPLAYCONFIG_VIDEO_OUTPUT_TECHNOLOGY.
struct Connection {
    const wchar_t* word;
    bool builtIn;
};
// `first`: a display whose connection is unknown counts as the notebook's own screen when it is the first.
[[nodiscard]] Connection connectionOf(DWORD technology, bool first);
inline constexpr DWORD kUnknownTechnology = 0xFFFFFFFF;

// Gives each display the name of its connector: external ones are counted by kind.
void nameConnector(std::span<const Display> displays, Display& display, Connection connection);

// The contract's arrangement (FENWYN_MODE_...) that the displays make; there is at least one. Where the others lie is
// told from the notebook's own screen, or from the first display when that is not in use.
[[nodiscard]] LONG arrangementOf(std::span<const Display> displays);

// Where the upper left corners go when the desktop is extended as the arrangement says (FENWYN_MODE_EXTEND_...): in a
// row, from the notebook's own screen outwards. The display that begins the desktop at (0, 0) stays there, because the
// system wants one there. Empty for other arrangements.
[[nodiscard]] std::vector<POINT> placesFor(LONG arrangement, std::span<const Display> displays);

// Keeps by which device path each display is known, and where it lies.
[[nodiscard]] favourites::Favourite favouriteOf(std::wstring text, std::span<const Display> displays);

}  // namespace displays
