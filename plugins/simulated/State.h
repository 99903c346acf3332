// The simulated machine's state. It lives in the user's registry, so that it survives a restart and every process sees
// it: one subkey per function below kStateKey. Thread-safe; nothing is cached.
//
// Values that every function knows (DWORD; a missing one means its default):
//   Item              the current item, level or entry
//   Items, Items2     the two values of GetDisplayItemInfo, in place of the table's
//   Count             Action functions: how often the action was chosen
//   <Export>.Result   not 0: that export does nothing and returns this
//   <Export>.Delay    milliseconds that the export waits first
// Brightness: Dual (1 = two screens), Item2 (the second screen's level). KBB: Timer (seconds). PowerPlan: Name0..Name3
// (text). Wireless: Radios (mask of radios that are on), Fitted (mask of radios), ErrorMode (1 = states unknown).
// Output_2: PanicCount; the favourites are the product's (OutputSetup.h).
// In kStateKey itself: RecordFile (text: where calls are recorded) and LastCall (text: the last call that changed
// something).
#pragma once

#include <windows.h>

#include <string>

#include "FenwynRegistry.h"

namespace sim {

inline constexpr wchar_t kStateKey[] = FENWYN_REG_SIMULATED_NOTEBOOK;

// HKEY_CURRENT_USER path of a function's subkey; an empty name gives kStateKey itself.
[[nodiscard]] std::wstring stateKeyOf(const std::wstring& function);

// A value that is missing or of another type gives the fallback.
[[nodiscard]] DWORD readNumber(const std::wstring& function, const wchar_t* value, DWORD fallback);
[[nodiscard]] std::wstring readText(const std::wstring& function, const wchar_t* value, const std::wstring& fallback);

// Creates the key when needed. False when the registry refused.
bool writeNumber(const std::wstring& function, const wchar_t* value, DWORD number);
bool writeText(const std::wstring& function, const wchar_t* value, const std::wstring& text);

// Back to a new machine: everything below kStateKey is deleted, except where calls are recorded, and the favourites of
// the display output go.
bool resetState();

}  // namespace sim
