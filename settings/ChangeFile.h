// Settings as text: what is exported to a file and imported from one, and what the process with administrator rights is
// asked to write.
//
//     Fenwyn settings 1
//
//     [User\Fenwyn\Config]
//     Position=number:1
//
// A section is a root (Machine, User, Log) and a key, for the registry below the key of all products. A line is a name
// and what it is to have: "number:" and a number, "numbers:" and numbers in hexadecimal digits, "text:" or "path:" and the
// text up to the end of the line (a path may name environment variables), or "none". Lines that begin with ";" are for
// people.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Store.h"

namespace settings {

[[nodiscard]] std::wstring fileText(const Changes& changes);

// Nothing if a line is none of these, then `errorLine` is its number, from 1; so is a place that is named twice. That a
// place and its content may be is not checked.
[[nodiscard]] std::optional<Changes> parseFile(const std::wstring& text, std::size_t& errorLine);

// Files are in UTF-8; those of others may be in UTF-16 with its mark. A system error code.
[[nodiscard]] LSTATUS writeTextFile(const std::wstring& path, const std::wstring& text);
[[nodiscard]] LSTATUS readTextFile(const std::wstring& path, std::wstring& text);

}  // namespace settings
