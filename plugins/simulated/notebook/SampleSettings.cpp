#include "SampleSettings.h"

#include <algorithm>
#include <iterator>

#include "DisplaySource.h"
#include "FenwynRegistry.h"
#include "ZelHotkey.h"
#include "captions/Captions.h"

namespace sim {

using common::numberSetting;
using common::numbersSetting;
using common::Setting;
using common::textSetting;

namespace {

// Differences of the sample from the program's defaults.
struct ConfigValue {
    const wchar_t* name;
    DWORD value;
};
constexpr ConfigValue kConfig[] = {{L"EnableHover", 1}, {L"MouseEnterIdle", 500}};

void appendFunction(std::vector<Setting>& settings, const Function& function, const std::wstring& library,
                    LANGID language) {
    const std::wstring key = std::wstring(ZEL_REG_HOTKEY) + L"\\" + function.name;
    std::vector<DWORD> codes;
    for (std::size_t i = 0; i < function.keyCount(); ++i) {
        codes.push_back(function.keys[i].code);
    }
    settings.push_back(textSetting(key, kCaptionValue, captions::captionOf(function.name, language)));
    settings.push_back(numbersSetting(key, ZEL_VALUE_CODE, codes));
    settings.push_back(textSetting(key, ZEL_VALUE_FUNC_DLL, library));
}

LSTATUS readList(HKEY root, std::wstring& list) {
    DWORD bytes = 0;
    const auto read = [&](wchar_t* place) {
        return RegGetValueW(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, place,
                            &bytes);
    };
    if (const LSTATUS error = read(nullptr); error != ERROR_SUCCESS) {
        return error;
    }
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    const LSTATUS error = read(text.data());
    list = text.c_str();
    return error;
}

// Whether Fenwyn finds the name in the list. What no semicolon follows is no name.
bool isListed(const std::wstring& list, const Function& function) {
    std::size_t start = 0;
    for (std::size_t end = list.find(L';'); end != std::wstring::npos; end = list.find(L';', start)) {
        if (fenwyn::equalNames(std::wstring_view(list).substr(start, end - start), function.name)) {
            return true;
        }
        start = end + 1;
    }
    return false;
}

}  // namespace

std::vector<Setting> sampleSettings(const std::wstring& folder, bool all, LANGID language) {
    std::vector<Setting> settings{
        textSetting(FENWYN_REG_PRODUCT, FENWYN_VALUE_INSTALL_PATH, folder),
        textSetting(FENWYN_REG_PRODUCT, DISPLAY_SOURCE_VALUE, folder + L"\\plugins\\SimDisplays.dll")};
    for (const ConfigValue& row : kConfig) {
        settings.push_back(numberSetting(ZEL_REG_CONFIG, row.name, row.value));
        settings.back().keepExisting = true;
    }
    std::wstring list;
    for (const Function& function : kFunctions) {
        if (function.inSample || all) {
            list += std::wstring(function.name) + L";";
            appendFunction(settings, function, folder + L"\\plugins\\Sim" + function.name + L".dll", language);
        }
    }
    // Last, so that everything that the list names already exists.
    settings.push_back(textSetting(ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list));
    return settings;
}

LSTATUS registerSample(HKEY root, const std::wstring& folder, bool all, LANGID language) {
    return common::writeSettings(root, sampleSettings(folder, all, language));
}

LSTATUS offerFunction(HKEY root, const Function& function, const std::wstring& library, LANGID language) {
    std::wstring list;
    if (const LSTATUS error = readList(root, list); error != ERROR_SUCCESS) {
        return error;
    }
    std::vector<Setting> settings;
    appendFunction(settings, function, library, language);
    if (RegGetValueW(root, settings.front().key.c_str(), ZEL_VALUE_CODE, RRF_RT_ANY | RRF_NOEXPAND, nullptr, nullptr,
                     nullptr) == ERROR_SUCCESS) {
        std::erase_if(settings, [](const Setting& setting) { return setting.name != ZEL_VALUE_FUNC_DLL; });
    }
    if (!isListed(list, function)) {
        // After the last name that counts: an unfinished one behind it stays as unfinished as it was.
        const std::size_t end = list.rfind(L';');
        list.insert(end == std::wstring::npos ? 0 : end + 1, std::wstring(function.name) + L';');
        settings.push_back(textSetting(ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list));
    }
    return common::writeSettings(root, settings);
}

ListState listState(HKEY root, const std::wstring& folder) {
    if (RegGetValueW(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, RRF_RT_ANY | RRF_NOEXPAND, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
        return ListState::None;
    }
    for (const bool all : {false, true}) {
        for (const LANGID language : captions::languages()) {
            std::vector<Setting> settings = sampleSettings(folder, all, language);
            std::erase_if(settings, [](const Setting& setting) { return !setting.key.starts_with(ZEL_REG_HOTKEY); });
            if (common::settingsAreThere(root, settings)) {
                return all ? ListState::WholeSample : ListState::Sample;
            }
        }
    }
    return ListState::Other;
}

LSTATUS unregisterSample(HKEY root, const std::wstring& folder) {
    std::vector<Setting> written;
    for (const bool all : {false, true}) {
        for (const LANGID language : captions::languages()) {
            std::ranges::move(sampleSettings(folder, all, language), std::back_inserter(written));
        }
    }
    return common::removeSettings(root, written);
}

}  // namespace sim
