// The simulated machine's state. It lives in the user's registry, so that it survives a restart and every process sees
// it: one subkey per function below kStateKey. Thread-safe; nothing is cached.
//
// Values of every function (DWORD; a missing one means its default):
//   Item              the current item, level or entry
//   Items, Items2     the two values of GetDisplayItemInfo, instead of the table's
//   Count             Action functions: how often the action was chosen
//   <Export>.Result   not 0: the export does nothing and returns this value
//   <Export>.Delay    milliseconds that the export waits first
// Brightness: Dual (1 = two screens), Item2 (the second screen's level). KBB: Timer (seconds). PowerPlan: Name0..Name3
// (text). Wireless: Radios (mask of radios that are on), Fitted (mask of radios), ErrorMode (1 = states unknown).
// Output_2: PanicCount; the favourites are the product's (OutputSetup.h).
// In kStateKey itself: RecordFile (text: where calls are recorded), and of the last call that was to change something
// LastFunction (text: whose it was) and LastResult (0: it was carried out).
#pragma once

#include <windows.h>

#include <string>

#include "FenwynRegistry.h"

namespace sim {

inline constexpr wchar_t kStateKey[] = FENWYN_REG_SIMULATED_NOTEBOOK;
inline constexpr wchar_t kLastFunction[] = L"LastFunction";
inline constexpr wchar_t kLastResult[] = L"LastResult";

// HKEY_CURRENT_USER path of a function's subkey; for an empty name kStateKey itself.
[[nodiscard]] std::wstring stateKeyOf(const std::wstring& function);

// A missing value, or one of another type, yields the fallback.
[[nodiscard]] DWORD readNumber(const std::wstring& function, const wchar_t* value, DWORD fallback);
[[nodiscard]] std::wstring readText(const std::wstring& function, const wchar_t* value, const std::wstring& fallback);

// Creates the key if necessary. False if the registry refused.
bool writeNumber(const std::wstring& function, const wchar_t* value, DWORD number);
bool writeText(const std::wstring& function, const wchar_t* value, const std::wstring& text);

// Whether no function has a state of its own, as after a reset.
[[nodiscard]] bool isNewMachine();

// Resets to a new machine: everything below kStateKey is deleted, except where calls are recorded, and so are the
// favourites of the display output.
bool resetState();

}  // namespace sim
