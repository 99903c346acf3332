#include "LatchState.h"

#include <windows.h>

#include "RegistryRead.h"
#include "include/ZelHotkey.h"

namespace hotkey {

void publishLatch(bool bLatched) noexcept {
    common::UniqueRegKey key = openKey(HKEY_CURRENT_USER, ZEL_REG_STATE, KEY_SET_VALUE);
    if (!key && bLatched) {
        ::RegCreateKeyExW(HKEY_CURRENT_USER, ZEL_REG_STATE, 0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE, nullptr,
                          key.put(), nullptr);
    }
    if (key) {
        const DWORD value = bLatched ? 1 : 0;
        ::RegSetValueExW(key.get(), ZEL_VALUE_LATCHED, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                         sizeof(value));
    }
}

}  // namespace hotkey
