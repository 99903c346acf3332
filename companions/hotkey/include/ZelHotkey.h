/* The hotkey library ZelMain.dll and its companion ZelEvnt.dll, for C (C11) and C++.
 *
 * Both are bound at run time: LoadLibrary, then GetProcAddress with the names below. A maker's own library may replace
 * them if it follows this header. Exports are undecorated, also on 32 bit, use the WINAPI calling convention and return
 * a 32-bit status: 0 is success, everything else a failure (HRESULT values here). No C++ types and no exceptions cross
 * the boundary, in either direction.
 *
 * Key events. One key, the modifier, stands in for Fn (right Ctrl unless configured otherwise). Its press is reported
 * as code 0. Every key pressed while it is down is reported with its code (below). A key whose code is in the function
 * list is swallowed from its press to its release, so that no other program sees it. Every other key is passed on
 * unchanged; ModifierKey describes what happens to the modifier itself. A key that was down before the modifier is not
 * reported.
 *
 * Keys without the modifier. A key whose code with ZEL_CODE_ALONE the function list names is reported with that code
 * and swallowed, whatever else is down. With the modifier it is reported so too, unless the list names its plain code
 * as well, which then counts. Without it, what was chosen with such keys is applied by a break of code 0 that has no
 * make: it follows when ReleaseDelay has passed since the last of them was released, or when the modifier goes down.
 * While the program is switched off (Disable in the card configuration), keys without the modifier are left alone.
 *
 * Codes. A key's code is its PC set-1 scan code: F1 = 0x3B .. F10 = 0x44, F11 = 0x57, F12 = 0x58. An extended key's is
 * ZEL_CODE_EXTENDED | scan code. A key that neither comes with a scan code nor has one in the keyboard layout has
 * ZEL_CODE_VIRTUAL_KEY | virtual-key code. The function list may name every key in this way: a key whose scan code is
 * not in the list, but its virtual key, is reported as it is listed. ZEL_CODE_ALONE comes on top of each of them.
 *
 * - A held key is reported once: its automatic repeats do not count as presses.
 * - Every make is followed by exactly one break, at the latest with the modifier's: when the modifier goes up first,
 *   the breaks of the keys still down come right before its own, in the order in which they were pressed. Nothing but
 *   keys without the modifier ever causes a break without a make.
 * - A missed release (session switch, lost focus, secure desktop) is detected within about 300 ms and reported then.
 *   The state of a swallowed key cannot be queried: its break comes with the modifier's, or with its own next press if
 *   more than 2.5 seconds have passed since its last repeat. The same goes for a modifier that the system does not see.
 * - Where the hook is not called (windows with more rights than the program), keys without the modifier come all the
 *   same, by RegisterHotKey; their release may then be reported up to 200 ms late or early.
 * - A hook that the system has dropped is noticed with the first key that it misses, and is back within half a second.
 *   To hear of that key, the library registers the process for raw keyboard input with a hidden window of its own.
 * - While a callback blocks, up to about a thousand events wait; presses beyond that are dropped whole, with their
 *   breaks.
 */
#ifndef ZEL_HOTKEY_H
#define ZEL_HOTKEY_H

#include <windows.h>

#include "FenwynRegistry.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------------------------
 * ZelMain.dll
 * ---------------------------------------------------------------------------------------------------------------- */
#define ZEL_MAIN_LIBRARY L"ZelMain.dll"

/* The code of the modifier key itself. */
#define ZEL_CODE_MODIFIER 0u

/* The parts of the other codes. */
#define ZEL_CODE_EXTENDED 0xE000u
#define ZEL_CODE_VIRTUAL_KEY 0xF000u
#define ZEL_CODE_ALONE 0x10000u

/* Second argument of the hotkey callback. */
#define ZEL_MAKE 0u
#define ZEL_BREAK 1u

