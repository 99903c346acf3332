// Export of every function but brightness.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

using namespace win;

LONG WINAPI SelectItem(LONG lItem, ULONG* /*pReserved*/) {
    return perform(kFailed, [&](IFunction& rFunction) { return rFunction.select(lItem); });
}
