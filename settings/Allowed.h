// What a setting may be. Nothing else is imported, entered or written with administrator rights.
#pragma once

#include <array>
#include <span>
#include <string>

#include "Store.h"
#include "Values.h"

namespace settings {

// Keys that have others of the same kind below them, each with these values: the functions of the list, and the customised
// keys.
struct Family {
    const wchar_t* parent;
    bool (*isKey)(const std::wstring& name);
    std::array<const wchar_t*, 3> names;  // the rest is null
    bool (*isContent)(const std::wstring& name, const Data& data);
    bool forUsers;  // also below the user's root
};
[[nodiscard]] std::span<const Family> families();

// The section of the log's settings file, and its values.
inline constexpr wchar_t kLogSection[] = L"LOG";
[[nodiscard]] std::span<const wchar_t* const> logNames();

// The key of a setting below its root.
[[nodiscard]] const wchar_t* keyOf(Scope scope);

// Whether a setting may have this content: of the right type, and in range.
[[nodiscard]] bool isGood(const Value& value, const Data& data);

// Whether it means something that there is no value: other settings are written with their default.
[[nodiscard]] constexpr bool mayBeAbsent(const Value& value) {
    return isText(value.kind) || value.scope == Scope::Start;
}

// Whether the place is one of a setting, and the content one that it may have.
[[nodiscard]] bool isAllowed(const Place& place, const Content& content);

// A path that can be stored: not empty, not too long, and without characters that no path has.
[[nodiscard]] bool isPath(const std::wstring& text);
inline constexpr std::size_t kLongestPath = 259;     // characters
inline constexpr std::size_t kLongestCaption = 100;  // likewise

// A hotkey code as ZelHotkey.h describes them; the modifier's own is none.
[[nodiscard]] bool isCode(DWORD code);

// The languages of all texts, as the setting names them.
[[nodiscard]] std::span<const wchar_t* const> languageNames();

}  // namespace settings
