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

enum class CardsShown {
    No,     // it does not run or does not answer
    Held,   // until releaseCards()
    Itself  // it hides them itself, or they were there already
};

// Shows the strip as a press of the modifier would. Where the modifier alone shows nothing (HideMainDlg, IgnoreFnKey), as
// a second start of the program would.
[[nodiscard]] CardsShown showCards() noexcept;
// After CardsShown::Held: hides the strip as a release of the modifier would, unless the user has gone on with it.
void releaseCards() noexcept;

}  // namespace settings
