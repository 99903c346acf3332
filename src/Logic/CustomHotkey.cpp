#include "Logic/CustomHotkey.h"

#include <algorithm>
#include <new>

#include "Data/RegistryPaths.h"
#include "common/StartByShell.h"
#include "common/Status.h"

namespace {

using storage::Policy;
using storage::Storage;

constexpr DWORD kCodeBits = 0x7F;

}  // namespace

HRESULT CCustomHotkey::getCustomizedHotkeys() {
    LOG_ENTER_LEAVE();
    const Storage buttons = Storage::open(HKEY_LOCAL_MACHINE, regpath::kButtonsKey, Policy::Quiet);
    std::vector<std::wstring> names;
    if (!buttons.enumSubKeys(names)) {
        RETURN_LOGGED(E_FAIL);
    }
    const Storage userSettings = Storage::open(HKEY_LOCAL_MACHINE, regpath::kUserSettingKey, Policy::Quiet);
    if (!userSettings.isOpen()) {
        LOG_ASSERT(L"regUserSetting.IsOpen()");
    }
    m_vecHotkeys.clear();
    for (const std::wstring& name : names) {
        LOG_TRACE(L"%s = %s", L"*button", name.c_str());
        _readButton(buttons.openSub(name), userSettings);
    }
    return S_OK;
}

// A later button of a code that has its record would only be mentioned in the log.
bool CCustomHotkey::_wouldChangeNothing(const Storage& button) const {
    DWORD makeValue = 0;
    return !dbglog::enabled(dbglog::Level::Info) &&
           (!button.getDword(regpath::kMakeValue, makeValue) || _find(makeValue & kCodeBits) != nullptr);
}

void CCustomHotkey::_readButton(const Storage& button, const Storage& userSettings) {
    LOG_ENTER_LEAVE();
    if (_wouldChangeNothing(button)) {
        return;
    }
    DWORD isQrdControl = 0;
    if (!button.getDword(regpath::kIsQrdControl, isQrdControl) || isQrdControl == 0) {
        return;
    }
    DWORD nFuncCode = 0;
    if (!button.getDword(regpath::kMakeFunction, nFuncCode)) {
        return;
    }
    LOG_TRACE(L"%s = %d", L"nFuncCode", nFuncCode);
    const Storage userSetting = userSettings.openSub(std::to_wstring(static_cast<int>(nFuncCode)));
    if (!userSetting.isOpen()) {
        return;
    }
    LOG_INFO(L"Hotkey is customized.");
    DWORD makeValue = 0;
    if (button.getDword(regpath::kMakeValue, makeValue)) {
        // A record that cannot be stored is omitted; the others are kept.
        static_cast<void>(readCustomHotkeyInfo(makeValue & kCodeBits, userSetting));
    }
}

HRESULT CCustomHotkey::readCustomHotkeyInfo(DWORD code, const Storage& userSetting) {
    LOG_ENTER_LEAVE();
    CustomHotkeyInfo info{code, {}, {}};
    if (!userSetting.getString(regpath::kOption1, info.file) || !userSetting.getString(regpath::kOption2, info.param)) {
        return S_OK;
    }
    LOG_INFO(L"Custom hotkey info: code-%d, file-%s, param-%s.", code, info.file.c_str(), info.param.c_str());
    try {
        m_vecHotkeys.push_back(std::make_unique<CustomHotkeyInfo>(std::move(info)));
    } catch (const std::bad_alloc&) {
        RETURN_LOGGED(E_POINTER);
    }
    return S_OK;
}

const CCustomHotkey::CustomHotkeyInfo* CCustomHotkey::_find(DWORD code) const {
    const auto found = std::ranges::find_if(m_vecHotkeys, [code](const auto& hotkey) { return hotkey->code == code; });
    return found == m_vecHotkeys.end() ? nullptr : found->get();
}

bool CCustomHotkey::isHotkeyCustomized(DWORD code) const {
    LOG_ENTER_LEAVE();
    if (_find(code) == nullptr) {
        return false;
    }
    LOG_INFO(L"Hotkey %d is customized.", code);
    return true;
}

HRESULT CCustomHotkey::handleHotkey(DWORD code) {
    LOG_ENTER_LEAVE();
    const CustomHotkeyInfo* found = _find(code);
    RETURN_UNLESS(found != nullptr, L"!\"Should never get to here.\"", E_FAIL);
    // A copy, because the shell may dispatch messages, and one of them may rebuild the list.
    const CustomHotkeyInfo hotkey = *found;
    LOG_INFO(L"File:%s, param:%s.", hotkey.file.c_str(), hotkey.param.c_str());
    const DWORD error = common::startByShell(hotkey.file, hotkey.param);
    if (error != ERROR_SUCCESS) {
        RETURN_LOGGED(static_cast<HRESULT>(error));
    }
    return S_OK;
}
