// The captions of the functions, in every language. The card of a function shows the caption that the function list has
// for it; whoever writes a list takes it from here. The program must have the resources of Captions.rc.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace captions {

// The languages that there are captions in.
[[nodiscard]] std::vector<LANGID> languages();

// The caption of the function with that name, in the language that comes nearest to `language`. Empty for a function
// that Fenwyn does not know.
[[nodiscard]] std::wstring captionOf(std::wstring_view function, LANGID language);

}  // namespace captions
