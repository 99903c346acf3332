// The hotkey library and its companion: their start and stop, and the callbacks through which key events and changes of
// the configuration arrive.
#pragma once

#include <windows.h>

class CHotkeyEventHandler {
 public:
    // Binds "ZelMain.dll" and starts its event loop. E_FAIL when the library, an export or a call fails. A library that
    // was bound is never unloaded.
    [[nodiscard]] static HRESULT startHotkeyEventLoop();
    // Ends the event loop when the library was bound, also when it could not be started. No callback comes after this.
    static void stopHotkeyEventLoop();
    // Cancels a pending hotkey query through "ZelEvnt.dll".
    static void cancelHotkeyIOEvent();

 private:
    friend struct HotkeyEventSeam;

    // Called by the hotkey library on a thread of its own. They post messages and touch no window.
    static void WINAPI _hotkeyNotify(DWORD code, DWORD modifier) noexcept;
    static void WINAPI _changeConfigNotify(DWORD code) noexcept;
};
