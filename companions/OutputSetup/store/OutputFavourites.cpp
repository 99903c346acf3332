#include "OutputFavourites.h"

#include <algorithm>

#include "common/Handle.h"

namespace favourites {
namespace {

constexpr wchar_t kKey[] = OUTPUT_SETUP_REG_FAVOURITES;
constexpr wchar_t kOldKey[] = OUTPUT_SETUP_REG_OLD_FAVOURITES;
constexpr REGSAM kChange = KEY_READ | KEY_WRITE | DELETE;

common::UniqueRegKey openKey(const wchar_t* path, REGSAM access) {
    common::UniqueRegKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key.put()) != ERROR_SUCCESS) {
        return {};
    }
    return key;
}

LSTATUS createKey(common::UniqueRegKey& key) {
    return RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, kChange, nullptr, key.put(), nullptr);
}

// The old list is deleted only when all of it is in the new place; if a new list exists, only that counts.
void moveOldList() {
    const common::UniqueRegKey old = openKey(kOldKey, KEY_READ);
    if (!old || openKey(kKey, KEY_READ)) {
        return;
    }
    common::UniqueRegKey key;
    if (createKey(key) != ERROR_SUCCESS) {
        return;
    }
    if (RegCopyTreeW(old.get(), nullptr, key.get()) == ERROR_SUCCESS) {
        RegDeleteTreeW(HKEY_CURRENT_USER, kOldKey);
    } else {
        RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
    }
}

// False for a missing or invalid favourite; `favourite` is unchanged then.
bool readOne(HKEY parent, const std::wstring& name, Favourite& favourite) {
    wchar_t text[kMostTextChars + 1];
    DWORD bytes = sizeof text;
    DWORD mode = 0;
    DWORD modeBytes = sizeof mode;
    std::vector<FenwynDisplayRecord> records(kMostDisplays);
    auto recordBytes = static_cast<DWORD>(records.size() * sizeof(FenwynDisplayRecord));
    const wchar_t* key = name.c_str();
    if (RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_TEXT, RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS ||
        RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_MODE, RRF_RT_REG_DWORD, nullptr, &mode, &modeBytes) !=
            ERROR_SUCCESS ||
        RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_DISPLAYS, RRF_RT_REG_BINARY, nullptr, records.data(),
                     &recordBytes) != ERROR_SUCCESS ||
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

LSTATUS writeOne(HKEY parent, const std::wstring& name, const Favourite& favourite) {
    const std::wstring text = favourite.text.substr(0, kMostTextChars);
    const auto mode = static_cast<DWORD>(favourite.mode);
    const std::size_t count = std::min(favourite.displays.size(), kMostDisplays);
    const wchar_t* key = name.c_str();
    LSTATUS error = RegSetKeyValueW(parent, key, OUTPUT_SETUP_VALUE_TEXT, REG_SZ, text.c_str(),
                                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (error == ERROR_SUCCESS) {
        error = RegSetKeyValueW(parent, key, OUTPUT_SETUP_VALUE_MODE, REG_DWORD, &mode, sizeof mode);
    }
    if (error == ERROR_SUCCESS) {
        error = RegSetKeyValueW(parent, key, OUTPUT_SETUP_VALUE_DISPLAYS, REG_BINARY, favourite.displays.data(),
                                static_cast<DWORD>(count * sizeof(FenwynDisplayRecord)));
    }
    return error;
}

}  // namespace

FenwynDisplayRecord displayRecord(const std::wstring& connector, ULONG index, ULONG width, ULONG height) {
    FenwynDisplayRecord record{};
    connector.copy(record.szConnector, FENWYN_CONNECTOR_CHARS - 1);
    record.uDisplayIndex = index;
    record.uWidth = width;
    record.uHeight = height;
    return record;
}

bool exist() {
    moveOldList();
    return static_cast<bool>(openKey(kKey, KEY_READ));
}

std::vector<Favourite> load() {
    moveOldList();
    std::vector<Favourite> list;
    const common::UniqueRegKey key = openKey(kKey, KEY_READ);
    for (std::size_t i = 0; key && i < kMost; ++i) {
        Favourite favourite;
        if (readOne(key.get(), std::to_wstring(i), favourite)) {
            list.push_back(std::move(favourite));
        }
    }
    return list;
}

LSTATUS store(const std::vector<Favourite>& favourites) {
    common::UniqueRegKey key;
    LSTATUS error = createKey(key);
    if (error == ERROR_SUCCESS) {
        error = RegDeleteTreeW(key.get(), nullptr);
    }
    for (std::size_t i = 0; error == ERROR_SUCCESS && i < std::min(favourites.size(), kMost); ++i) {
        error = writeOne(key.get(), std::to_wstring(i), favourites[i]);
    }
    return error;
}

}  // namespace favourites
