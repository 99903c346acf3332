#include "Favourites.h"

#include <algorithm>
#include <iterator>

namespace setup {
namespace {

bool isBlank(wchar_t letter) {
    return letter <= L' ' || letter == 0x7F || letter == 0xA0;
}

bool sameName(const std::wstring& first, const std::wstring& second) {
    return ::CompareStringOrdinal(first.c_str(), static_cast<int>(first.size()), second.c_str(),
                                  static_cast<int>(second.size()), TRUE) == CSTR_EQUAL;
}

bool isTaken(const std::wstring& name, const Favourites& favourites, std::size_t self) {
    for (std::size_t i = 0; i < favourites.size(); ++i) {
        if (i != self && sameName(favourites[i].text, name)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::wstring cleanName(std::wstring_view text) {
    std::wstring name(text);
    std::replace_if(name.begin(), name.end(), &isBlank, L' ');
    const std::size_t first = name.find_first_not_of(L' ');
    if (first == std::wstring::npos) {
        return {};
    }
    return name.substr(first, name.find_last_not_of(L' ') - first + 1);
}

NameVerdict judgeName(const std::wstring& name, const Favourites& favourites, std::size_t self) {
    if (name.empty()) {
        return NameVerdict::Empty;
    }
    if (name.size() > favourites::kMostTextChars) {
        return NameVerdict::TooLong;
    }
    return isTaken(name, favourites, self) ? NameVerdict::Taken : NameVerdict::Good;
}

std::wstring proposeName(const std::wstring& stem, const Favourites& favourites) {
    std::wstring name;
    for (std::size_t i = 1; name.empty() || isTaken(name, favourites, kNewFavourite); ++i) {
        name = stem + L" " + std::to_wstring(i);
    }
    return name;
}

LSTATUS renameFavourite(std::size_t index, const std::wstring& text, const std::wstring& newText) {
    Favourites favourites = favourites::load();
    if (index >= favourites.size() || favourites[index].text != text) {
        return ERROR_NOT_FOUND;
    }
    favourites[index].text = newText;
    return favourites::store(favourites);
}

LSTATUS deleteFavourite(std::size_t index, const std::wstring& text) {
    Favourites favourites = favourites::load();
    if (index >= favourites.size() || favourites[index].text != text) {
        return ERROR_NOT_FOUND;
    }
    favourites.erase(std::next(favourites.begin(), static_cast<std::ptrdiff_t>(index)));
    return favourites::store(favourites);
}

LSTATUS addFavourite(favourites::Favourite favourite) {
    Favourites favourites = favourites::load();
    if (favourites.size() >= favourites::kMost) {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    favourites.push_back(std::move(favourite));
    return favourites::store(favourites);
}

}  // namespace setup
