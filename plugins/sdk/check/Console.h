// What the checking programs share: telling a person something, and a last word when a plug-in crashes or
// hangs.
#pragma once

#include <windows.h>

#include <string>

namespace check {

// Writes to standard output: as characters to a console, as UTF-8 to a file or a pipe.
void tell(const std::wstring& text);

// From here on a crash of a plug-in is told, with the export that was running, and ends the process with 1.
void tellCrashes();

// A process that still runs after that many milliseconds tells which export does not return, and ends with 1.
void tellHangs(DWORD milliseconds);

}  // namespace check
