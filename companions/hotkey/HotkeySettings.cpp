#include "HotkeySettings.h"

#include <algorithm>
#include <string>

#include "FunctionListRoot.h"
#include "RegistryRead.h"
#include "include/ZelHotkey.h"
#include "include/ZelModifier.h"

namespace hotkey {
namespace {

// A list with more functions than a keyboard has keys is a mistake, and must not take much time.
constexpr unsigned kMaxFunctions = keyboard::kKeySlots;

// More than a minute is a mistake.
constexpr DWORD kLongestReleaseDelay = 60000;

void addCodesOf(HKEY hotkeyKey, const std::wstring& function, TrackerSettings& settings) {
    const common::UniqueRegKey key = openKey(hotkeyKey, function.c_str());
    if (!key || !readBytes(key.get(), ZEL_VALUE_FUNC_DLL)) {
        return;
    }
    const auto codes = readNumbers(key.get(), ZEL_VALUE_CODE);
    if (!codes) {
        return;
    }
    for (const DWORD code : *codes) {
        addCode(code, settings);
    }
}

void readListed(HKEY hotkeyKey, TrackerSettings& settings) {
    const std::wstring list = readText(hotkeyKey, ZEL_VALUE_FUNC_LIST).value_or(std::wstring());
    std::size_t start = 0;
    for (unsigned n = 0; n < kMaxFunctions; ++n) {
        const std::size_t end = list.find(L';', start);
        if (end == std::wstring::npos) {
            break;
        }
        addCodesOf(hotkeyKey, list.substr(start, end - start), settings);
        start = end + 1;
    }
}

// As the program reads it: the user's key, where there is one, hides the machine's.
bool isDisabled() {
    common::UniqueRegKey key = openKey(HKEY_CURRENT_USER, ZEL_REG_CONFIG);
    if (!key) {
        key = openKey(HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG);
    }
    return key && readNumber(key.get(), ZEL_VALUE_DISABLE, 0) != 0;
}

}  // namespace

void addCode(DWORD code, TrackerSettings& settings) {
    const bool bAlone = (code & ZEL_CODE_ALONE) != 0;
    if (const std::size_t slot = keyboard::slotOfCode(code & ~ZEL_CODE_ALONE); slot != 0) {
        (bAlone ? settings.alone : settings.listed).set(slot);
    }
}

TrackerSettings readTrackerSettings() {
    TrackerSettings settings;
    const common::UniqueRegKey key = openKey(fenwyn::functionListRoot(), ZEL_REG_HOTKEY);
    if (!key) {
        return settings;
    }
    settings.modifierKey = zelModifierKey(readNumber(key.get(), ZEL_VALUE_MODIFIER_KEY, 0));
    settings.sticky = readNumber(key.get(), ZEL_VALUE_STICKY_MODIFIER, 0) != 0;
    settings.releaseDelay =
        std::min(readNumber(key.get(), ZEL_VALUE_RELEASE_DELAY, settings.releaseDelay), kLongestReleaseDelay);
    readListed(key.get(), settings);
    if (isDisabled()) {
        settings.alone.reset();  // keys that mean something by themselves go on meaning it
    }
    return settings;
}

}  // namespace hotkey