/* Argument of the configuration callback. A receiver treats ZEL_CONFIG_CHANGED_ALT like ZEL_CONFIG_CHANGED and ignores
 * what it does not know. This library sends all but ZEL_CONFIG_CHANGED_ALT.
 *
 * ZEL_CONFIG_LATCHED and ZEL_CONFIG_UNLATCHED are optional: a library whose modifier can be latched tells with them
 * that it is active without being held, and that it no longer is. The program shows a mark on the strip meanwhile. A
 * library that never sends them works as well; nothing else depends on them.
 *
 * HOOK_LOST: the system had dropped the keyboard hook, and it was installed anew; keys of the last moments may be
 * missing. HOOK_RENEWED: it was installed anew to be on the safe side, because the session was locked, unlocked or
 * connected, or the machine woke up. Both are for the log. */
#define ZEL_CONFIG_CHANGED 8u
#define ZEL_CONFIG_LATCHED 0x10u
#define ZEL_CONFIG_UNLATCHED 0x11u
#define ZEL_CONFIG_HOOK_LOST 0x20000001u
#define ZEL_CONFIG_HOOK_RENEWED 0x20000002u
#define ZEL_CONFIG_CHANGED_ALT 0x40000000u
#define ZEL_CONFIG_END 0x80000000u

/* Thread: both callbacks run on the library's one delivery thread, one at a time, in the order of the events. They may
 * block it (then key events wait, but not the keyboard), but Stop waits for them only for a second. They must not call
 * Stop. */
typedef void(WINAPI* ZelHotkeyCallback)(DWORD code, DWORD modifier);
typedef void(WINAPI* ZelConfigCallback)(DWORD code);

/* Starts watching the keyboard and the configuration. From here on the configuration callback may be called; key events
 * wait for EnableHotkey. Fails with E_POINTER for a null callback, with E_UNEXPECTED if already started, or with the
 * system's error if a hook or a thread cannot be created. Thread: any. */
#define ZEL_START "Start"
typedef LONG(WINAPI* ZelStart)(ZelHotkeyCallback hotkeyCallback, ZelConfigCallback configCallback);

/* From here on keys are reported and swallowed. A modifier that is down already counts from its next press. Calling it
 * again changes nothing. E_UNEXPECTED before Start. Thread: any. */
#define ZEL_ENABLE_HOTKEY "EnableHotkey"
typedef LONG(WINAPI* ZelEnableHotkey)(void);

/* Stops watching, delivers the breaks of all keys that are still down, and ends the library's threads; 0 means that no
 * callback runs any more. Waits for a second at most: if a callback has not returned by then, the remaining events are
 * dropped, no further callback follows, and Stop returns HRESULT_FROM_WIN32(ERROR_TIMEOUT). Start works again after
 * either, or returns E_UNEXPECTED while the previous keyboard hook has not ended yet. S_FALSE if not started;
 * HRESULT_FROM_WIN32(ERROR_POSSIBLE_DEADLOCK), without effect, if called from a callback. Thread: any other. The
 * library's threads hold a reference to it: FreeLibrary without Stop is harmless, the library stays mapped until its
 * threads have ended; to stop it after that, load it again first. */
#define ZEL_STOP "Stop"
typedef LONG(WINAPI* ZelStop)(void);

/* Changes under these keys are reported with ZEL_CONFIG_CHANGED once nothing has changed for 100 ms (but after a second
 * of constant changes at the latest), whether or not the keys exist at first. Writing an unchanged value is no
 * change. */
#define ZEL_REG_CONFIG FENWYN_REG_CONFIG /* in HKEY_LOCAL_MACHINE and in HKEY_CURRENT_USER */
#define ZEL_REG_HOTKEY FENWYN_REG_HOTKEY /* with everything below it, in the root of the function list in force */

/* The function list: a string of function names, each followed by ';'. Below the key each function has a key of its own
 * with "Code" (little-endian 32-bit numbers) and "FuncDll"; one that lacks either is not in the list. Where
 * HKEY_LOCAL_MACHINE has no list, the user's own in HKEY_CURRENT_USER is read (FunctionListRoot.h). */
#define ZEL_VALUE_FUNC_LIST FENWYN_VALUE_FUNC_LIST
#define ZEL_VALUE_CODE L"Code"
#define ZEL_VALUE_FUNC_DLL L"FuncDll"

