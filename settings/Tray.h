// The icon in the notification area, as a process of its own: "FenwynSettings /tray".
#pragma once

#include <windows.h>

namespace settings {

// The event that ends the icon in good order: open it with EVENT_MODIFY_STATE and call SetEvent, as the installer does.
inline constexpr wchar_t kTrayEndEvent[] = L"Local\\KESTOVA_Fenwyn_Tray_End";

// The window by which other programs find the process.
inline constexpr wchar_t kTrayClass[] = L"FenwynTray";

// Shows the icon until the session or the event ends it. Returns the process's exit code: 0 also if none is wanted (TrayIcon) or the session has an
// icon already.
[[nodiscard]] int runTray(HINSTANCE instance);

}  // namespace settings
