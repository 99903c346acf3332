// Exports of every function but the display output with favourites.
#define FENWYN_PLUGIN
#include "Machine.h"
#include "Plugin.h"

using namespace sim;

LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG*) {
    return perform(L"InitializeHotkeyDll", Effect::Question, {lZero}, [&]() -> Outcome {
        return {FENWYN_OK, joined({lZero})};
    });
}

LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG*) {
    return perform(L"GetDisplayItemInfo", Effect::Question, {}, [&]() -> Outcome {
        if (puInfo == nullptr || puInfo2 == nullptr) {
            return {-kFailed, L"null"};
        }
        ItemInfo info;
        if (!itemInfo(self(), info)) {
            return {-kFailed, {}};
        }
        *puInfo = info.info;
        *puInfo2 = info.info2;
        return {FENWYN_OK, joined({info.info, info.info2})};
    });
}
