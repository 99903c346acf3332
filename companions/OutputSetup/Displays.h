// The displays that the machine uses, and their arrangement.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "OutputArrangement.h"

namespace setup {

using displays::arrangementOf;
using displays::Connection;
using displays::connectionOf;
using displays::Display;
using displays::favouriteOf;
using displays::kUnknownTechnology;
using displays::nameConnector;
using displays::placesFor;

// Every display that the desktop uses, in the system's order. Empty if the system reports none.
[[nodiscard]] std::vector<Display> attachedDisplays();

// The system's SDC_TOPOLOGY_... flag for an arrangement; nothing if the system has none for it.
[[nodiscard]] std::optional<UINT32> topologyOf(LONG arrangement);

// Sets up the machine's displays. Returns a system error code.
[[nodiscard]] LONG applyArrangement(LONG arrangement);

// "1920 x 1080"
[[nodiscard]] std::wstring resolutionText(LONG width, LONG height);

}  // namespace setup
