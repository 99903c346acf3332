// From a process that ended by a fault to the next one: how it is started, what it does with its predecessor, and what
// it learns of it.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "Data/FaultMemory.h"
#include "Logic/Faults/CallSection.h"

namespace faults {

// The command lines by which the program is started without its plug-ins, or without showing its cards.
inline constexpr wchar_t kSafeSwitch[] = L"/safe";
inline constexpr wchar_t kQuietSwitch[] = L"/hide";
// Upper or lower case.
[[nodiscard]] bool isSwitch(const wchar_t* pszArgument, const wchar_t* pszSwitch) noexcept;

// The files beside the log: the section, and of the last three faults the dump and the log that the fault ended.
inline constexpr wchar_t kSectionFile[] = L"calls.bin";
inline constexpr const wchar_t* kKeptPatterns[] = {L"fault-*.dmp", L"fault-*.txt"};
inline constexpr std::size_t kFaultsKept = 3;

// Starts the program once more. The new process looks at this one, writes the dump and ends it; `bGoOn`: afterwards it
// takes its place. False: it could not be started. Any thread.
[[nodiscard]] bool startSuccessor(bool bGoOn) noexcept;

struct Predecessor {
    bool existed = false;  // this process is a successor
    bool goOn = true;      // it takes the place of its predecessor
};

// In a successor: writes the dump, keeps a copy of the log, ends the predecessor and waits for its end. `strLogFile`:
// the full path of the log, or empty. Before everything else.
[[nodiscard]] Predecessor takeOver(const std::wstring& strLogFile);

// The folder of a file, with a backslash at its end.
[[nodiscard]] std::wstring folderOf(const std::wstring& strFile);

// What is to be remembered of a process that left this section behind; nothing if no plug-in is to blame for its end.
[[nodiscard]] std::optional<fenwyn::PluginFault> faultLeftIn(const Section& left, ULONGLONG ullTickNow);

// Removes all but the newest files of faults.
void pruneFaultFiles(const std::wstring& strFolder);

}  // namespace faults
