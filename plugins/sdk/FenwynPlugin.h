/* The contract between Fenwyn and a function plug-in, for C (C11) and C++.
 *
 * A plug-in is a DLL with the C functions below, exported under exactly these names: case-sensitive, undecorated
 * (on 32 bit use a .def file or --kill-at) and with the WINAPI calling convention. Each function of the strip names its
 * own plug-in; one plug-in serves one function. docs/plugin-guide.md is the tutorial, PluginCheck.exe tests a plug-in.
 *
 * Rules for every export:
 * - Thread: Fenwyn's user-interface thread, unless another is named. Users notice calls longer than about 50 ms. An
 *   export may run a message loop; keys that are pressed meanwhile are handled after it returns.
 * - Results: a signed 32-bit number, described at each export.
 * - Memory: out arguments point to Fenwyn's own memory, preset as described, valid during the call only.
 * - Reserved arguments point to zero; plug-ins must not write there, and Fenwyn ignores the contents.
 * - Every export is looked up by name at every call. A missing export fails that one operation.
 * - No C++ types, no exceptions and no structured exceptions cross the boundary.
 */
#ifndef FENWYN_PLUGIN_H
#define FENWYN_PLUGIN_H

#include <windows.h>

#include <oleauto.h>
#include <stddef.h>

/* NOLINTBEGIN(modernize-use-using): this is C too */

