// The keys whose changes are reported, and the keys above them, through which they come and go.
#pragma once

#include <windows.h>

#include "include/ZelHotkey.h"

namespace hotkey {

struct WatchedKey {
    HKEY root;
    const wchar_t* path;
    bool content;  // what it holds matters; else only which keys lie directly below it
    bool tree;     // and so does everything below; that is a function list, of which one is in force
};

// A key that is missing cannot be watched, and the end of one that is deleted may go unnoticed, but its parent tells of
// both: that is why every link of the chains is here, parents first.
inline const WatchedKey kWatchedKeys[] = {
    {HKEY_LOCAL_MACHINE, FENWYN_REG_SOFTWARE, false, false}, {HKEY_LOCAL_MACHINE, FENWYN_REG_MAKER, false, false},
    {HKEY_LOCAL_MACHINE, FENWYN_REG_PRODUCT, false, false},  {HKEY_LOCAL_MACHINE, ZEL_REG_CONFIG, true, false},
    {HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, true, true},        {HKEY_CURRENT_USER, FENWYN_REG_SOFTWARE, false, false},
    {HKEY_CURRENT_USER, FENWYN_REG_MAKER, false, false},     {HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, false, false},
    {HKEY_CURRENT_USER, ZEL_REG_CONFIG, true, false},        {HKEY_CURRENT_USER, ZEL_REG_HOTKEY, true, true},
};

}  // namespace hotkey
