#include "StandIn.h"

using namespace standin;

extern "C" {

LONG WINAPI Start(HotkeyCallback hotkey, ConfigCallback config);
LONG WINAPI EnableHotkey();
LONG WINAPI Stop();

LONG WINAPI Start(HotkeyCallback hotkey, ConfigCallback config) {
    control().hotkeyCallback = hotkey;
    control().configCallback = config;
    return answer(control().start, L"Start");
}

LONG WINAPI EnableHotkey() {
    return answer(control().enableHotkey, L"EnableHotkey");
}

LONG WINAPI Stop() {
    return answer(control().stop, L"Stop");
}

}  // extern "C"
