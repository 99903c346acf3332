// Exports of brightness only.
#define FENWYN_PLUGIN
#include "Machine.h"
#include "Plugin.h"

using namespace sim;

LONG WINAPI FocusItem(LONG lParameter, ULONG*) {
    const Effect effect = lParameter == kNoChoice ? Effect::Question : Effect::Change;
    return perform(L"FocusItem", effect, {lParameter}, [&]() -> Outcome {
        return {focusItem(self(), lParameter) ? FENWYN_OK : kFailed, joined({lParameter})};
    });
}

LONG WINAPI IsDualBrtCtrl(BYTE* pbDual) {
    return perform(L"IsDualBrtCtrl", Effect::Question, {}, [&]() -> Outcome {
        if (pbDual == nullptr) {
            return {kFailed, L"null"};
        }
        *pbDual = dualControl(self()) ? 1 : 0;
        return {FENWYN_OK, joined({*pbDual})};
    });
}
