// The hotkey library and its companion: their start and stop, and the callbacks for key events and changes of the
// configuration.
#pragma once

#include <windows.h>

class CHotkeyEventHandler {
 public:
    // Binds "ZelMain.dll" and starts its event loop. E_FAIL if the library, an export or a call fails. A bound library
    // is never unloaded.
    [[nodiscard]] static HRESULT startHotkeyEventLoop();
    // Ends the event loop if the library was bound, even if it could not be started. No callback comes after this.
    static void stopHotkeyEventLoop();
    // While the cards cannot answer, no key is to be swallowed: stops the library, and starts it again. Any thread; may
    // wait for the library as stopHotkeyEventLoop() does. No effect without a running library.
    static void handBackKeys();
    static void takeKeysAgain();
    // Cancels a pending hotkey query through "ZelEvnt.dll".
    static void cancelHotkeyIOEvent();

    // Whether a hotkey code is that of a key that needs no modifier.
    [[nodiscard]] static bool actsAlone(DWORD code) noexcept;

 private:
    friend struct HotkeyEventSeam;

    [[nodiscard]] static HRESULT _start(HMODULE hLibrary);
    [[nodiscard]] static HRESULT _stop(HMODULE hLibrary);

    // Called by the hotkey library on its own thread. They post messages and use no window.
    static void WINAPI _hotkeyNotify(DWORD code, DWORD modifier) noexcept;
    static void WINAPI _changeConfigNotify(DWORD code) noexcept;
};
