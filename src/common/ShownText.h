// Texts of others, as far as they are shown. Drawing takes a time that grows with the text, and a caption of a megabyte
// would hold the cards up for minutes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <string>

namespace common {

inline constexpr std::size_t kMostShownChars = 256;  // far more than fits anywhere

// The length of the beginning of a text that ends after `limit` characters at the latest, without a terminator too.
[[nodiscard]] inline std::size_t shownLength(const wchar_t* pszText, std::size_t limit) noexcept {
    const std::size_t length = ::wcsnlen(pszText, std::min(limit, kMostShownChars));
    const bool half = length == kMostShownChars && (pszText[length - 1] & 0xFC00) == 0xD800;  // of a pair
    return length - (half ? 1 : 0);
}

[[nodiscard]] inline std::wstring shownText(const wchar_t* pszText, std::size_t limit = kMostShownChars) {
    return {pszText, shownLength(pszText, limit)};
}

// The same without memory of the heap.
class ShownText {
 public:
    ShownText() noexcept = default;
    ShownText(const wchar_t* pszText, std::size_t limit) noexcept : m_length(shownLength(pszText, limit)) {
        std::copy_n(pszText, m_length, m_chars.begin());
    }
    [[nodiscard]] std::wstring str() const { return {m_chars.data(), m_length}; }

 private:
    std::array<wchar_t, kMostShownChars> m_chars{};
    std::size_t m_length = 0;
};

}  // namespace common
