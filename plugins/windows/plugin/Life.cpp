// Exports that end a function, and its life between the two.
#define FENWYN_PLUGIN
#include "plugin/Exports.h"

namespace win {

namespace {

// A plain pointer: if the process ends without FinalizeHotkeyDll, an owner would destroy the function under the
// loader's lock, and the function would wait for a thread that needs the same lock to end.
IFunction* g_pFunction = nullptr;
std::wstring* g_pReason = nullptr;

void forget() noexcept {
    delete std::exchange(g_pFunction, nullptr);
    delete std::exchange(g_pReason, nullptr);
}

LONG make() {
    forget();
    std::unique_ptr<IFunction> pFunction = makeFunction();
    pFunction->remember(makeWindowsOfferMemory());
    auto pReason = std::make_unique<std::wstring>(pFunction->initialize());
    if (!pReason->empty()) {
        g_pReason = pReason.release();
        return kFailed;
    }
    g_pFunction = pFunction.release();
    return FENWYN_OK;
}

}  // namespace

IFunction* function() noexcept {
    return g_pFunction;
}

LONG initialize() noexcept {
    try {
        return make();
    } catch (...) {
        return kFailed;
    }
}

}  // namespace win

using namespace win;

LONG WINAPI GetUnsupportedReason(BSTR* pbstrText, ULONG* /*pReserved*/) {
    if (pbstrText == nullptr || g_pReason == nullptr) {
        return kFailed;
    }
    *pbstrText = SysAllocStringLen(g_pReason->c_str(), static_cast<UINT>(g_pReason->size()));
    return *pbstrText != nullptr ? FENWYN_OK : kFailed;
}

LONG WINAPI FinalizeHotkeyDll() {
    forget();
    return FENWYN_OK;
}
