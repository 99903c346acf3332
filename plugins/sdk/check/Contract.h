// What the checker knows in addition to the table of functions.
#pragma once

#include <windows.h>

#include <string_view>

#include "FenwynFunctions.h"

namespace check {

inline constexpr std::wstring_view kConnectorWords[] = {L"LCD", L"RGB", L"DVI", L"HDMI", L"DisplayPort"};

inline constexpr UINT kLongestReason = 400;  // characters of GetUnsupportedReason
inline constexpr double kSlowCall = 50;      // ms that users begin to notice

}  // namespace check
