#include "OutputFavourites.h"

#include <algorithm>

#include "RegistryChanges.h"
#include "common/Handle.h"

namespace favourites {
namespace {

constexpr wchar_t kKey[] = OUTPUT_SETUP_REG_FAVOURITES;
constexpr wchar_t kOldKey[] = OUTPUT_SETUP_REG_OLD_FAVOURITES;
constexpr wchar_t kMoving[] = L"Moving";  // 1: the old list is being copied, or is not deleted yet
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

std::vector<std::wstring> namesOfKeys(HKEY parent) {
    std::vector<std::wstring> names;
    wchar_t name[256];
    DWORD length = ARRAYSIZE(name);
    while (RegEnumKeyExW(parent, static_cast<DWORD>(names.size()), name, &length, nullptr, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS) {
        names.emplace_back(name, length);
        length = ARRAYSIZE(name);
    }
    return names;
}

// Whether the process ended while it moved the old list there: it says so, or nothing has been written yet.
bool isHalfMoved(HKEY key) {
    DWORD moving = 0;
    DWORD bytes = sizeof moving;
    if (RegGetValueW(key, nullptr, kMoving, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &moving, &bytes) ==
        ERROR_SUCCESS) {
        return moving != 0;
    }
    return namesOfKeys(key).empty();
}

LSTATUS setMoving(DWORD moving) {
    return registryChanges()->set(HKEY_CURRENT_USER, kKey, kMoving, REG_DWORD, &moving, sizeof moving);
}

// The old list is deleted only when all of it is in the new place; if a new list exists, only that counts.
void moveOldList() {
    const common::UniqueRegKey old = openKey(kOldKey, KEY_READ);
    const common::UniqueRegKey present = openKey(kKey, KEY_READ);
    if (!old || (present && !isHalfMoved(present.get()))) {
        return;
    }
    IRegistryChanges& changes = *registryChanges();
    if (setMoving(1) != ERROR_SUCCESS) {
        return;
    }
    if (changes.copy(old.get(), HKEY_CURRENT_USER, kKey) != ERROR_SUCCESS) {
        changes.remove(HKEY_CURRENT_USER, kKey);
        return;
    }
    if (changes.remove(HKEY_CURRENT_USER, kOldKey) == ERROR_SUCCESS) {
        setMoving(0);
    }
}

// Texts as REG_MULTI_SZ keeps them: each ended by a zero, the list by one more.
std::vector<wchar_t> joinedTexts(const std::vector<Position>& positions, std::size_t count) {
    std::vector<wchar_t> joined;
    for (std::size_t i = 0; i < count; ++i) {
        joined.insert(joined.end(), positions[i].path.begin(), positions[i].path.end());
        joined.push_back(L'\0');
    }
    joined.push_back(L'\0');
    return joined;
}

// Empty unless there is a path and a corner for each of the displays.
std::vector<Position> readPositions(HKEY parent, const wchar_t* key, std::size_t count) {
    DWORD bytes = 0;
    if (RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_MONITORS, RRF_RT_REG_MULTI_SZ | RRF_NOEXPAND, nullptr, nullptr,
                     &bytes) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> paths(bytes / sizeof(wchar_t) + 2);
    bytes = static_cast<DWORD>(paths.size() * sizeof(wchar_t));
    std::vector<POINT> corners(count + 1);
    auto cornerBytes = static_cast<DWORD>(corners.size() * sizeof(POINT));
    if (RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_MONITORS, RRF_RT_REG_MULTI_SZ | RRF_NOEXPAND, nullptr,
                     paths.data(), &bytes) != ERROR_SUCCESS ||
        RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_CORNERS, RRF_RT_REG_BINARY | RRF_NOEXPAND, nullptr, corners.data(),
                     &cornerBytes) != ERROR_SUCCESS ||
        cornerBytes != count * sizeof(POINT)) {
        return {};
    }
    std::vector<Position> positions;
    for (const wchar_t* path = paths.data(); *path != L'\0' && positions.size() < count;
         path += positions.back().path.size() + 1) {
        positions.push_back({path, corners[positions.size()]});
    }
    return positions.size() == count ? positions : std::vector<Position>();
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
    if (RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_TEXT, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, text, &bytes) !=
            ERROR_SUCCESS ||
        RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_MODE, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &mode,
                     &modeBytes) != ERROR_SUCCESS ||
        RegGetValueW(parent, key, OUTPUT_SETUP_VALUE_DISPLAYS, RRF_RT_REG_BINARY | RRF_NOEXPAND, nullptr,
                     records.data(), &recordBytes) != ERROR_SUCCESS ||
        mode > FENWYN_MODE_SEVERAL) {
        return false;
    }
    records.resize(recordBytes / sizeof(FenwynDisplayRecord));
    for (FenwynDisplayRecord& record : records) {
        record.szConnector[FENWYN_CONNECTOR_CHARS - 1] = L'\0';
    }
    favourite = {text, static_cast<LONG>(mode), std::move(records), {}};
    favourite.positions = readPositions(parent, key, favourite.displays.size());
    return true;
}

