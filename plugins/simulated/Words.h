// What the simulated notebook says to people, in the language of the user interface.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>

namespace sim {

enum class Language { English, German };

// That of the user interface; English stands in for every language that there are no words of.
[[nodiscard]] Language uiLanguage() noexcept;

// The words are known by their English form; the other languages stand in Functions.inc and Words.inc. What is not
// found there, for instance a name that a person has given, stays as it is.
[[nodiscard]] std::wstring word(std::wstring_view english, Language language);
[[nodiscard]] std::wstring word(std::wstring_view english);

// The same with "%1", "%2" ... replaced, each once.
[[nodiscard]] std::wstring word(std::wstring_view english, std::initializer_list<std::wstring> arguments);

}  // namespace sim
