#include "NotebookModel.h"

#include <algorithm>
#include <vector>

#include "FunctionListRoot.h"
#include "Functions.h"
#include "Machine.h"
#include "SampleSettings.h"
#include "State.h"
#include "Words.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"

namespace sim {

namespace {

// 0 when there is none.
DWORD numberOf(HKEY root, const wchar_t* key, const wchar_t* name) {
    DWORD number = 0;
    DWORD bytes = sizeof number;
    RegGetValueW(root, key, name, RRF_RT_REG_DWORD, nullptr, &number, &bytes);
    return number;
}

// False when there is none.
bool textOf(const std::wstring& key, const wchar_t* name, std::wstring& text) {
    DWORD bytes = 0;
    const auto read = [&](wchar_t* place) {
        return RegGetValueW(fenwyn::functionListRoot(), key.c_str(), name, RRF_RT_REG_SZ, nullptr, place, &bytes);
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
    std::wstring caption = word(function.caption);
    textOf(std::wstring(ZEL_REG_HOTKEY) + L"\\" + function.name, kCaptionValue, caption);
    return caption;
}

std::wstring keysOf(const Function& function) {
    std::wstring keys = word(function.keys[0].name);
    for (std::size_t i = 1; i < function.keyCount(); ++i) {
        keys += std::wstring(L" / ") + word(function.keys[i].name);
    }
    return keys;
}

// The name on the key, as far as the keyboard's layout knows it.
std::wstring modifierName() {
    const DWORD key = zelModifierKey(numberOf(fenwyn::functionListRoot(), ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY));
    if (key == VK_RCONTROL) {
        return word(L"right Ctrl");
    }
    const UINT scan = MapVirtualKeyW(key, MAPVK_VK_TO_VSC_EX);
    const LONG place = static_cast<LONG>((scan & 0xFFU) << 16U | ((scan & 0xFF00U) != 0 ? 1U << 24U : 0U));
    wchar_t name[64] = L"";
    const bool named = scan != 0 && GetKeyNameTextW(place, name, static_cast<int>(std::size(name))) > 0;
    return named ? name : word(L"the modifier");
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
