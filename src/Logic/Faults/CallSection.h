// What the process notes of its plug-in calls: which are in progress, and what ended the process. It is a file that is
// mapped into memory, so that the next start finds it, whatever became of this process. Writing it is writing memory:
// no lock, no heap, no system call.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace faults {

enum class Reason : DWORD {
    None,
    Exception,  // a structured exception that the plug-in did not handle
    Thrown,     // a C++ exception that left an export
    Abort,      // abort(), or a failed check of the runtime
    Exit,       // exit()
    Hang,       // a call that did not return, ended by the program itself
    Gone,       // nobody noticed the end: ExitProcess, TerminateProcess, or a kill from outside
};

// The phase of a plug-in's life in which a call is made. A fault of the first kind would come back at every start.
enum class Phase : DWORD { Initialising, InUse, Ending };

inline constexpr std::size_t kMaxPlugins = 64;
inline constexpr std::size_t kMaxCalls = 8;  // in progress at the same time, on all threads
inline constexpr std::size_t kPathChars = 260;
inline constexpr std::size_t kNameChars = 64;
inline constexpr std::size_t kExportChars = 32;

struct PluginEntry {
    wchar_t path[kPathChars];
    wchar_t function[kNameChars];  // its name in the function list
    wchar_t caption[kNameChars];   // what the user calls it
    ULONGLONG base;                // of its image; 0: it is not loaded
    ULONGLONG end;
};

struct CallEntry {
    LONG thread;  // its id; 0: the entry is free. Claimed and released with interlocked operations
    LONG order;   // of two calls of one thread, the later one has the higher number
    DWORD plugin;
    Phase phase;
    ULONGLONG since;  // GetTickCount64
    char name[kExportChars];
};

struct FaultEntry {
    Reason reason;
    DWORD code;          // of the exception
    DWORD thread;        // where it happened
    BOOL known;          // `call` and `plugin` are filled: a plug-in is to blame
    ULONGLONG pointers;  // address of the EXCEPTION_POINTERS in the process; 0: there are none
    ULONGLONG time;      // FILETIME, UTC
    BOOL told;           // the user has been told
    PluginEntry plugin;
    CallEntry call;
};

struct Section {
    DWORD magic;
    DWORD size;
    DWORD processId;
    BOOL running;         // until the orderly end
    ULONGLONG startTick;  // GetTickCount64 at the start; a smaller one later means that the machine was started again
    ULONGLONG startTime;  // FILETIME, UTC
    BOOL ownRestart;      // the process was started by its predecessor, which had ended for no plug-in's fault
    LONG plugins;
    LONG signs;  // counts the signs of life of the user-interface thread
    LONG order;
    FaultEntry fault;
    CallEntry last;  // the call of the user-interface thread that ended last
    std::array<CallEntry, kMaxCalls> calls;
    std::array<PluginEntry, kMaxPlugins> plugin;
};

// The section of this process: in its own memory until mapSection() has succeeded.
[[nodiscard]] Section& section() noexcept;

// Maps the file and makes it the section. `rLeft` gets what it contained, all zero if there was none. False: the file
// cannot be used, because another instance holds it or there is no folder for it; the section then stays in memory, and
// the next start learns nothing. Before the first plug-in call; once.
[[nodiscard]] bool mapSection(const wchar_t* pszFile, Section& rLeft) noexcept;

// The newest call in progress on a thread, or on any thread (0); null if there is none.
[[nodiscard]] const CallEntry* newestCall(DWORD dwThread) noexcept;
[[nodiscard]] const CallEntry* newestCall(const Section& rSection, DWORD dwThread) noexcept;

// The name of the call, without the formatting functions, which may need the heap for it.
void widen(const CallEntry& rCall, wchar_t (&rName)[kExportChars]) noexcept;

// Now, as a FILETIME in UTC.
[[nodiscard]] ULONGLONG timeNow() noexcept;

}  // namespace faults
