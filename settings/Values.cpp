#include "Values.h"

#include <algorithm>

#include "SettingsIds.h"
#include "ZelHotkey.h"
#include "DisplaySource.h"

namespace settings {
namespace {

constexpr DWORD kMinute = 60000;  // ms
constexpr DWORD kTenMinutes = 10 * kMinute;

using enum Scope;

// clang-format off
constexpr Value kValues[] = {
    {L"Position", UserElseMachine, Kind::Position, 0, 0, 1, Group::Place, IDS_POSITION},
    {L"MonitorOfActiveWindow", UserElseMachine, Kind::YesNo, 0, 0, 1, Group::Place, IDS_MONITOR},

    {ZEL_VALUE_DISABLE, UserElseMachine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_DISABLE},
    {L"EnableHover", UserElseMachine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_HOVER},
    {L"MouseEnterIdle", UserElseMachine, Kind::Milliseconds, 0, 0, kMinute, Group::Showing, IDS_HOVER_DELAY},
    {L"Topmost", UserElseMachine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_TOPMOST},
    {L"HideInFullScreen", UserElseMachine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_FULL_SCREEN},
    {L"HideMainDlg", Machine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_HIDE_STRIP},
    {L"IgnoreFnKey", Machine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_IGNORE_FN},
    {L"AutoHide", Machine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_AUTO_HIDE},
    {L"AutoHideDelayTime", Machine, Kind::Milliseconds, 2000, 0, kTenMinutes, Group::Showing, IDS_AUTO_HIDE_DELAY},
    {L"ShowQrdAtLaunch", Machine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_AT_LAUNCH},
    {L"HideMainUIWhenLostFocus", Machine, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_LOST_FOCUS},
    {FENWYN_VALUE_TRAY_ICON, Scope::Language, Kind::YesNo, 1, 0, 1, Group::Showing, IDS_ICON},
    {kWithWindows, Start, Kind::YesNo, 0, 0, 1, Group::Showing, IDS_START},

    {L"HideCaption", Machine, Kind::YesNo, 0, 0, 1, Group::Captions, IDS_HIDE_CAPTION, InForce::Restart},
    {L"AlwaysShowItemsCaption", Machine, Kind::YesNo, 0, 0, 1, Group::Captions, IDS_ALL_CAPTIONS},
    {L"ItemDescMaxWidth", Machine, Kind::Pixels, 100, 20, 1000, Group::Captions, IDS_ITEM_WIDTH},
    {L"SliderThumbSize", Machine, Kind::Pixels, 20, 5, 200, Group::Captions, IDS_THUMB_SIZE},

    {kProgrammable, Machine, Kind::YesNo, 0, 0, 1, Group::Plugins, IDS_PROGRAMMABLE, InForce::Restart},
    {L"PluginPatience", Machine, Kind::Milliseconds, 3000, 0, kTenMinutes, Group::Plugins, IDS_PATIENCE},
    {L"PluginEndTime", Machine, Kind::Milliseconds, 20000, 1000, kTenMinutes, Group::Plugins, IDS_END_TIME},
    {FENWYN_VALUE_INSTALL_PATH, Product, Kind::Path, 0, 0, 0, Group::Plugins, IDS_INSTALL_PATH},
    {DISPLAY_SOURCE_VALUE, Product, Kind::Path, 0, 0, 0, Group::Plugins, IDS_DISPLAY_SOURCE},

    {FENWYN_VALUE_LANGUAGE, Scope::Language, Kind::Language, 0, 0, 0, Group::Language, IDS_LANGUAGE,
     InForce::Restart},

    {ZEL_VALUE_MODIFIER_KEY, Scope::List, Kind::VirtualKey, VK_RCONTROL, 1, 0xFE, Group::Keys, IDS_MODIFIER},
    {ZEL_VALUE_STICKY_MODIFIER, Scope::List, Kind::YesNo, 0, 0, 1, Group::Keys, IDS_STICKY},
    {ZEL_VALUE_RELEASE_DELAY, List, Kind::Milliseconds, 1000, 0, kMinute, Group::Keys, IDS_RELEASE_DELAY},
};
// clang-format on

}  // namespace

std::span<const Value> values() {
    return kValues;
}

const Value* findValue(std::wstring_view name) {
    const auto found = std::ranges::find_if(kValues, [name](const Value& value) { return name == value.name; });
    return found != std::end(kValues) ? found : nullptr;
}

}  // namespace settings
