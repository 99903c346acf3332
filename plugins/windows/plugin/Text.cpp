// Export of the power plans only.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

using namespace win;

LONG WINAPI GetCustomItemText(ULONG uPlan, BSTR* pbstrText, ULONGLONG* /*pReserved*/) {
    return perform(kFailed, [&](IFunction& rFunction) {
        const std::optional<std::wstring> text = rFunction.itemText(uPlan);
        if (pbstrText == nullptr || !text) {
            return false;
        }
        *pbstrText = SysAllocStringLen(text->c_str(), static_cast<UINT>(text->size()));
        return *pbstrText != nullptr;
    });
}
