// The user's favourites of the display output: how they are kept, for the plug-in that offers them and for the program
// that saves them. Registry layout, below HKEY_CURRENT_USER:
//
//   SOFTWARE\KESTOVA\Simulated Notebook\Output_2\Favourites
//       <n>          one subkey per favourite, named 0, 1, 2 ... in the order in which they are offered
//           Text      REG_SZ      its name, at most kMaxFavouriteText characters
//           Mode      REG_DWORD   its arrangement, FENWYN_MODE_INTERNAL .. FENWYN_MODE_SEVERAL
//           Displays  REG_BINARY  its FenwynDisplayRecords, one after the other
//
// While the "Favourites" key does not exist the machine offers one favourite of the factory.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "FenwynPlugin.h"
#include "common/Handle.h"

namespace sim {

inline constexpr wchar_t kFavouritesKey[] = L"SOFTWARE\\KESTOVA\\Simulated Notebook\\Output_2\\Favourites";
inline constexpr std::size_t kMaxFavourites = 32;
inline constexpr std::size_t kMaxFavouriteText = 63;
inline constexpr std::size_t kMaxFavouriteDisplays = 8;

struct Favourite {
    std::wstring text;
    LONG mode = FENWYN_MODE_INTERNAL;
    std::vector<FenwynDisplayRecord> displays;
};

// The connector name is cut to fit.
[[nodiscard]] inline FenwynDisplayRecord displayRecord(const std::wstring& connector, ULONG index, ULONG width,
                                                       ULONG height) {
    FenwynDisplayRecord record{};
    connector.copy(record.szConnector, FENWYN_CONNECTOR_CHARS - 1);
    record.uDisplayIndex = index;
    record.uWidth = width;
    record.uHeight = height;
    return record;
}

[[nodiscard]] inline std::vector<Favourite> factoryFavourites() {
    return {{L"Desk",
             FENWYN_MODE_EXTEND_RIGHT,
             {displayRecord(L"LCD", 0, 1920, 1080), displayRecord(L"DisplayPort 1", 1, 2560, 1440)}}};
}

// False for a favourite that is not there or makes no sense; `favourite` is untouched then.
[[nodiscard]] inline bool readFavourite(HKEY parent, const std::wstring& name, Favourite& favourite) {
    wchar_t text[kMaxFavouriteText + 1];
    DWORD bytes = sizeof text;
    DWORD mode = 0;
    DWORD modeBytes = sizeof mode;
    std::vector<FenwynDisplayRecord> records(kMaxFavouriteDisplays);
    auto recordBytes = static_cast<DWORD>(records.size() * sizeof(FenwynDisplayRecord));
    const wchar_t* key = name.c_str();
    if (RegGetValueW(parent, key, L"Text", RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS ||
        RegGetValueW(parent, key, L"Mode", RRF_RT_REG_DWORD, nullptr, &mode, &modeBytes) != ERROR_SUCCESS ||
        RegGetValueW(parent, key, L"Displays", RRF_RT_REG_BINARY, nullptr, records.data(), &recordBytes) !=
            ERROR_SUCCESS ||
        mode > FENWYN_MODE_SEVERAL) {
        return false;
    }
    records.resize(recordBytes / sizeof(FenwynDisplayRecord));
    for (FenwynDisplayRecord& record : records) {
        record.szConnector[FENWYN_CONNECTOR_CHARS - 1] = L'\0';
    }
    favourite = {text, static_cast<LONG>(mode), std::move(records)};
    return true;
}

// The favourites in the order in which they are offered. Entries that make no sense are left out.
[[nodiscard]] inline std::vector<Favourite> loadFavourites() {
    common::UniqueRegKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kFavouritesKey, 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        return factoryFavourites();
    }
    std::vector<Favourite> favourites;
    for (std::size_t i = 0; i < kMaxFavourites; ++i) {
        Favourite favourite;
        if (readFavourite(key.get(), std::to_wstring(i), favourite)) {
            favourites.push_back(std::move(favourite));
        }
    }
    return favourites;
}

[[nodiscard]] inline LSTATUS writeFavourite(HKEY parent, const std::wstring& name, const Favourite& favourite) {
    const std::wstring text = favourite.text.substr(0, kMaxFavouriteText);
    const auto mode = static_cast<DWORD>(favourite.mode);
    const std::size_t count = std::min(favourite.displays.size(), kMaxFavouriteDisplays);
    const wchar_t* key = name.c_str();
    LSTATUS error = RegSetKeyValueW(parent, key, L"Text", REG_SZ, text.c_str(),
                                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (error == ERROR_SUCCESS) {
        error = RegSetKeyValueW(parent, key, L"Mode", REG_DWORD, &mode, sizeof mode);
    }
    if (error == ERROR_SUCCESS) {
        error = RegSetKeyValueW(parent, key, L"Displays", REG_BINARY, favourite.displays.data(),
                                static_cast<DWORD>(count * sizeof(FenwynDisplayRecord)));
    }
    return error;
}

// Replaces all favourites; those beyond kMaxFavourites are dropped. To add one: load, append, store. A system error
// code; after a failure the list may be shorter.
[[nodiscard]] inline LSTATUS storeFavourites(const std::vector<Favourite>& favourites) {
    common::UniqueRegKey key;
    LSTATUS error = RegCreateKeyExW(HKEY_CURRENT_USER, kFavouritesKey, 0, nullptr, 0, KEY_READ | KEY_WRITE | DELETE,
                                    nullptr, key.put(), nullptr);
    if (error == ERROR_SUCCESS) {
        error = RegDeleteTreeW(key.get(), nullptr);
    }
    for (std::size_t i = 0; error == ERROR_SUCCESS && i < std::min(favourites.size(), kMaxFavourites); ++i) {
        error = writeFavourite(key.get(), std::to_wstring(i), favourites[i]);
    }
    return error;
}

}  // namespace sim
