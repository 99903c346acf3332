// Texts of others, as far as they are shown. Drawing takes a time that grows with the text, and a caption of a megabyte
// would hold the cards up for minutes.
#pragma once

#include <algorithm>
#include <cwchar>
#include <string>

namespace common {

inline constexpr std::size_t kMostShownChars = 256;  // far more than fits anywhere

// The beginning of a text that ends after `limit` characters at the latest, without a terminator too.
[[nodiscard]] inline std::wstring shownText(const wchar_t* pszText, std::size_t limit = kMostShownChars) {
    std::size_t length = ::wcsnlen(pszText, std::min(limit, kMostShownChars));
    const bool half = length == kMostShownChars && (pszText[length - 1] & 0xFC00) == 0xD800;  // of a pair
    return {pszText, length - (half ? 1 : 0)};
}

}  // namespace common
