// The harmless changes: made, seen, and taken back.
#pragma once

#include <string>

#include "Inspection.h"

namespace machine {

// What is asked before the function is tried; null when nothing of it is harmless.
[[nodiscard]] const wchar_t* trialQuestion(const std::wstring& function);

// Changes the function's state to its neighbour and back, and watches whether it really does. A change that had no
// effect is a fault; the way back is tried in any case.
[[nodiscard]] Finding tryChange(const std::wstring& function, const std::wstring& plugin);

}  // namespace machine
