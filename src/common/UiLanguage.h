// Texts of string tables in the language of the user: the system's, or the one that a setting names. Programs and
// plug-ins load their texts here, so that all of them speak the same language.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace common {

// The language that texts are wanted in: the one that FENWYN_VALUE_LANGUAGE names, otherwise that of the system's user
// interface. A name that the system does not know counts as none.
[[nodiscard]] LANGID wantedLanguage() noexcept;

// The one of the languages that are there which comes nearest: the wanted one itself, one of the same language in
// another country, English, or the first. 0 if there is none.
[[nodiscard]] LANGID nearestLanguage(std::span<const LANGID> there, LANGID wanted) noexcept;

// The languages in which the module (null: the program) has the text with that number.
[[nodiscard]] std::vector<LANGID> languagesOfText(HMODULE module, UINT id);

// That text in exactly that language; empty if there is none.
[[nodiscard]] std::wstring textIn(HMODULE module, UINT id, LANGID language);

// That text in the language that comes nearest to `wanted`; empty if there is none.
[[nodiscard]] std::wstring textNear(HMODULE module, UINT id, LANGID wanted);

// That text in the language that comes nearest to the wanted one, which is looked up at the first call and then stays
// the same until the process ends, so that nobody sees two languages at once. Any thread.
[[nodiscard]] std::wstring textOf(HMODULE module, UINT id);

}  // namespace common
