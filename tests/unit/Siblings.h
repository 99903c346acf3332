// Which libraries the program finds beside itself: the stand-ins, unless a test takes one away or one of its exports.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "plugins/siblings/StandIn.h"

namespace siblings {

// All stand-ins complete, nothing called, nothing asked for.
void reset();
void remove(const std::wstring& file);
// "ZelMain.dll", "Stop": the variant without that export.
void withoutExport(const std::wstring& file, const std::wstring& exportName);

// The program finds a copy of that file from here to the next reset. The path of the copy.
[[nodiscard]] std::wstring copyThatNobodyHolds(const std::wstring& file);

// The names that were asked for, in order.
[[nodiscard]] const std::vector<std::wstring>& asked();

// Of the library that the program finds now; it stays loaded for the test program's life.
[[nodiscard]] standin::Control& control(const std::wstring& file);

}  // namespace siblings