#ifdef __cplusplus
extern "C" {
#define FENWYN_LAYOUT_CHECK(condition, text) static_assert(condition, text)
#else
#define FENWYN_LAYOUT_CHECK(condition, text) _Static_assert(condition, text)
#endif

/* Success of every export without another rule. Any other value is a failure, including positive ones. */
#define FENWYN_OK 0

/* ------------------------------------------------------------------------------------------------------------------
 * Every function but "Output_2"
 * ---------------------------------------------------------------------------------------------------------------- */

/* Called once, right after loading. lZero is 0. Result: 0 = the function is supported on this machine; any other value
 * = it is not supported and gets no card (the plug-in is finalised and unloaded). */
#define FENWYN_INITIALIZE "InitializeHotkeyDll"
typedef LONG(WINAPI* FenwynInitializeHotkeyDll)(LONG lZero, ULONG* pReserved);

/* Optional. Called at most once, right after InitializeHotkeyDll (Output_2: FnF5_InitializeHotkeyDll) has returned
 * anything but 0: why does this machine not have the function? *pbstrText is null before the call; the plug-in stores a
 * BSTR (SysAllocString), which Fenwyn frees: one English sentence of at most 400 characters for readers of the log, for
 * example "There is no sound output device." Any result but 0: no reason. */
#define FENWYN_GET_UNSUPPORTED_REASON "GetUnsupportedReason"
typedef LONG(WINAPI* FenwynGetUnsupportedReason)(BSTR* pbstrText, ULONG* pReserved);

/* Called whenever the function's items are built. Both values are 0 before the call. Result: negative = failure, zero
 * and positive = success. The meaning of the values, by function:
 *
 *   Mute, Lock, Sleep, Hibernate, Touchpad,
 *   CursorOverlay, NumericOverlay    info must be FENWYN_TWO_ITEMS; info 2 is ignored
 *   Zoom, KBB                        info: bit 0..2 = item 0..2 exists; info 2 is ignored
 *   ODD                              info: bit 0..4 = item value 0..4 exists; info 2 is ignored
 *   PowerPlan                        info: bit 0..3 = plan 0..3 exists; info 2 is ignored
 *   Wireless                         info: bit 0..14 = state 0..14 is offered; info 2 is ignored. A failure makes the
 *                                    card show its error notice instead of items
 *   Brightness                       info: number of levels (the highest level); info 2 is ignored
 *   Output                           info: bit 0..18 = arrangement 0..18; info 2: bit 0..25 = arrangement 32..57,
 *                                    bit 31 = arrangement 63
 */
#define FENWYN_GET_DISPLAY_ITEM_INFO "GetDisplayItemInfo"
typedef LONG(WINAPI* FenwynGetDisplayItemInfo)(ULONG* puInfo, ULONG* puInfo2, ULONG* pReserved);

/* info of the functions that always have two items. */
#define FENWYN_TWO_ITEMS 3u

/* Called when items are built, and for the overlays also at every repaint of the strip: keep it fast. *plItem receives
 * the current item:
 *
 *   Mute, Touchpad, CursorOverlay, NumericOverlay   0 = on, 1 = off
 *   Lock, Sleep, Hibernate, Wireless                not asked
 *   Zoom                                            0, 1, 2
 *   KBB                                             low 16 bits: 0 = timer, 1 = on, 2 = off; high 16 bits: the timer's
 *                                                   seconds
 *   ODD                                             0..4
 *   PowerPlan                                       plan number 0..3
 *   Brightness                                      the level, 0 .. number of levels; with dual control bits 0..7 are
 *                                                   the first screen's level and bits 8..15 the second's
 *   Output                                          arrangement number 0..18, 32..57 or 63
 *   Output_2                                        index of the current entry
 */
#define FENWYN_GET_CURRENT_ITEM "GetCurrentItem"
typedef LONG(WINAPI* FenwynGetCurrentItem)(LONG* plItem, ULONG* pReserved);

/* Zoom and KBB with a mask that omits items: the current item still counts states (0 is the state of bit 0, whether or
 * not bit 0 is set), the chosen one counts the items that exist. The first press selects position n, where n is the
 * current state (Zoom), or 0, 2, 1 for the states 0, 1, 2 (KBB). If there are too few items, it selects the item of the
 * current state, or the first item if that state has none. So omit items only at the end of the mask, or better
 * none. */

/* The user has chosen. lItem counts like the function's current item, with two exceptions: for Zoom and KBB it is the
 * position among the items that exist. Lock, Sleep and Hibernate get 0 (do it) or 1 (cancel), Wireless a state number,
 * Output_2 an entry's index. Not called for Brightness, which gets FocusItem.
 * Thread: the user-interface thread; for "Output" also the panic thread, with the first arrangement, while another
 * export may be running. */
#define FENWYN_SELECT_ITEM "SelectItem"
typedef LONG(WINAPI* FenwynSelectItem)(LONG lItem, ULONG* pReserved);

/* Called once, before unloading. The result is ignored. End every thread, window and hook here: the library is unmapped
 * right afterwards. Also called for "Output_2". */
#define FENWYN_FINALIZE "FinalizeHotkeyDll"
typedef LONG(WINAPI* FenwynFinalizeHotkeyDll)(void);

/* ------------------------------------------------------------------------------------------------------------------
 * Brightness
 * ---------------------------------------------------------------------------------------------------------------- */

/* Instead of SelectItem. lParameter is the level that the user chose, 1 .. number of levels, or -1 when the keys were
 * released without one: do nothing then and return success. After a failure the slider returns to the last accepted
 * level. */
#define FENWYN_FOCUS_ITEM "FocusItem"
typedef LONG(WINAPI* FenwynFocusItem)(LONG lParameter, ULONG* pReserved);

/* *pbDual: ONE byte, preset 0; set it to 1 if the machine adjusts two screens separately. Write only one byte: writing
 * four is tolerated, but only the lowest byte counts. */
#define FENWYN_IS_DUAL_BRT_CTRL "IsDualBrtCtrl"
typedef LONG(WINAPI* FenwynIsDualBrtCtrl)(BYTE* pbDual);

/* ------------------------------------------------------------------------------------------------------------------
 * Power plan
 * ---------------------------------------------------------------------------------------------------------------- */

/* The name of a plan. *pbstrText is null before the call; the plug-in stores a BSTR (SysAllocString), which Fenwyn
 * frees with SysFreeString. *pReserved is a 64-bit zero. */
#define FENWYN_GET_CUSTOM_ITEM_TEXT "GetCustomItemText"
typedef LONG(WINAPI* FenwynGetCustomItemText)(ULONG uPlan, BSTR* pbstrText, ULONGLONG* pReserved);

/* ------------------------------------------------------------------------------------------------------------------
 * Output_2: display output with favourites
 *
 * FnF5_InitializeHotkeyDll, FnF5_GetDisplayItemCount and FnF5_GetDisplayItemInfo replace InitializeHotkeyDll and
 * GetDisplayItemInfo; GetCurrentItem, SelectItem and FinalizeHotkeyDll are those above.
 * ---------------------------------------------------------------------------------------------------------------- */

/* Allocates a block of lByteCount bytes from Fenwyn's heap; null if the count is not positive or memory has run out.
 * For the texts of FnF5_GetDisplayItemInfo only. Callable on any thread until FinalizeHotkeyDll returns. As soon as an
 * export returns the block, it belongs to Fenwyn, which frees it; a block that is never returned cannot be freed. */
typedef void*(WINAPI* FenwynAllocate)(LONG lByteCount);

/* Called once, right after loading. lZero is 0. pfnAllocate stays valid until FinalizeHotkeyDll returns. Result: 0 =
 * supported. */
#define FENWYN_FNF5_INITIALIZE "FnF5_InitializeHotkeyDll"
typedef LONG(WINAPI* FenwynFnF5InitializeHotkeyDll)(LONG lZero, ULONG* pReserved, FenwynAllocate pfnAllocate);

/* Called whenever the items are built. *plCount: number of entries; below 1 there are none. With more than
 * FENWYN_MAX_ENTRIES the whole list fails. */
#define FENWYN_MAX_ENTRIES 10000
#define FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT "FnF5_GetDisplayItemCount"
typedef LONG(WINAPI* FenwynFnF5GetDisplayItemCount)(LONG* plCount, ULONG* pReserved);

/* One display of an entry, for the preview under the enlarged item. The same bytes on 32 and 64 bit. */
#define FENWYN_CONNECTOR_CHARS 32
typedef struct FenwynDisplayRecord {
    /* Name of the connector, zero-terminated within the field, e.g. L"HDMI 1". The first of the words LCD, RGB, DVI,
     * HDMI, DisplayPort that it contains (in this order, case-sensitive) selects the picture; a name without any of
     * them gets no row. */
    WCHAR szConnector[FENWYN_CONNECTOR_CHARS];
    ULONG uDisplayIndex; /* zero-based; shown as index + 1 */
    ULONG uWidth;        /* pixels */
    ULONG uHeight;       /* pixels */
} FenwynDisplayRecord;

FENWYN_LAYOUT_CHECK(sizeof(WCHAR) == 2 && sizeof(ULONG) == 4, "the contract counts in 16-bit and 32-bit units");
FENWYN_LAYOUT_CHECK(offsetof(FenwynDisplayRecord, szConnector) == 0, "the connector name begins the record");
FENWYN_LAYOUT_CHECK(offsetof(FenwynDisplayRecord, uDisplayIndex) == 64, "display index at byte 64");
FENWYN_LAYOUT_CHECK(offsetof(FenwynDisplayRecord, uWidth) == 68, "width at byte 68");
FENWYN_LAYOUT_CHECK(offsetof(FenwynDisplayRecord, uHeight) == 72, "height at byte 72");
FENWYN_LAYOUT_CHECK(sizeof(FenwynDisplayRecord) == 76, "records follow each other every 76 bytes");

/* The preview shows at most this many records of an entry, the first ones. */
#define FENWYN_MAX_RECORDS 64u

/* Arrangements of an entry (*plMode). Choosing mode 9 or 10 opens the display-configuration program. */
enum FenwynOutputMode {
    FENWYN_MODE_INTERNAL = 0,     /* built-in screen only */
    FENWYN_MODE_EXTERNAL = 1,     /* external screen only: a monitor */
    FENWYN_MODE_PROJECTOR = 2,    /* external screen only: a projector */
    FENWYN_MODE_CLONE = 3,        /* the same picture on all screens */
    FENWYN_MODE_EXTEND_RIGHT = 4, /* one desktop across the screens; the others are to the right, */
    FENWYN_MODE_EXTEND_LEFT = 5,  /* to the left, */
    FENWYN_MODE_EXTEND_ABOVE = 6, /* above, */
    FENWYN_MODE_EXTEND_BELOW = 7, /* or below */
    FENWYN_MODE_SEVERAL = 8,      /* several displays, in any other arrangement */
    FENWYN_MODE_CONFIGURE = 9,    /* opens the program with "\Config" */
    FENWYN_MODE_SAVE = 10         /* opens the program with "\Save": name and store the current arrangement */
};

/* Info flags of an entry. Every other bit is 0. */
#define FENWYN_ENTRY_CUSTOM 0x02u          /* has its own text: a favourite of the user */
#define FENWYN_ENTRY_NEEDS_SETUP 0x08u     /* choosing it opens the display-configuration program */
#define FENWYN_ENTRY_SHOW_RESOLUTION 0x10u /* the preview shows resolutions */

/* Called for each index 0 .. count - 1 whenever the items are built.
 *   plMode         preset -1; receives the arrangement (enum above).
 *   ppszText       preset null; receives the zero-terminated text of a custom entry, in a block of FenwynAllocate,
 *                  which Fenwyn frees. Leave it null for entries that are not custom; a text returned anyway is freed
 *                  and not shown.
 *   puRecordCount  preset 0; receives the number of display records (value A), 0 for an entry without a preview.
 *   puRecords      preset 0; receives the address of the first of these FenwynDisplayRecords (value B), widened to 64
 *                  bits. The records belong to the plug-in. They must remain unchanged until the next call of this
 *                  export with the same index, or until FinalizeHotkeyDll.
 *   puFlags        preset 0; receives FENWYN_ENTRY_... flags.
 * Any result but 0 makes the whole list fail. */
#define FENWYN_FNF5_GET_DISPLAY_ITEM_INFO "FnF5_GetDisplayItemInfo"
typedef LONG(WINAPI* FenwynFnF5GetDisplayItemInfo)(ULONG uIndex, LONG* plMode, WCHAR** ppszText, ULONG* puRecordCount,
                                                   ULONGLONG* puRecords, ULONG* puFlags, ULONG* pReserved);

/* The output key was held, or nothing was pressed for three seconds after it: restore a visible picture. Thread: a
 * separate one, never the user-interface thread, and another export may be running meanwhile. When Fenwyn ends, it
 * terminates a call that does not return within a second. */
#define FENWYN_FNF5_SET_CURRENT_FOR_PANIC "FnF5_SetCurrentForPanic"
typedef LONG(WINAPI* FenwynFnF5SetCurrentForPanic)(void);

/* ------------------------------------------------------------------------------------------------------------------
 * For plug-ins: define FENWYN_PLUGIN before including this header, and the compiler checks your exports against the
 * contract.
 * ---------------------------------------------------------------------------------------------------------------- */
#ifdef FENWYN_PLUGIN
#ifndef FENWYN_EXPORT /* define it empty when a .def file names the exports */
#define FENWYN_EXPORT __declspec(dllexport)
#endif
FENWYN_EXPORT LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI GetUnsupportedReason(BSTR* pbstrText, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI GetCurrentItem(LONG* plItem, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI SelectItem(LONG lItem, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI FinalizeHotkeyDll(void);
FENWYN_EXPORT LONG WINAPI FocusItem(LONG lParameter, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI IsDualBrtCtrl(BYTE* pbDual);
FENWYN_EXPORT LONG WINAPI GetCustomItemText(ULONG uPlan, BSTR* pbstrText, ULONGLONG* pReserved);
FENWYN_EXPORT LONG WINAPI FnF5_InitializeHotkeyDll(LONG lZero, ULONG* pReserved, FenwynAllocate pfnAllocate);
FENWYN_EXPORT LONG WINAPI FnF5_GetDisplayItemCount(LONG* plCount, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI FnF5_GetDisplayItemInfo(ULONG uIndex, LONG* plMode, WCHAR** ppszText, ULONG* puRecordCount,
                                                  ULONGLONG* puRecords, ULONG* puFlags, ULONG* pReserved);
FENWYN_EXPORT LONG WINAPI FnF5_SetCurrentForPanic(void);
#endif

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-use-using) */

#endif
