// The scale of a screen.
#pragma once

#include <windows.h>

// How much larger than at 96 dots per inch the user wants to see things on that screen: 1.0 there. Screens have scales
// of their own from Windows 8.1 on; otherwise, and for null, it is the system's.
[[nodiscard]] double monitorScale(HMONITOR hMonitor);
