// What people do with their favourites: name, rename, delete. The list itself is the product's, OutputFavourites.h.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "OutputFavourites.h"

namespace setup {

using Favourites = std::vector<favourites::Favourite>;

enum class NameVerdict { Good, Empty, TooLong, Taken };

// A name as it is kept: without blanks around it, and with blanks for what cannot be shown in one line.
[[nodiscard]] std::wstring cleanName(std::wstring_view text);

// Whether a clean name may be given to the favourite at `self`, or to a new one.
inline constexpr std::size_t kNewFavourite = static_cast<std::size_t>(-1);
[[nodiscard]] NameVerdict judgeName(const std::wstring& name, const Favourites& favourites, std::size_t self);

// A free name for a new favourite: the stem and the smallest number from 1 that makes it free.
[[nodiscard]] std::wstring proposeName(const std::wstring& stem, const Favourites& favourites);

// Both read the list again first, and return ERROR_NOT_FOUND when the favourite at `index` is not `text` any more
// because another program has changed the list meanwhile. Otherwise a system error code.
[[nodiscard]] LSTATUS renameFavourite(std::size_t index, const std::wstring& text, const std::wstring& newText);
[[nodiscard]] LSTATUS deleteFavourite(std::size_t index, const std::wstring& text);

// Adds at the end. ERROR_INSUFFICIENT_BUFFER when the list is full.
[[nodiscard]] LSTATUS addFavourite(favourites::Favourite favourite);

}  // namespace setup
