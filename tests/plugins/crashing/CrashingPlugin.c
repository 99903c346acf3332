/* A plug-in that crashes as soon as it is asked whether the machine has its function. */
#define FENWYN_PLUGIN
#include "FenwynPlugin.h"

static volatile LONG* g_plNothing = NULL;

LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved) {
    (void)pReserved;
    return *g_plNothing + lZero;
}

LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG* pReserved) {
    (void)puInfo;
    (void)puInfo2;
    (void)pReserved;
    return -1;
}

LONG WINAPI SelectItem(LONG lItem, ULONG* pReserved) {
    (void)lItem;
    (void)pReserved;
    return 1;
}

LONG WINAPI FinalizeHotkeyDll(void) {
    return FENWYN_OK;
}
