// Hotkeys that the user assigned to other programs in the button utility.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "common/Storage.h"

// Owns one record per customised key. User-interface thread only.
class CCustomHotkey {
 public:
    // Rebuilds the list from the button utility's keys. E_FAIL, with an unchanged list, if its buttons cannot be
    // listed; a button with a missing key or value is skipped.
    [[nodiscard]] HRESULT getCustomizedHotkeys();

    [[nodiscard]] bool isHotkeyCustomized(DWORD code) const;

    // Starts the program of the first record with that code: 0 if it was started, otherwise the shell's error (1..32,
    // which is no failure status); E_FAIL if the code is not customised.
    [[nodiscard]] HRESULT handleHotkey(DWORD code);

    // Appends a record for that code from the button's key below UserSetting; S_OK without a record if one of its two
    // texts is missing, E_POINTER without memory.
    [[nodiscard]] HRESULT readCustomHotkeyInfo(DWORD code, const storage::Storage& userSetting);

 private:
    struct CustomHotkeyInfo {
        DWORD code;
        std::wstring file;
        std::wstring param;
    };

    [[nodiscard]] bool _wouldChangeNothing(const storage::Storage& button) const;
    void _readButton(const storage::Storage& button, const storage::Storage& userSettings);
    [[nodiscard]] const CustomHotkeyInfo* _find(DWORD code) const;

    std::vector<std::unique_ptr<CustomHotkeyInfo>> m_vecHotkeys;  // in the order found
};
