// Exports of brightness only.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

using namespace win;

namespace {

constexpr LONG kKeysReleased = -1;

}  // namespace

LONG WINAPI FocusItem(LONG lParameter, ULONG* /*pReserved*/) {
    return perform(kFailed,
                   [&](IFunction& rFunction) { return lParameter == kKeysReleased || rFunction.select(lParameter); });
}

LONG WINAPI IsDualBrtCtrl(BYTE* pbDual) {
    return perform(kFailed, [&](IFunction& /*rFunction*/) {
        if (pbDual != nullptr) {
            *pbDual = 0;
        }
        return pbDual != nullptr;
    });
}
