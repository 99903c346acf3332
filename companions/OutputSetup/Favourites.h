// The user's operations on favourites: name, rename, delete. The list itself is in OutputFavourites.h.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "OutputFavourites.h"

namespace setup {

using Favourites = std::vector<favourites::Favourite>;

enum class NameVerdict { Good, Empty, TooLong, Taken };

// A name as it is stored: without surrounding blanks, and with blanks for characters that cannot be shown in one line.
[[nodiscard]] std::wstring cleanName(std::wstring_view text);

// Whether a clean name may be used for the favourite at `self`, or for a new one.
inline constexpr std::size_t kNewFavourite = static_cast<std::size_t>(-1);
[[nodiscard]] NameVerdict judgeName(const std::wstring& name, const Favourites& favourites, std::size_t self);

// A free name for a new favourite: the stem and the smallest number from 1 that makes it free.
[[nodiscard]] std::wstring proposeName(const std::wstring& stem, const Favourites& favourites);

// Both first read the list again, and return ERROR_NOT_FOUND if the favourite at `index` is no longer `text` because
// another program has changed the list. Otherwise a system error code.
[[nodiscard]] LSTATUS renameFavourite(std::size_t index, const std::wstring& text, const std::wstring& newText);
[[nodiscard]] LSTATUS deleteFavourite(std::size_t index, const std::wstring& text);

// Adds at the end. ERROR_INSUFFICIENT_BUFFER if the list is full.
[[nodiscard]] LSTATUS addFavourite(favourites::Favourite favourite);

}  // namespace setup
