// The displays that the machine uses, and their arrangement.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OutputFavourites.h"

namespace setup {

struct Display {
    std::wstring device;  // the adapter's output, e.g. \\.\DISPLAY1; two displays of one output show the same picture
    std::wstring name;
    std::wstring connector;  // as in the contract's display records, e.g. "LCD" or "HDMI 1"
    bool builtIn = false;
    RECT place{};  // on the desktop, in pixels
};

// Every display that the desktop uses, in the system's order. Empty if the system reports none.
[[nodiscard]] std::vector<Display> attachedDisplays();

// How a display is connected; the numbers are the system's DISPLAYCONFIG_VIDEO_OUTPUT_TECHNOLOGY.
struct Connection {
    const wchar_t* word;
    bool builtIn;
};
// `first`: a display with an unknown connection counts as the notebook's own screen if it is the first.
[[nodiscard]] Connection connectionOf(DWORD technology, bool first);
inline constexpr DWORD kUnknownTechnology = 0xFFFFFFFF;

// Gives each display the name of its connector: external ones are counted by kind.
void nameConnector(std::span<const Display> displays, Display& display, Connection connection);

// The contract's arrangement (FENWYN_MODE_...) of the displays, of which there is at least one. The position of the
// others is relative to the notebook's own screen, or to the first display if that is not in use.
[[nodiscard]] LONG arrangementOf(std::span<const Display> displays);

// Where the upper left corners go when the desktop is extended as the arrangement says (FENWYN_MODE_EXTEND_...): in a
// row, starting at the notebook's own screen. The display at the desktop's origin (0, 0) stays there, because the
// system requires one there. Empty for other arrangements.
[[nodiscard]] std::vector<POINT> placesFor(LONG arrangement, std::span<const Display> displays);

// The system's SDC_TOPOLOGY_... flag for an arrangement; nothing if the system has none for it.
[[nodiscard]] std::optional<UINT32> topologyOf(LONG arrangement);

// Sets up the machine's displays. Returns a system error code.
[[nodiscard]] LONG applyArrangement(LONG arrangement);

[[nodiscard]] favourites::Favourite favouriteOf(std::wstring text, std::span<const Display> displays);

// "1920 x 1080"
[[nodiscard]] std::wstring resolutionText(LONG width, LONG height);

}  // namespace setup
