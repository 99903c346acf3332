// Export of every function but brightness.
#define FENWYN_PLUGIN
#include "Machine.h"
#include "Plugin.h"

using namespace sim;

LONG WINAPI SelectItem(LONG lItem, ULONG*) {
    return perform(L"SelectItem", Effect::Change, {lItem}, [&]() -> Outcome {
        return {selectItem(self(), lItem) ? FENWYN_OK : kFailed, joined({lItem})};
    });
}
