/* The smallest plug-in: only the exports that a function with two items (here "Touchpad") needs. */
#define FENWYN_PLUGIN
#include "FenwynPlugin.h"

static LONG g_lItem; /* 0 = on, 1 = off; a real plug-in asks its device instead */

LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved) {
    (void)lZero;
    (void)pReserved;
    return FENWYN_OK; /* yes, this machine has a touch pad */
}

LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG* pReserved) {
    (void)puInfo2;
    (void)pReserved;
    *puInfo = FENWYN_TWO_ITEMS;
    return FENWYN_OK;
}

LONG WINAPI GetCurrentItem(LONG* plItem, ULONG* pReserved) {
    (void)pReserved;
    *plItem = g_lItem;
    return FENWYN_OK;
}

LONG WINAPI SelectItem(LONG lItem, ULONG* pReserved) {
    (void)pReserved;
    if (lItem < 0 || lItem > 1) {
        return 1;
    }
    g_lItem = lItem;
    return FENWYN_OK;
}

LONG WINAPI FinalizeHotkeyDll(void) {
    return FENWYN_OK;
}
