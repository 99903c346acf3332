// The keys whose changes are reported, and their parents, which show when they are created or deleted.
#pragma once

#include <windows.h>

#include "include/ZelHotkey.h"

namespace hotkey {

struct WatchedKey {
    HKEY root;
    const wchar_t* path;
    bool content;  // its values matter; otherwise only which keys are directly below it
    bool tree;     // so does everything below it: a function list, of which one is in force
};

// A missing key cannot be watched, and the deletion of a key may go unnoticed, but its parent reports both. Therefore
// every key of the chains is here, parents first.
inline const WatchedKey kWatchedKeys[] = {
    {HKEY_LOCAL_MACHINE, FENWYN_REG_SOFTWARE, false, false}, {HKEY_LOCAL_MACHINE, FENWYN_REG_MAKER, false, false},
    {HKEY_LOCAL_MACHINE, FENWYN_REG_PRODUCT, false, false},  {HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, true, false},
    {HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, true, true},        {HKEY_CURRENT_USER, FENWYN_REG_SOFTWARE, false, false},
    {HKEY_CURRENT_USER, FENWYN_REG_MAKER, false, false},     {HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, false, false},
    {HKEY_CURRENT_USER, ZEL_REG_CONFIG, true, false},        {HKEY_CURRENT_USER, ZEL_REG_HOTKEY, true, true},
};

}  // namespace hotkey
