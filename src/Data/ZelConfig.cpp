#include "Data/ZelConfig.h"

#include "Data/RegistryPaths.h"
#include "common/RegConfig.h"
#include "common/Status.h"

namespace {

enum class Scope { UserElseMachine, Machine };

struct Setting {
    const wchar_t* name;
    CConfigValue QrdConfig::*member;
    DWORD defaultValue;
    Scope scope;
};

// In reading order. A new setting is a new row.
constexpr Setting kSettings[] = {
    {L"Disable", &QrdConfig::bDisable, 0, Scope::UserElseMachine},
    {L"Position", &QrdConfig::uPosition, 0, Scope::UserElseMachine},
    {L"EnableHover", &QrdConfig::bEnableHover, 0, Scope::UserElseMachine},
    {L"MouseEnterIdle", &QrdConfig::uMouseEnterIdle, 0, Scope::UserElseMachine},
    {L"Topmost", &QrdConfig::bTopmost, 0, Scope::UserElseMachine},
    {L"MonitorOfActiveWindow", &QrdConfig::bMonitorOfActiveWindow, 0, Scope::UserElseMachine},
    {L"HideInFullScreen", &QrdConfig::bHideInFullScreen, 0, Scope::UserElseMachine},
    {L"HideMainDlg", &QrdConfig::bHideMainDlg, 0, Scope::Machine},
    {L"IgnoreFnKey", &QrdConfig::bIgnoreFnKey, 0, Scope::Machine},
    {L"AutoHide", &QrdConfig::bAutoHide, 0, Scope::Machine},
    {L"AutoHideDelayTime", &QrdConfig::uAutoHideDelayTime, 2000, Scope::Machine},
    {L"HideCaption", &QrdConfig::bHideCaption, 0, Scope::Machine},
    {L"Programmable", &QrdConfig::bProgrammable, 0, Scope::Machine},
    {L"ShowQrdAtLaunch", &QrdConfig::bShowQrdAtLaunch, 0, Scope::Machine},
    {L"AlwaysShowItemsCaption", &QrdConfig::bAlwaysShowItemsCaption, 0, Scope::Machine},
    {L"ItemDescMaxWidth", &QrdConfig::uItemDescMaxWidth, 100, Scope::Machine},
    {L"SliderThumbSize", &QrdConfig::uSliderThumbSize, 20, Scope::Machine},
    {L"HideMainUIWhenLostFocus", &QrdConfig::bHideMainUIWhenLostFocus, 0, Scope::Machine},
    {L"PluginPatience", &QrdConfig::uPluginPatience, 3000, Scope::Machine},
    {L"PluginEndTime", &QrdConfig::uPluginEndTime, 20000, Scope::Machine},
};

void readSettings(const RegConfigAccess& key, Scope scope, QrdConfig& config) {
    for (const Setting& setting : kSettings) {
        if (setting.scope == scope) {
            DWORD value = config.*setting.member;
            if (SUCCEEDED(key.GetValue(setting.name, value))) {
                config.*setting.member = value;
            }
        }
    }
}

}  // namespace

QrdConfig::QrdConfig() noexcept {
    for (const Setting& setting : kSettings) {
        this->*setting.member = setting.defaultValue;
    }
}

QrdConfig& CZelConfig::getQrdConfig() {
    static QrdConfig config;
    if (!config.bLoaded) {
        static_cast<void>(_initQrdConfig(config));  // unreadable values keep their defaults, and are logged
    }
    return config;
}

HRESULT CZelConfig::_initQrdConfig(QrdConfig& config) {
    LOG_ENTER_LEAVE();
    RegConfigAccess key;
    if (FAILED(key.Open(HKEY_CURRENT_USER, regpath::kConfigKey, KEY_READ))) {
        RETURN_IF_FAILED(key.Open(HKEY_LOCAL_MACHINE, regpath::kConfigKey, KEY_READ));
    }
    readSettings(key, Scope::UserElseMachine, config);
    RETURN_IF_FAILED(key.Close());
    RETURN_IF_FAILED(key.Open(HKEY_LOCAL_MACHINE, regpath::kConfigKey, KEY_READ));
    readSettings(key, Scope::Machine, config);
    config.bLoaded = TRUE;
    return S_OK;
}
