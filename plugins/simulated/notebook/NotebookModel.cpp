#include "NotebookModel.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <vector>

#include "FunctionListRoot.h"
#include "Functions.h"
#include "Machine.h"
#include "SampleSettings.h"
#include "State.h"
#include "Words.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"
#include "captions/Captions.h"
#include "common/UiLanguage.h"

namespace sim {

namespace {

// More keys for one function have no room in the window.
constexpr std::size_t kMostCodes = 64;

// 0 when there is none.
DWORD numberOf(HKEY root, const wchar_t* key, const wchar_t* name) {
    DWORD number = 0;
    DWORD bytes = sizeof number;
    RegGetValueW(root, key, name, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &number, &bytes);
    return number;
}

// False when there is none.
bool textOf(const std::wstring& key, const wchar_t* name, std::wstring& text) {
    DWORD bytes = 0;
    const auto read = [&](wchar_t* place) {
        return RegGetValueW(fenwyn::functionListRoot(), key.c_str(), name, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, place,
                            &bytes);
    };
    if (read(nullptr) != ERROR_SUCCESS) {
        return false;
    }
    std::wstring value(bytes / sizeof(wchar_t), L'\0');
    if (read(value.data()) != ERROR_SUCCESS) {
        return false;
    }
    text = value.c_str();
    return true;
}

// Whether Fenwyn shows a card of the function.
class CFunctionList {
 public:
    CFunctionList() : m_bExists(textOf(ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, m_strNames)) { m_strNames += L';'; }

    [[nodiscard]] bool has(const Function& function) const {
        return m_bExists ? (L';' + m_strNames).find(std::wstring(L";") + function.name + L';') != std::wstring::npos
                         : function.inSample;
    }

