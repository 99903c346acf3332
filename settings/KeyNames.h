// What keys are called, in the language of the user's keyboard and texts.
#pragma once

#include <windows.h>

#include <string>

namespace settings {

// A key by its hotkey code, without "Fn": "F2", or its number where the keyboard has no name for it.
[[nodiscard]] std::wstring keyName(DWORD code);
// The same with what has to be held: "Fn + F2" or "F13".
[[nodiscard]] std::wstring keyWithModifier(DWORD code);
[[nodiscard]] std::wstring nameOfVirtualKey(DWORD virtualKey);

// Keys that people need for typing and moving about must not lose their function.
[[nodiscard]] bool isForTyping(DWORD virtualKey) noexcept;

// The keyboard that a raw-input handle belongs to, as Windows calls it; empty if it does not tell.
[[nodiscard]] std::wstring keyboardName(HANDLE device);

}  // namespace settings
