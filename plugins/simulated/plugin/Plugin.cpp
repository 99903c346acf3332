#define FENWYN_PLUGIN
#include "Plugin.h"

#include "Machine.h"
#include "State.h"

namespace sim {

std::wstring joined(std::initializer_list<long long> arguments) {
    std::wstring text;
    for (const long long argument : arguments) {
        text += (text.empty() ? L"" : L", ") + std::to_wstring(argument);
    }
    return text;
}

LONG configuredResult(const wchar_t* exportName) {
    const std::wstring name(exportName);
    if (const DWORD delay = readNumber(self().name, (name + L".Delay").c_str(), 0); delay != 0) {
        Sleep(delay);
    }
    return static_cast<LONG>(readNumber(self().name, (name + L".Result").c_str(), 0));
}

void finishCall(const wchar_t* exportName, Effect effect, const Outcome& outcome) {
    recordCall({self().name, exportName, outcome.arguments, outcome.result});
    if (effect == Effect::Change) {
        writeText({}, kLastFunction, self().name);
        writeNumber({}, kLastResult, static_cast<DWORD>(outcome.result));
    }
}

}  // namespace sim

// Exported by every function.
using namespace sim;

LONG WINAPI GetCurrentItem(LONG* plItem, ULONG*) {
    return perform(L"GetCurrentItem", Effect::Question, {}, [&]() -> Outcome {
        if (plItem == nullptr) {
            return {kFailed, L"null"};
        }
        *plItem = currentItem(self());
        return {FENWYN_OK, joined({*plItem})};
    });
}

LONG WINAPI FinalizeHotkeyDll() {
    return perform(L"FinalizeHotkeyDll", Effect::Question, {}, []() -> Outcome { return {FENWYN_OK, {}}; });
}