 private:
    std::wstring m_strNames;
    bool m_bExists;
};

std::wstring captionOf(const Function& function) {
    std::wstring caption = captions::captionOf(function.name, common::wantedLanguage());
    textOf(std::wstring(ZEL_REG_HOTKEY) + L"\\" + function.name, kCaptionValue, caption);
    return caption;
}

struct NamedKey {
    DWORD key;
    const wchar_t* name;
};

// Modifiers whose names the system shortens to those of other keys, or does not know.
constexpr NamedKey kNamedKeys[] = {{VK_RCONTROL, L"right Ctrl"},
                                   {VK_RMENU, L"right Alt"},
                                   {VK_RWIN, L"right Windows key"},
                                   {VK_CAPITAL, L"Caps Lock"},
                                   {VK_APPS, L"menu key"}};

// As the keyboard's layout knows it; empty if it does not. `scan` is a set-1 code, 0xE0 before it for an extended key.
std::wstring layoutName(DWORD scan) {
    if (const DWORD prefix = scan >> 8U; prefix != 0 && prefix != ZEL_CODE_EXTENDED >> 8U) {
        return {};
    }
    const DWORD place = (scan & 0xFFU) << 16U | ((scan & 0xFF00U) != 0 ? 1U << 24U : 0U);
    wchar_t name[64] = L"";
    const int length = GetKeyNameTextW(static_cast<LONG>(place), name, static_cast<int>(std::size(name)));
    return scan != 0 && length > 0 ? name : L"";
}

// Empty if it has none.
std::wstring virtualKeyName(DWORD key) {
    for (const NamedKey& row : kNamedKeys) {
        if (row.key == key) {
            return word(row.name);
        }
    }
    if (key >= VK_F1 && key <= VK_F24) {
        return L"F" + std::to_wstring(key - VK_F1 + 1);
    }
    return layoutName(MapVirtualKeyW(key, MAPVK_VK_TO_VSC_EX));
}

std::wstring modifierName() {
    const DWORD key = zelModifierKey(numberOf(fenwyn::functionListRoot(), ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY));
    const std::wstring name = virtualKeyName(key);
    return name.empty() ? word(L"the modifier") : name;
}

// Of a key that the table of functions has. Empty if it has none.
std::wstring notebookKeyName(DWORD code) {
    for (const Function& function : kFunctions) {
        for (std::size_t i = 0; i < function.keyCount(); ++i) {
            if (function.keys[i].code == code) {
                return word(function.keys[i].name);
            }
        }
    }
    return {};
}

std::wstring hexText(DWORD number) {
    wchar_t text[16] = L"";
    swprintf(text, std::size(text), L"0x%lX", number);
    return text;
}

std::wstring codeName(DWORD code) {
    if (code == ZEL_CODE_MODIFIER) {
        return modifierName();
    }
    const DWORD key = code & ~DWORD{ZEL_CODE_ALONE};
    std::wstring name = notebookKeyName(key);
    if (name.empty()) {
        const bool isVirtualKey = (key & 0xFF00U) == ZEL_CODE_VIRTUAL_KEY;
        name = isVirtualKey ? virtualKeyName(key & 0xFFU) : layoutName(key);
    }
    return name.empty() ? word(L"key %1", {hexText(code)}) : name;
}

// As the function list has them; those of the sample where it has none.
std::vector<DWORD> codesOf(const Function& function) {
    const std::wstring key = std::wstring(ZEL_REG_HOTKEY) + L"\\" + function.name;
    std::array<DWORD, kMostCodes> codes{};
    DWORD bytes = sizeof codes;
    // Of any type, as the hotkey library reads it.
    if (RegGetValueW(fenwyn::functionListRoot(), key.c_str(), ZEL_VALUE_CODE, RRF_RT_ANY | RRF_NOEXPAND, nullptr,
                     codes.data(), &bytes) == ERROR_SUCCESS) {
        return {codes.begin(), codes.begin() + bytes / sizeof(DWORD)};
    }
    std::vector<DWORD> sample;
    for (std::size_t i = 0; i < function.keyCount(); ++i) {
        sample.push_back(function.keys[i].code);
    }
    return sample;
}

std::wstring keysOf(const Function& function) {
    std::wstring keys;
    for (const DWORD code : codesOf(function)) {
        keys += (keys.empty() ? L"" : L" / ") + codeName(code);
    }
    return keys;
}

std::wstring hintText(bool latched) {
    if (latched) {
        return word(L"%1 stays down: press a key", {modifierName()});
    }
    const bool sticky = numberOf(fenwyn::functionListRoot(), ZEL_REG_HOTKEY, ZEL_VALUE_STICKY_MODIFIER) != 0;
    return word(sticky ? L"Tap %1, then press a key" : L"Hold %1 and press a key", {modifierName()});
}

std::wstring lastChoiceText() {
    const Function* const function = findFunction(readText({}, kLastFunction, {}));
    if (function == nullptr) {
        return word(L"Nothing chosen yet");
    }
    const std::wstring caption = captionOf(*function);
    return readNumber({}, kLastResult, 0) == 0 ? word(L"Last choice: %1, %2", {caption, stateText(*function)})
                                               : word(L"%1 refused the choice", {caption});
}

const NotebookRow* rowOf(const NotebookModel& model, const std::wstring& function) {
    const auto found = std::find_if(model.rows.begin(), model.rows.end(),
                                    [&](const NotebookRow& row) { return row.function == function; });
    return found == model.rows.end() ? nullptr : &*found;
}

void markChanges(NotebookModel& model, const NotebookModel& previous) {
    bool anyChanged = false;
    for (NotebookRow& row : model.rows) {
        const NotebookRow* const before = rowOf(previous, row.function);
        row.changed = before != nullptr && before->state != row.state;
        anyChanged |= row.changed;
    }
    for (NotebookRow& row : model.rows) {
        const NotebookRow* const before = rowOf(previous, row.function);
        row.changed |= !anyChanged && before != nullptr && before->changed;
    }
}

}  // namespace

NotebookModel readNotebook(const NotebookModel& previous) {
    NotebookModel model;
    const CFunctionList list;
    for (const Function& function : kFunctions) {
        if (list.has(function)) {
            model.rows.push_back({function.name, keysOf(function), captionOf(function), stateText(function)});
        }
    }
    if (!isNewMachine()) {
        markChanges(model, previous);
    }
    model.latched = numberOf(HKEY_CURRENT_USER, ZEL_REG_STATE, ZEL_VALUE_LATCHED) != 0;
    model.hint = hintText(model.latched);
    model.lastChoice = lastChoiceText();
    model.typed = previous.typed;
    return model;
}

}  // namespace sim
