#include "SampleSettings.h"

#include <algorithm>
#include <set>

#include "DisplaySource.h"
#include "FenwynRegistry.h"
#include "Functions.h"
#include "ZelHotkey.h"
#include "common/Handle.h"

namespace sim {

namespace {

// Differences of the sample from the program's defaults.
struct ConfigValue {
    const wchar_t* name;
    DWORD value;
};
constexpr ConfigValue kConfig[] = {{L"EnableHover", 1}, {L"MouseEnterIdle", 500}};

std::vector<BYTE> bytesOf(const void* data, std::size_t size) {
    const auto* begin = static_cast<const BYTE*>(data);
    return {begin, begin + size};
}

Setting textSetting(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    return {key, name, REG_SZ, bytesOf(text.c_str(), (text.size() + 1) * sizeof(wchar_t))};
}

void appendFunction(std::vector<Setting>& settings, const Function& function, const std::wstring& folder,
                    Language language) {
    const std::wstring key = std::wstring(ZEL_REG_HOTKEY) + L"\\" + function.name;
    std::vector<BYTE> codes;
    for (std::size_t i = 0; i < function.keyCount(); ++i) {
        const std::vector<BYTE> code = bytesOf(&function.keys[i].code, sizeof(DWORD));
        codes.insert(codes.end(), code.begin(), code.end());
    }
    settings.push_back(textSetting(key, kCaptionValue, word(function.caption, language)));
    settings.push_back({key, ZEL_VALUE_CODE, REG_BINARY, std::move(codes)});
    settings.push_back(textSetting(key, ZEL_VALUE_FUNC_DLL, folder + L"\\plugins\\Sim" + function.name + L".dll"));
}

LSTATUS write(HKEY root, const Setting& setting) {
    const wchar_t* key = setting.key.c_str();
    const wchar_t* name = setting.name.c_str();
    if (setting.keepExisting && RegGetValueW(root, key, name, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    return RegSetKeyValueW(root, key, name, setting.type, setting.data.data(), static_cast<DWORD>(setting.data.size()));
}

bool stillAsWritten(HKEY root, const Setting& setting) {
    common::UniqueRegKey key;
    if (RegOpenKeyExW(root, setting.key.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
        return false;
    }
    std::vector<BYTE> stored(setting.data.size());
    DWORD type = 0;
    auto size = static_cast<DWORD>(stored.size());
    const LSTATUS error = RegQueryValueExW(key.get(), setting.name.c_str(), nullptr, &type, stored.data(), &size);
    return error == ERROR_SUCCESS && type == setting.type && size == stored.size() && stored == setting.data;
}

// The settings that the sample may have been written as.
struct Variant {
    bool all;
    Language language;
};
constexpr Variant kVariants[] = {
    {false, Language::English}, {false, Language::German}, {true, Language::English}, {true, Language::German}};

bool isOfTheList(const Setting& setting) {
    return setting.key.starts_with(ZEL_REG_HOTKEY);
}

// ERROR_SUCCESS also if there is no such key, or if it is not empty and therefore kept.
LSTATUS removeIfEmpty(HKEY root, const std::wstring& path) {
    common::UniqueRegKey key;
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

std::vector<Setting> sampleSettings(const std::wstring& folder, bool all, Language language) {
    std::vector<Setting> settings{
        textSetting(FENWYN_REG_PRODUCT, FENWYN_VALUE_INSTALL_PATH, folder),
        textSetting(FENWYN_REG_PRODUCT, DISPLAY_SOURCE_VALUE, folder + L"\\plugins\\SimDisplays.dll")};
    for (const ConfigValue& row : kConfig) {
        settings.push_back({ZEL_REG_CONFIG, row.name, REG_DWORD, bytesOf(&row.value, sizeof row.value), true});
    }
    std::wstring list;
    for (const Function& function : kFunctions) {
        if (function.inSample || all) {
            list += std::wstring(function.name) + L";";
            appendFunction(settings, function, folder, language);
        }
    }
    // Last, so that everything that the list names already exists.
    settings.push_back(textSetting(ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list));
    return settings;
}

LSTATUS registerSample(HKEY root, const std::wstring& folder, bool all, Language language) {
    for (const Setting& setting : sampleSettings(folder, all, language)) {
        if (const LSTATUS error = write(root, setting); error != ERROR_SUCCESS) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

ListState listState(HKEY root, const std::wstring& folder) {
    if (RegGetValueW(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, RRF_RT_ANY, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
        return ListState::None;
    }
    for (const auto& [all, language] : kVariants) {
        const std::vector<Setting> settings = sampleSettings(folder, all, language);
        if (std::ranges::all_of(settings, [root](const Setting& setting) {
                return !isOfTheList(setting) || stillAsWritten(root, setting);
            })) {
            return all ? ListState::WholeSample : ListState::Sample;
        }
    }
    return ListState::Other;
}

LSTATUS unregisterSample(HKEY root, const std::wstring& folder) {
    LSTATUS firstError = ERROR_SUCCESS;
    const auto note = [&](LSTATUS error) {
        firstError = firstError == ERROR_SUCCESS && error != ERROR_SUCCESS ? error : firstError;
    };
    std::set<std::wstring, std::greater<>> keys{FENWYN_REG_MAKER, FENWYN_REG_PRODUCT, ZEL_REG_CONFIG,
                                                ZEL_REG_HOTKEY};  // deepest first
    for (const auto& [all, language] : kVariants) {
        for (const Setting& setting : sampleSettings(folder, all, language)) {
            keys.insert(setting.key);
            if (stillAsWritten(root, setting)) {
                note(RegDeleteKeyValueW(root, setting.key.c_str(), setting.name.c_str()));
            }
        }
    }
    for (const std::wstring& key : keys) {
        note(removeIfEmpty(root, key));
    }
    return firstError;
}

}  // namespace sim
