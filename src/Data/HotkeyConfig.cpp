#include "Data/HotkeyConfig.h"

#include "Data/RegistryPaths.h"
#include "Data/ZelConfig.h"
#include "common/RegConfig.h"
#include "common/Status.h"
#include "companions/include/FunctionListRoot.h"

namespace {

[[nodiscard]] HRESULT readText(const RegConfigAccess& key, const wchar_t* name, std::wstring& out) {
    std::vector<wchar_t> units;
    const HRESULT status = key.GetValue(name, units);
    if (SUCCEEDED(status)) {
        out.assign(units.begin(), units.end());
    }
    return status;
}

// Logs failures itself; the caller skips the function. `key` stays open.
[[nodiscard]] HRESULT readHotkeyInfo(HKEY hotkeyKey, RegConfigAccess& key, HotkeyInfo& info) {
    HRESULT status = key.Open(hotkeyKey, info.strFuncName.c_str(), KEY_READ);
    if (FAILED(status)) {
        return status;
    }
    if (!CZelConfig::getQrdConfig().bHideCaption) {
        static_cast<void>(readText(key, regpath::kCaption, info.strCaption));  // a card without a caption is one too
    }
    status = key.GetValue(regpath::kCode, info.vecCode);
    return FAILED(status) ? status : readText(key, regpath::kFuncDll, info.strFuncDll);
}

}  // namespace

HKEY CHotkeyConfig::listRoot() noexcept {
    return fenwyn::functionListRoot();
}

HRESULT CHotkeyConfig::enumHotkeyConfigs(IEnumHotkeyConfigs* pEnum) {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(pEnum != nullptr, L"pEnum", E_POINTER);
    RegConfigAccess key;
    const HKEY root = listRoot();
    if (root == HKEY_CURRENT_USER) {
        LOG_INFO(L"The machine has no function list; the user's own is read.");
    }
    RETURN_IF_FAILED(key.Open(root, regpath::kHotkeyKey, KEY_READ));
    std::wstring list;
    RETURN_IF_FAILED(readText(key, regpath::kFuncList, list));
    std::size_t start = 0;
    for (std::size_t end = list.find(L';'); end != std::wstring::npos; end = list.find(L';', start)) {
        HotkeyInfo info;
        info.strFuncName = list.substr(start, end - start);
        RegConfigAccess subKey;  // closed only after the callback
        if (SUCCEEDED(readHotkeyInfo(key.key(), subKey, info))) {
            // A function that fails does not affect the others.
            static_cast<void>(pEnum->processHotkeyInfo(&info));
        }
        start = end + 1;
    }
    return S_OK;
}
