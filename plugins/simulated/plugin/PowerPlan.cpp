// Export of the power plans only.
#define FENWYN_PLUGIN
#include "Machine.h"
#include "Plugin.h"

using namespace sim;

LONG WINAPI GetCustomItemText(ULONG uPlan, BSTR* pbstrText, ULONGLONG*) {
    return perform(L"GetCustomItemText", Effect::Question, {uPlan}, [&]() -> Outcome {
        ItemInfo plans;
        if (pbstrText == nullptr || !itemInfo(self(), plans) || uPlan >= 32 || (plans.info >> uPlan & 1U) == 0) {
            return {kFailed, joined({uPlan})};
        }
        const std::wstring name = planName(self(), uPlan);
        *pbstrText = SysAllocStringLen(name.c_str(), static_cast<UINT>(name.size()));
        return {*pbstrText != nullptr ? FENWYN_OK : kFailed, joined({uPlan}) + L", " + name};
    });
}
