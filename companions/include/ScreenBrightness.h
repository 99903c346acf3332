// How the brightness of external screens is read and set: by a process of its own, because a screen may keep a call
// waiting for seconds, or forever. FenwynCheck.exe is that process.
#pragma once

#include "FenwynRegistry.h"

namespace fenwyn {

inline constexpr wchar_t kBrightnessProgram[] = L"FenwynCheck.exe";

// <program> --screen-brightness <path> [<percentage>]
// Sets the brightness of an active screen, or reads it if there is no percentage. The path is that of the screen's
// device.
inline constexpr wchar_t kScreenBrightness[] = L"--screen-brightness";

// Its exit code: the percentage after reading, 0 after setting; otherwise one of these.
inline constexpr unsigned long kFullBrightness = 100;
inline constexpr unsigned long kScreenNotAllowed = 200;  // its owner has not said that Fenwyn may change it
inline constexpr unsigned long kScreenNotThere = 201;    // or not active, or not to be told from another one
inline constexpr unsigned long kScreenRefuses = 202;     // or the system has no way to it
inline constexpr unsigned long kScreenTookTooLong = 203;

// The process ends itself after this time, in ms, even if nobody waits for it any more.
inline constexpr unsigned long kBrightnessProcessMs = 8000;

}  // namespace fenwyn

// In HKEY_CURRENT_USER: the screens whose brightness Fenwyn may change, REG_DWORD 1 under the path of each one's
// device.
#define FENWYN_REG_ALLOWED_SCREENS FENWYN_REG_PRODUCT L"\\AllowedScreens"
