// The Fenwyn of the session, seen from outside.
#pragma once

#include <windows.h>

namespace settings {

// The window that other programs find it by; null: it does not run.
[[nodiscard]] HWND frameOfFenwyn();

// Asks it to end and waits. False: it still runs after so many ms.
[[nodiscard]] bool endFenwyn(DWORD patience);

// Starts the Fenwyn beside this program; with administrator rights it starts by the shell, without them and without
// the arguments. False: it could not be started.
[[nodiscard]] bool startFenwyn(const wchar_t* arguments);

}  // namespace settings
