#include "KeyTable.h"

#include <algorithm>
#include <optional>

#include "Data/RegistryPaths.h"
#include "Values.h"
#include "companions/hotkey/HotkeySettings.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"

namespace settings {
namespace {

constexpr DWORD kFirstOwnFunction = 40000;  // the numbers of the button utility's own functions are small

Place ofList(const CModel& model, const wchar_t* name) {
    return {model.listRoot(), regpath::kHotkeyKey, name};
}

Place ofFunction(const CModel& model, const std::wstring& function, const wchar_t* name) {
    return {model.listRoot(), std::wstring(regpath::kHotkeyKey) + L"\\" + function, name};
}

Place ofButton(const std::wstring& button, const wchar_t* name) {
    return {Root::Machine, std::wstring(regpath::kButtonsKey) + L"\\" + button, name};
}

Place ofUserSetting(DWORD function, const wchar_t* name) {
    return {Root::Machine,
            std::wstring(regpath::kUserSettingKey) + L"\\" + std::to_wstring(static_cast<int>(function)), name};
}

std::optional<DWORD> numberAt(const CModel& model, const Place& place) {
    const Content content = model.content(place);
    return content ? numberOf(*content) : std::nullopt;
}

std::optional<std::wstring> textAt(const CModel& model, const Place& place) {
    const Content content = model.content(place);
    return content ? std::optional(textOf(*content)) : std::nullopt;
}

// A button that may be customised.
struct Button {
    std::wstring name;
    DWORD function;
    DWORD code;
};

std::vector<Button> buttons(const CModel& model) {
    std::vector<Button> result;
    for (const std::wstring& name : model.subkeys(Root::Machine, regpath::kButtonsKey)) {
        const auto ours = numberAt(model, ofButton(name, regpath::kIsQrdControl));
        const auto function = numberAt(model, ofButton(name, regpath::kMakeFunction));
        const auto value = numberAt(model, ofButton(name, regpath::kMakeValue));
        if (ours.value_or(0) != 0 && function && value) {
            result.push_back({name, *function, *value & kHighestCustomCode});
        }
    }
    return result;
}

DWORD freeFunction(const std::vector<Button>& taken) {
    DWORD function = kFirstOwnFunction;
    while (std::ranges::any_of(taken, [function](const Button& button) { return button.function == function; })) {
        ++function;
    }
    return function;
}

}  // namespace

std::vector<FunctionKeys> functionKeys(const CModel& model) {
    std::vector<FunctionKeys> functions;
    const std::wstring list = textAt(model, ofList(model, regpath::kFuncList)).value_or(L"");
    std::size_t start = 0;
    for (std::size_t end = list.find(L';'); end != std::wstring::npos; end = list.find(L';', start)) {
        const std::wstring name = list.substr(start, end - start);
        start = end + 1;
        if (std::ranges::any_of(functions, [&name](const FunctionKeys& known) { return known.name == name; })) {
            continue;
        }
        FunctionKeys function{name, textAt(model, ofFunction(model, name, regpath::kCaption)).value_or(L""), {}};
        if (function.caption.empty()) {
            function.caption = name;
        }
        if (const Content codes = model.content(ofFunction(model, name, regpath::kCode))) {
            function.codes = numbersOf(*codes);
        }
        functions.push_back(std::move(function));
    }
    return functions;
}

void setFunctionCodes(CModel& model, const std::wstring& name, const std::vector<DWORD>& codes) {
    model.set(ofFunction(model, name, regpath::kCode), codes.size() == 1 ? numberData(codes[0]) : numbersData(codes));
}

DWORD keyNumber(const CModel& model, const wchar_t* name, DWORD otherwise) {
    return numberAt(model, ofList(model, name)).value_or(otherwise);
}

void setKeyNumber(CModel& model, const wchar_t* name, DWORD number) {
    model.set(ofList(model, name), numberData(number));
}

std::vector<CustomKey> customKeys(const CModel& model) {
    std::vector<CustomKey> keys;
    for (const Button& button : buttons(model)) {
        const auto program = textAt(model, ofUserSetting(button.function, regpath::kOption1));
        const auto parameters = textAt(model, ofUserSetting(button.function, regpath::kOption2));
        if (program && parameters) {
            keys.push_back({button.name, button.function, button.code, *program, *parameters});
        }
    }
    return keys;
}

void setCustomKey(CModel& model, DWORD code, const std::wstring& program, const std::wstring& parameters) {
    const std::vector<Button> there = buttons(model);
    const auto found = std::ranges::find_if(there, [code](const Button& button) { return button.code == code; });
    DWORD function = 0;
    if (found != there.end()) {
        function = found->function;
    } else {
        function = freeFunction(there);
        const std::wstring name = kOwnButton + std::to_wstring(code);
        model.set(ofButton(name, regpath::kIsQrdControl), numberData(1));
        model.set(ofButton(name, regpath::kMakeFunction), numberData(function));
        model.set(ofButton(name, regpath::kMakeValue), numberData(code));
    }
    model.set(ofUserSetting(function, regpath::kOption1), textData(program));
    model.set(ofUserSetting(function, regpath::kOption2), textData(parameters));
}

void removeCustomKey(CModel& model, const CustomKey& key) {
    model.set(ofUserSetting(key.function, regpath::kOption1), std::nullopt);
    model.set(ofUserSetting(key.function, regpath::kOption2), std::nullopt);
    if (key.button.starts_with(kOwnButton)) {
        for (const wchar_t* name : {regpath::kIsQrdControl, regpath::kMakeFunction, regpath::kMakeValue}) {
            model.set(ofButton(key.button, name), std::nullopt);
        }
    }
}

void removeOtherCustomKeys(CModel& model, const Changes& kept) {
    for (const CustomKey& key : customKeys(model)) {
        if (!kept.contains(ofButton(key.button, regpath::kMakeValue))) {
            removeCustomKey(model, key);
        }
    }
}

bool areKeysProgrammable(const CModel& model) {
    return numberAt(model, {Root::Machine, regpath::kConfigKey, kProgrammable}).value_or(0) != 0;
}

std::vector<CustomKey> customKeysInForce(const CModel& model) {
    return areKeysProgrammable(model) ? customKeys(model) : std::vector<CustomKey>();
}

void setKeysProgrammable(CModel& model, bool programmable) {
    model.set({Root::Machine, regpath::kConfigKey, kProgrammable}, numberData(programmable ? 1 : 0));
}

hotkey::TrackerSettings trackerSettings(const CModel& model) {
    hotkey::TrackerSettings result;
    result.modifierKey = zelModifierKey(keyNumber(model, ZEL_VALUE_MODIFIER_KEY, 0));
    result.sticky = keyNumber(model, ZEL_VALUE_STICKY_MODIFIER, 0) != 0;
    result.releaseDelay = keyNumber(model, ZEL_VALUE_RELEASE_DELAY, result.releaseDelay);
    for (const FunctionKeys& function : functionKeys(model)) {
        for (const DWORD code : function.codes) {
            hotkey::addCode(code, result);
        }
    }
    return result;
}

const FunctionKeys* takenBy(const std::vector<FunctionKeys>& functions, std::size_t slot, DWORD virtualKey,
                            bool alone) {
    const DWORD extra = alone ? ZEL_CODE_ALONE : 0;
    const DWORD codes[] = {keyboard::codeOfSlot(slot) | extra,
                           keyboard::codeOfSlot(keyboard::slotOfVirtualKey(virtualKey)) | extra};
    for (const DWORD code : codes) {
        const auto found = std::ranges::find_if(functions, [code](const FunctionKeys& function) {
            return std::ranges::find(function.codes, code) != function.codes.end();
        });
        if (found != functions.end() && code != extra) {
            return &*found;
        }
    }
    return nullptr;
}

}  // namespace settings
