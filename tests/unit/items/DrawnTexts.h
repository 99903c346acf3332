// What reaches the text output of GDI+. The texts are drawn all the same.
#pragma once

#include <string>
#include <vector>

#include "common/GdiPlus.h"

namespace items {

struct DrawnText {
    std::wstring text;
    Gdiplus::RectF layout;
    Gdiplus::StringTrimming trimming;
    Gdiplus::StringAlignment alignment;
};

// One for the process, in the order of the calls. Tests draw on one thread.
[[nodiscard]] std::vector<DrawnText>& drawnTexts();

}  // namespace items
