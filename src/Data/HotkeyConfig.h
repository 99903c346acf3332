// The list of hotkey functions, one card each, as the registry holds it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// One function. Texts keep every stored UTF-16 unit, a stored terminator included: use them through c_str().
struct HotkeyInfo {
    std::wstring strFuncName;    // as in "FuncList"; the factory maps it to a class
    std::vector<DWORD> vecCode;  // hotkey codes in stored order
    std::wstring strCaption;     // empty when there is none, or when captions are hidden
    std::wstring strFuncDll;     // path of the plug-in library
};

class IEnumHotkeyConfigs {
 public:
    virtual ~IEnumHotkeyConfigs() = default;

    // Called once per function, in the order of the list, on the thread that enumerates. The record is gone after the
    // call; the result is ignored.
    virtual HRESULT processHotkeyInfo(const HotkeyInfo* pHotkeyInfo) = 0;
};

class CHotkeyConfig {
 public:
    // Reads the list and hands every complete function to `pEnum`; incomplete ones are skipped with a log line. Fails
    // only when the list itself cannot be read (E_POINTER: no receiver). User-interface thread.
    [[nodiscard]] static HRESULT enumHotkeyConfigs(IEnumHotkeyConfigs* pEnum);

    // Where the list stands: below HKEY_LOCAL_MACHINE, or below HKEY_CURRENT_USER when only the user has one. What
    // belongs to the list, such as the install path, is read there too.
    [[nodiscard]] static HKEY listRoot() noexcept;
};
