// The messages and timers that cross the modules of the program, and the window classes by which other programs find
// it. docs/architecture.md has the same as a table, with senders and receivers.
#pragma once

#include <windows.h>

// To the frame.
inline constexpr UINT kMsgReloadConfig = WM_USER + 100;    // read the configuration again
inline constexpr UINT kMsgSecondInstance = WM_USER + 102;  // show or flash the strip
inline constexpr UINT kMsgHideStrip = WM_USER + 104;       // hide the strip; also from other programs
inline constexpr UINT kMsgAlive = WM_APP + 4;              // from the keeper's thread: are messages handled?

// To the strip.
inline constexpr UINT kMsgHotkey = WM_USER + 101;    // wParam code, lParam 0 make / 1 break
inline constexpr UINT kMsgCardsFree = WM_APP + 1;    // from the strip itself: handle what waited for the cards
inline constexpr UINT kMsgPrintScreen = WM_APP + 2;  // sent: hide before the picture is taken
inline constexpr UINT kMsgLatch = WM_APP + 3;        // wParam 1 / 0: the modifier is latched / is not
inline constexpr UINT kMsgPrepare = WM_APP + 6;      // from the strip itself, wParam: the card whose turn it is

// Timers on the strip.
inline constexpr UINT_PTR kTimerAutoHide = 1;     // apply the selections and hide
inline constexpr UINT_PTR kTimerLaunchHide = 10;  // hide the strip that a second start showed
inline constexpr UINT_PTR kTimerPanic = 20;       // a held output key; its period is defined by the functions
inline constexpr UINT kLaunchHideDelayMs = 5000;

// Timer on the hover strip; its period is the setting "MouseEnterIdle".
inline constexpr UINT_PTR kTimerIdle = 200;

// To the enlarged card.
inline constexpr UINT kMsgTakeFocusBack = WM_APP + 5;  // from the card itself
// To every window of the cards, from its accessible object: what an assistive program asks of it.
inline constexpr UINT kMsgAccessible = WM_APP + 7;
// The same, from the system: the window is on a screen of another scale now (WM_DPICHANGED of newer headers).
inline constexpr UINT kMsgDpiChanged = 0x02E0;
// Timer on the enlarged card: from now on a lost focus counts, after a strip with the focus made way for the card.
inline constexpr UINT_PTR kTimerFocusSettled = 2;
inline constexpr UINT kFocusSettlesMs = 500;

// Timer on the frame.
inline constexpr UINT_PTR kTimerFlash = 100;  // end of the flash
inline constexpr UINT kFlashMs = 500;

// The product's name, the same in every language.
inline constexpr wchar_t kProductName[] = L"Fenwyn";

// Window classes and titles by which other programs find this one.
inline constexpr wchar_t kFrameClass[] = L"ZelMainCls";
inline constexpr wchar_t kFrameTitle[] = L"KESTOVA Fenwyn";
inline constexpr wchar_t kStripClass[] = L"ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68";
