#include "Outside.h"

#include "Elevation.h"
#include "Logic/HbqNotify.h"
#include "RunningFenwyn.h"
#include "TrayStart.h"

namespace settings {
namespace {

constexpr DWORD kEndPatienceMs = 15000;
constexpr DWORD kStartPatienceMs = 15000;
constexpr DWORD kPollMs = 50;
// The hotkey library reports a change 100 ms after the last one, and the program lays out its cards anew.
constexpr DWORD kSettleMs = 500;

// Its cards stay hidden, because the person is at work in this window.
bool restart() {
    if (!endFenwyn(kEndPatienceMs) || !startFenwyn(L"/hide")) {
        return false;
    }
    for (DWORD waited = 0; waited < kStartPatienceMs; waited += kPollMs) {
        if (frameOfFenwyn() != nullptr) {
            return true;
        }
        ::Sleep(kPollMs);
    }
    return false;
}

void settle() {
    if (frameOfFenwyn() != nullptr) {
        ::Sleep(kSettleMs);
    }
}

}  // namespace

Outside realOutside(IStore& store) {
    return {&store,   &writeElevated,
            [] { return frameOfFenwyn() != nullptr; },
            &restart, &settle,
            [] { ::PostMessageW(HWND_BROADCAST, hbqNotifyMessage(), 0, 0); },
            &followIconSetting};
}

}  // namespace settings