/* Settings of this library, DWORDs directly in ZEL_REG_HOTKEY; they take effect as soon as the change is noticed.
 *
 * ModifierKey: virtual-key code of the modifier, VK_RCONTROL unless given. VK_SHIFT, VK_CONTROL and VK_MENU mean the
 * right one of the two; 0 and values above 0xFE are ignored. A modifier that is only tapped (held alone for half a
 * second at most) keeps its usual function:
 * - the Alt and Windows keys are passed on unchanged. If they were more than tapped, the system is sent a key without a
 *   meaning (virtual key 0xE8) before they go up, so that no menu opens;
 * - Caps Lock, the menu key and F13 to F24 are hidden from the system while they are down. After a tap the library
 *   presses and releases them itself, so that they act when they are released;
 * - every other key is passed on unchanged.
 * With StickyModifier a tap only latches the modifier.
 *
 * StickyModifier: 1 = a tap of the modifier alone latches it: its make is reported and its break withheld, so that keys
 * can be pressed one after the other. Another tap, the message below, a change of the modifier or a lost session
 * releases the latch and reports the break. 0 (the default) = the modifier acts only while it is held. */
#define ZEL_VALUE_MODIFIER_KEY L"ModifierKey"
#define ZEL_VALUE_STICKY_MODIFIER L"StickyModifier"

/* ReleaseDelay: ms from the release of the last key without the modifier to the break of code 0; 1000 unless given, at
 * most 60000. */
#define ZEL_VALUE_RELEASE_DELAY L"ReleaseDelay"

/* A yes/no setting of the card configuration (ZEL_REG_CONFIG; the user's key, when there is one, hides the machine's):
 * the program takes no notice of hotkeys. */
#define ZEL_VALUE_DISABLE L"Disable"

/* While StickyModifier is 1 and the library runs, it owns a hidden top-level window of this class and title. The
 * registered message posted to it (both parameters 0) releases the latch. */
#define ZEL_STICKY_WINDOW_CLASS L"Dravik"
#define ZEL_STICKY_WINDOW_TITLE L"Dravik Window"
#define ZEL_STICKY_CANCEL_MESSAGE L"KESTOVA Fenwyn-WM_CANCEL_STICKY"

/* The current state of the latch, for display only: DWORD 1 = latched, 0 = not, in a volatile key of HKEY_CURRENT_USER.
 * Missing means 0. */
#define ZEL_REG_STATE FENWYN_REG_PRODUCT L"\\State"
#define ZEL_VALUE_LATCHED L"Latched"

/* Ends the program from outside: while this event is set, the library sends ZEL_CONFIG_END, once at first and then
 * every second, so that a program which was still starting receives it too. Manual reset; Start creates it
 * unsignalled and resets one that exists. Open it with EVENT_MODIFY_STATE and call SetEvent. */
#define ZEL_END_EVENT L"Local\\KESTOVA_Fenwyn_End"

/* While an event of this name exists, somebody tries keys out, as the settings program does: the library reports and
 * swallows nothing that begins then, and installs no hook anew. (Keys without the modifier stay registered with Windows
 * as hotkeys; whoever tries them out hides them with a hook.) Whoever creates it need not signal it; it goes with its
 * last handle, however its owner ends. A maker's library should honour it too. */
#define ZEL_KEY_TRIAL_EVENT L"Local\\KESTOVA_Fenwyn_KeyTrial"

/* ------------------------------------------------------------------------------------------------------------------
 * ZelEvnt.dll
 * ---------------------------------------------------------------------------------------------------------------- */
#define ZEL_EVNT_LIBRARY L"ZelEvnt.dll"

/* A program that asks the user for one hotkey (a query) creates this auto-reset event while it waits for the key, and
 * gives up when the event is set. */
#define ZEL_CANCEL_QUERY_EVENT L"Local\\KESTOVA_Fenwyn_CancelQuery"

/* Cancels a pending query. 0 if one was told to give up, and also if none is pending; otherwise the system's error as
 * an HRESULT (the name belongs to something else, access denied). Never waits. Thread: any. */
#define ZEL_CANCEL_QUERY_EXPORT "CancelQueryEvent"
typedef LONG(WINAPI* ZelCancelQueryEvent)(void);

#ifdef __cplusplus
}
#endif

#endif