LSTATUS set(HKEY parent, const std::wstring& name, const wchar_t* value, DWORD type, const void* data,
            std::size_t bytes) {
    return registryChanges()->set(parent, name.c_str(), value, type, data, static_cast<DWORD>(bytes));
}

LSTATUS writePositions(HKEY parent, const std::wstring& name, const std::vector<Position>& positions,
                       std::size_t count) {
    const std::vector<wchar_t> paths = joinedTexts(positions, count);
    std::vector<POINT> corners(count);
    std::transform(positions.begin(), positions.begin() + static_cast<std::ptrdiff_t>(count), corners.begin(),
                   [](const Position& position) { return position.corner; });
    const LSTATUS error =
        set(parent, name, OUTPUT_SETUP_VALUE_MONITORS, REG_MULTI_SZ, paths.data(), paths.size() * sizeof(wchar_t));
    return error != ERROR_SUCCESS
               ? error
               : set(parent, name, OUTPUT_SETUP_VALUE_CORNERS, REG_BINARY, corners.data(), count * sizeof(POINT));
}

// Into a key without values. The text comes last: without it there is no favourite.
LSTATUS writeOne(HKEY parent, const std::wstring& name, const Favourite& favourite) {
    const std::wstring text = favourite.text.substr(0, kMostTextChars);
    const auto mode = static_cast<DWORD>(favourite.mode);
    const std::size_t count = std::min(favourite.displays.size(), kMostDisplays);
    LSTATUS error = set(parent, name, OUTPUT_SETUP_VALUE_MODE, REG_DWORD, &mode, sizeof mode);
    if (error == ERROR_SUCCESS) {
        error = set(parent, name, OUTPUT_SETUP_VALUE_DISPLAYS, REG_BINARY, favourite.displays.data(),
                    count * sizeof(FenwynDisplayRecord));
    }
    if (error == ERROR_SUCCESS && favourite.positions.size() == favourite.displays.size()) {
        error = writePositions(parent, name, favourite.positions, count);
    }
    return error != ERROR_SUCCESS
               ? error
               : set(parent, name, OUTPUT_SETUP_VALUE_TEXT, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

// The key in which a favourite is complete while the one with its number is being written.
std::wstring standIn(const std::wstring& name) {
    return name + L".new";
}

// The favourite of a number. Whole at every moment, even if a process was ended while it stored another in its place.
bool readEither(HKEY parent, const std::wstring& name, Favourite& favourite) {
    return readOne(parent, name, favourite) || readOne(parent, standIn(name), favourite);
}

LSTATUS replaceKey(HKEY parent, const std::wstring& name, const Favourite& favourite) {
    const LSTATUS error = registryChanges()->remove(parent, name.c_str());
    return error != ERROR_SUCCESS ? error : writeOne(parent, name, favourite);
}

// What an interrupted store() left is finished first; then the stand-in is free.
LSTATUS replaceOne(HKEY parent, const std::wstring& name, const Favourite& favourite) {
    Favourite left;
    LSTATUS error = ERROR_SUCCESS;
    if (!readOne(parent, name, left) && readOne(parent, standIn(name), left)) {
        error = replaceKey(parent, name, left);
    }
    for (const std::wstring& key : {standIn(name), name}) {
        error = error != ERROR_SUCCESS ? error : replaceKey(parent, key, favourite);
    }
    return error != ERROR_SUCCESS ? error : registryChanges()->remove(parent, standIn(name).c_str());
}

LSTATUS removeAllBut(HKEY parent, const std::vector<std::wstring>& kept) {
    for (const std::wstring& name : namesOfKeys(parent)) {
        const bool surplus = std::find(kept.begin(), kept.end(), name) == kept.end();
        if (const LSTATUS error = surplus ? registryChanges()->remove(parent, name.c_str()) : ERROR_SUCCESS;
            error != ERROR_SUCCESS) {
            return error;
        }
    }
    return ERROR_SUCCESS;
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
        if (readEither(key.get(), std::to_wstring(i), favourite)) {
            list.push_back(std::move(favourite));
        }
    }
    return list;
}

IRegistryChanges*& registryChanges() noexcept {
    static IRegistryChanges registry;
    static IRegistryChanges* changes = &registry;
    return changes;
}

LSTATUS store(const std::vector<Favourite>& favourites) {
    common::UniqueRegKey key;
    LSTATUS error = createKey(key);
    std::vector<std::wstring> names;
    for (std::size_t i = 0; error == ERROR_SUCCESS && i < std::min(favourites.size(), kMost); ++i) {
        names.push_back(std::to_wstring(i));
        error = replaceOne(key.get(), names.back(), favourites[i]);
    }
    return error != ERROR_SUCCESS ? error : removeAllBut(key.get(), names);
}

}  // namespace favourites
