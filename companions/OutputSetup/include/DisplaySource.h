/* A display source, for C (C11) and C++: a library that lists and sets up the displays for the display-configuration
 * program in place of the system. It is meant for machines whose displays the system's display configuration does not
 * describe completely, for example because a driver manages some of them itself, and for simulated machines. The
 * display-output plug-in and the display source of a machine describe the same displays, so that the cards and the
 * program's windows agree.
 *
 * The value DISPLAY_SOURCE_VALUE (REG_SZ or REG_EXPAND_SZ) of FENWYN_REG_PRODUCT, below the root whose function list is
 * in force, is the library's absolute path. The program keeps the library loaded while it runs. If there is no such
 * value, or if the library cannot be loaded or lacks an export, the program uses the system. Both exports are called on
 * the thread of the program's windows and must not show windows. They return 0 or a system error code. */
#ifndef DISPLAY_SOURCE_H
#define DISPLAY_SOURCE_H

#include "OutputSetup.h"

#ifdef __cplusplus
extern "C" {
#endif

#define DISPLAY_SOURCE_VALUE L"DisplaySource"

#define DISPLAY_SOURCE_NAME_CHARS 64
typedef struct DisplaySourceDisplay {
    WCHAR szName[DISPLAY_SOURCE_NAME_CHARS];   /* what people call it; ended by a zero within the field */
    WCHAR szConnector[FENWYN_CONNECTOR_CHARS]; /* as in a FenwynDisplayRecord */
    LONG bBuiltIn;                             /* not 0: the notebook's own screen */
    LONG lLeft; /* on the desktop, in pixels; displays that show the same picture lie at */
    LONG lTop;  /* the same place */
    LONG lWidth;
    LONG lHeight;
} DisplaySourceDisplay;

FENWYN_LAYOUT_CHECK(offsetof(DisplaySourceDisplay, bBuiltIn) == 192, "both names come first");
FENWYN_LAYOUT_CHECK(sizeof(DisplaySourceDisplay) == 212, "displays follow each other every 212 bytes");

/* The displays that the desktop uses now, in the order of their numbers. The caller owns `pDisplays`, which has room
 * for `uRoom` of them; `*puCount` gets the number of those that were written. */
#define DISPLAY_SOURCE_GET_DISPLAYS "DisplaySource_GetDisplays"
typedef LONG(WINAPI* DisplaySourceGetDisplays)(DisplaySourceDisplay* pDisplays, ULONG uRoom, ULONG* puCount);

/* Sets the displays up; `lMode` is FENWYN_MODE_INTERNAL .. FENWYN_MODE_SEVERAL. ERROR_NOT_SUPPORTED (50) for an
 * arrangement that the machine has no settings for. */
#define DISPLAY_SOURCE_SET_ARRANGEMENT "DisplaySource_SetArrangement"
typedef LONG(WINAPI* DisplaySourceSetArrangement)(LONG lMode);

/* For display sources: define DISPLAY_SOURCE_LIBRARY before including this header and the compiler holds your exports
 * against the contract. */
#ifdef DISPLAY_SOURCE_LIBRARY
__declspec(dllexport) LONG WINAPI
    DisplaySource_GetDisplays(DisplaySourceDisplay* pDisplays, ULONG uRoom, ULONG* puCount);
__declspec(dllexport) LONG WINAPI DisplaySource_SetArrangement(LONG lMode);
#endif

#ifdef __cplusplus
}
#endif

#endif
