#include "HotkeySettings.h"

#include <string>

#include "FunctionListRoot.h"
#include "RegistryRead.h"
#include "include/ZelHotkey.h"
#include "include/ZelModifier.h"

namespace hotkey {
namespace {

// A list with more functions than a keyboard has keys is a mistake, and must not take much time.
constexpr unsigned kMaxFunctions = keyboard::kKeySlots;

void addCodesOf(HKEY hotkeyKey, const std::wstring& function, keyboard::KeySet& listed) {
    const common::UniqueRegKey key = openKey(hotkeyKey, function.c_str());
    if (!key || !readBytes(key.get(), ZEL_VALUE_FUNC_DLL)) {
        return;
    }
    const auto codes = readNumbers(key.get(), ZEL_VALUE_CODE);
    if (!codes) {
        return;
    }
    for (const DWORD code : *codes) {
        listed.set(keyboard::slotOfCode(code));
    }
}

keyboard::KeySet readListed(HKEY hotkeyKey) {
    keyboard::KeySet listed;
    const std::wstring list = readText(hotkeyKey, ZEL_VALUE_FUNC_LIST).value_or(std::wstring());
    std::size_t start = 0;
    for (unsigned n = 0; n < kMaxFunctions; ++n) {
        const std::size_t end = list.find(L';', start);
        if (end == std::wstring::npos) {
            break;
        }
        addCodesOf(hotkeyKey, list.substr(start, end - start), listed);
        start = end + 1;
    }
    listed.reset(0);  // codes that no key can send, and the modifier itself, are never swallowed
    return listed;
}

}  // namespace

TrackerSettings readTrackerSettings() {
    TrackerSettings settings;
    const common::UniqueRegKey key = openKey(fenwyn::functionListRoot(), ZEL_REG_HOTKEY);
    if (!key) {
        return settings;
    }
    settings.modifierKey = zelModifierKey(readNumber(key.get(), ZEL_VALUE_MODIFIER_KEY, 0));
    settings.sticky = readNumber(key.get(), ZEL_VALUE_STICKY_MODIFIER, 0) != 0;
    settings.listed = readListed(key.get());
    return settings;
}

}  // namespace hotkey
