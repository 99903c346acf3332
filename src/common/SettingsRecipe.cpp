#include "common/SettingsRecipe.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "common/Handle.h"

namespace common {

namespace {

std::vector<BYTE> bytesOf(const void* data, std::size_t size) {
    const auto* begin = static_cast<const BYTE*>(data);
    return {begin, begin + size};
}

LSTATUS write(HKEY root, const Setting& setting) {
    const wchar_t* key = setting.key.c_str();
    const wchar_t* name = setting.name.c_str();
    if (setting.keepExisting &&
        RegGetValueW(root, key, name, RRF_RT_ANY | RRF_NOEXPAND, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    return RegSetKeyValueW(root, key, name, setting.type, setting.data.data(), static_cast<DWORD>(setting.data.size()));
}

bool isThere(HKEY root, const Setting& setting) {
    UniqueRegKey key;
    if (RegOpenKeyExW(root, setting.key.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        return false;
    }
    std::vector<BYTE> stored(setting.data.size());
    DWORD type = 0;
    auto size = static_cast<DWORD>(stored.size());
    const LSTATUS error = RegQueryValueExW(key.get(), setting.name.c_str(), nullptr, &type, stored.data(), &size);
    return error == ERROR_SUCCESS && type == setting.type && size == stored.size() && stored == setting.data;
}

// ERROR_SUCCESS also when there is no such key, or when it is not empty and stays.
LSTATUS removeIfEmpty(HKEY root, const std::wstring& path) {
    UniqueRegKey key;
    DWORD subkeys = 0;
    DWORD values = 0;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS ||
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                         nullptr, nullptr) != ERROR_SUCCESS ||
        subkeys + values != 0) {
        return ERROR_SUCCESS;
    }
    key.reset();
    return RegDeleteKeyW(root, path.c_str());
}

}  // namespace

Setting textSetting(std::wstring key, std::wstring name, const std::wstring& text) {
    return {std::move(key), std::move(name), REG_SZ, bytesOf(text.c_str(), (text.size() + 1) * sizeof(wchar_t))};
}

Setting numberSetting(std::wstring key, std::wstring name, DWORD number) {
    return {std::move(key), std::move(name), REG_DWORD, bytesOf(&number, sizeof number)};
}

Setting longNumberSetting(std::wstring key, std::wstring name, ULONGLONG number) {
    return {std::move(key), std::move(name), REG_QWORD, bytesOf(&number, sizeof number)};
}

Setting numbersSetting(std::wstring key, std::wstring name, std::span<const DWORD> numbers) {
    return {std::move(key), std::move(name), REG_BINARY, bytesOf(numbers.data(), numbers.size_bytes())};
}

LSTATUS writeSettings(HKEY root, std::span<const Setting> settings) {
    for (const Setting& setting : settings) {
        if (const LSTATUS error = write(root, setting); error != ERROR_SUCCESS) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

bool settingsAreThere(HKEY root, std::span<const Setting> settings) {
    return std::ranges::all_of(
        settings, [root](const Setting& setting) { return setting.keepExisting || isThere(root, setting); });
}

LSTATUS removeSettings(HKEY root, std::span<const Setting> settings) {
    LSTATUS firstError = ERROR_SUCCESS;
    const auto note = [&](LSTATUS error) { firstError = firstError == ERROR_SUCCESS ? error : firstError; };
    std::set<std::wstring, std::greater<>> keys;  // deepest first
    for (const Setting& setting : settings) {
        for (std::size_t end = setting.key.find(L'\\'); end != std::wstring::npos;) {
            end = setting.key.find(L'\\', end + 1);
            keys.insert(setting.key.substr(0, end));
        }
        if (isThere(root, setting)) {
            note(RegDeleteKeyValueW(root, setting.key.c_str(), setting.name.c_str()));
        }
    }
    for (const std::wstring& key : keys) {
        note(removeIfEmpty(root, key));
    }
    return firstError;
}

}  // namespace common
