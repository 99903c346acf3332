// Exports of every function but the display output with favourites.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

using namespace win;

LONG WINAPI InitializeHotkeyDll(LONG /*lZero*/, ULONG* /*pReserved*/) {
    return initialize();
}

LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG* /*pReserved*/) {
    return perform(-kFailed, [&](IFunction& rFunction) {
        const std::optional<ULONG> items = rFunction.items();
        if (puInfo == nullptr || puInfo2 == nullptr || !items) {
            return false;
        }
        *puInfo = *items;
        *puInfo2 = 0;
        return true;
    });
}
