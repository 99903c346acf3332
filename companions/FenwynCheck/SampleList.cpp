#include "SampleList.h"

#include <algorithm>

#include "FenwynFunctions.h"
#include "FenwynRegistry.h"
#include "ZelHotkey.h"
#include "captions/Captions.h"

namespace machine {

namespace {

using common::Setting;
using common::textSetting;

// Scan codes of the keys: F1 to F12, and letters and the space bar for the functions beyond those.
const std::vector<SampleFunction> kSample = {
    {L"Mute", {0x3B}},          {L"Lock", {0x3C}},
    {L"PowerPlan", {0x3D}},     {L"Sleep", {0x3E}},
    {L"Output_2", {0x3F}},      {L"Brightness", {0x40, 0x41}},
    {L"Wireless", {0x42}},      {L"Touchpad", {0x43}},
    {L"CursorOverlay", {0x44}}, {L"NumericOverlay", {0x57}},
    {L"Hibernate", {0x58}},     {L"Zoom", {0x39}},
    {L"ODD", {0x12}},           {L"Output", {}},
};

// Where the sample differs from the program's own defaults: the mouse can call the cards.
struct ConfigValue {
    const wchar_t* name;
    DWORD value;
};
constexpr ConfigValue kConfig[] = {{L"EnableHover", 1}, {L"MouseEnterIdle", 500}};

void appendFunction(std::vector<Setting>& settings, const SampleFunction& function, const std::wstring& folder,
                    LANGID language) {
    const std::wstring key = ZEL_REG_HOTKEY L"\\" + std::wstring(function.name);
    settings.push_back(textSetting(key, L"Caption", captions::captionOf(function.name, language)));
    settings.push_back(common::numbersSetting(key, ZEL_VALUE_CODE, function.codes));
    settings.push_back(textSetting(key, ZEL_VALUE_FUNC_DLL, samplePlugin(folder, function.name)));
}

bool isListed(const SampleFunction& function, std::span<const std::wstring> names) {
    return !function.codes.empty() && std::ranges::any_of(names, [&](const std::wstring& name) {
        return fenwyn::equalNames(name, function.name);
    });
}

}  // namespace

std::span<const SampleFunction> sampleFunctions() {
    return kSample;
}

std::vector<std::wstring> listedNames(std::span<const std::wstring> names) {
    std::vector<std::wstring> listed;
    for (const SampleFunction& function : kSample) {
        if (isListed(function, names)) {
            listed.emplace_back(function.name);
        }
    }
    return listed;
}

std::vector<std::wstring> listableNames() {
    std::vector<std::wstring> names;
    for (const SampleFunction& function : kSample) {
        if (!function.codes.empty()) {
            names.emplace_back(function.name);
        }
    }
    return names;
}

std::wstring samplePlugin(const std::wstring& folder, const std::wstring& function) {
    return folder + L"\\plugins\\Win" + function + L".dll";
}

std::vector<Setting> sampleSettings(const std::wstring& folder, std::span<const std::wstring> names, LANGID language) {
    std::vector<Setting> settings{textSetting(FENWYN_REG_PRODUCT, FENWYN_VALUE_INSTALL_PATH, folder)};
    for (const ConfigValue& row : kConfig) {
        settings.push_back(common::numberSetting(FENWYN_REG_CONFIG, row.name, row.value));
        settings.back().keepExisting = true;
    }
    std::wstring list;
    for (const SampleFunction& function : kSample) {
        if (isListed(function, names)) {
            list += std::wstring(function.name) + L";";
            appendFunction(settings, function, folder, language);
        }
    }
    // Last, so that everything that the list names already exists.
    settings.push_back(textSetting(ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list));
    return settings;
}

std::vector<std::wstring> namesOf(const std::wstring& list) {
    std::vector<std::wstring> names;
    std::size_t start = 0;
    while (start < list.size()) {
        const std::size_t end = std::min(list.find(L';', start), list.size());
        if (end != start) {
            names.push_back(list.substr(start, end - start));
        }
        start = end + 1;
    }
    return names;
}

}  // namespace machine
