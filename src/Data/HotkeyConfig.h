// The list of hotkey functions in the registry, one card each.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// One function. Texts keep every stored UTF-16 unit, including a stored terminator: use them through c_str().
struct HotkeyInfo {
    std::wstring strFuncName;    // as in "FuncList"; the factory maps it to a class
    std::vector<DWORD> vecCode;  // hotkey codes in stored order
    std::wstring strCaption;     // empty if there is none, or if captions are hidden
    std::wstring strFuncDll;     // path of the plug-in library
};

class IEnumHotkeyConfigs {
 public:
    virtual ~IEnumHotkeyConfigs() = default;

    // Called once per function, in the order of the list, on the enumerating thread. The record is valid during the
    // call only; the result is ignored.
    [[nodiscard]] virtual HRESULT processHotkeyInfo(const HotkeyInfo* pHotkeyInfo) = 0;
};

class CHotkeyConfig {
 public:
    // Reads the list and passes every complete function to `pEnum`; incomplete ones are skipped with a log line. Fails
    // only if the list itself cannot be read (E_POINTER: no receiver). User-interface thread.
    [[nodiscard]] static HRESULT enumHotkeyConfigs(IEnumHotkeyConfigs* pEnum);

    // The root of the list: HKEY_LOCAL_MACHINE, or HKEY_CURRENT_USER if only the user has one. Values that belong to
    // the list, such as the install path, are read there too.
    [[nodiscard]] static HKEY listRoot() noexcept;
};
