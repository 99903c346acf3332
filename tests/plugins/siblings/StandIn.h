// Stand-ins for the companion libraries: ZelMain.dll, ZelEvnt.dll, PrtHook.dll and CardArt.dll in
// unit/plugins/siblings/ of the build folder, and each of the first three without one export in
// siblings/no-<export>/. They record their calls and fail if told to.
//
// Tests that start a program set values in
//   HKEY_CURRENT_USER\SOFTWARE\KESTOVA\Fenwyn Test\Sibling\<file name without .dll>
// read once when the library is loaded: <Export>.Result (DWORD), RecordFile (text: calls are appended there).
// In-process tests call StandInControl().
#pragma once

#include <windows.h>

namespace standin {

// The arguments of the program.
using HotkeyCallback = void(WINAPI*)(DWORD code, DWORD breakFlag);
using ConfigCallback = void(WINAPI*)(DWORD kind);
using PrintScreenCallback = LONG(WINAPI*)();

// Called by a stand-in in an in-process test, on the thread of the call.
using Called = void (*)(const wchar_t* exportName);

struct Export {
    LONG result;  // 0; InstallHook: TRUE
    LONG calls;
};

struct Control {
    Export start;
    Export enableHotkey;
    Export stop;
    Export cancelQueryEvent;
    Export installHook;
    HotkeyCallback hotkeyCallback;  // as given to Start
    ConfigCallback configCallback;
    PrintScreenCallback printScreenCallback;  // as given to InstallHook
    Called called;                            // called at every call if a test sets it
};

using GetControl = Control*(WINAPI*)();

// For the stand-ins themselves: counts and records the call and returns the configured result. The record of each call
// has the process's error mode as its only argument.
[[nodiscard]] Control& control();
LONG answer(Export& entry, const wchar_t* exportName);

}  // namespace standin
