// The icon in the notification area: `FenwynSettings /tray`.
#pragma once

#include <windows.h>

namespace settings {

// Shows the icon until somebody ends it. Returns the exit code of the process.
[[nodiscard]] int runTray(HINSTANCE instance);

}  // namespace settings
