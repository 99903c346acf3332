// The libraries that the program finds in its folder: the stand-ins, unless a test removes one or one of its exports.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "plugins/siblings/StandIn.h"

namespace siblings {

// All stand-ins complete, no calls, no requested names.
void reset();
void remove(const std::wstring& file);
// "ZelMain.dll", "Stop": the variant without that export.
void withoutExport(const std::wstring& file, const std::wstring& exportName);

// The program finds a copy of that file until the next reset. Returns the path of the copy.
[[nodiscard]] std::wstring copyThatNobodyHolds(const std::wstring& file);

// The names of the requested libraries, in order.
[[nodiscard]] const std::vector<std::wstring>& asked();

// Of the library that the program finds now; it stays loaded until the test program ends.
[[nodiscard]] standin::Control& control(const std::wstring& file);

}  // namespace siblings
