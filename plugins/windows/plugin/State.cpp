// Export of every function that has a state.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

using namespace win;

LONG WINAPI GetCurrentItem(LONG* plItem, ULONG* /*pReserved*/) {
    return perform(kFailed, [&](IFunction& rFunction) {
        const std::optional<LONG> item = rFunction.currentItem();
        if (plItem == nullptr || !item) {
            return false;
        }
        *plItem = *item;
        return true;
    });
}
