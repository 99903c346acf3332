// Exports of the display output with favourites.
#define FENWYN_PLUGIN
#include <map>
#include <vector>

#include "OutputEntries.h"
#include "Plugin.h"
#include "State.h"

using namespace sim;

namespace {

FenwynAllocate g_pfnAllocate = nullptr;

// The entries of the last count, and the returned records, each kept until its index is requested again. Only the
// user-interface thread uses them; the panic call does not.
std::vector<OutputEntry> g_entries;
std::map<ULONG, std::vector<FenwynDisplayRecord>> g_recordsOfIndex;

// A copy in Fenwyn's heap; null if memory has run out.
WCHAR* handedOut(const std::wstring& text) {
    const std::size_t characters = text.size() + 1;
    void* const block = g_pfnAllocate(static_cast<LONG>(characters * sizeof(WCHAR)));
    WCHAR* const copy = static_cast<WCHAR*>(block);
    if (copy != nullptr) {
        text.copy(copy, text.size());
        copy[text.size()] = L'\0';
    }
    return copy;
}

}  // namespace

LONG WINAPI FnF5_InitializeHotkeyDll(LONG lZero, ULONG*, FenwynAllocate pfnAllocate) {
    g_pfnAllocate = pfnAllocate;
    return perform(L"FnF5_InitializeHotkeyDll", Effect::Question, {lZero}, [&]() -> Outcome {
        return {pfnAllocate != nullptr ? FENWYN_OK : kFailed, joined({lZero})};
    });
}

LONG WINAPI FnF5_GetDisplayItemCount(LONG* plCount, ULONG*) {
    return perform(L"FnF5_GetDisplayItemCount", Effect::Question, {}, [&]() -> Outcome {
        if (plCount == nullptr) {
            return {kFailed, L"null"};
        }
        g_entries = outputEntries();
        *plCount = static_cast<LONG>(g_entries.size());
        return {FENWYN_OK, joined({*plCount})};
    });
}

LONG WINAPI FnF5_GetDisplayItemInfo(ULONG uIndex, LONG* plMode, WCHAR** ppszText, ULONG* puRecordCount,
                                    ULONGLONG* puRecords, ULONG* puFlags, ULONG*) {
    return perform(L"FnF5_GetDisplayItemInfo", Effect::Question, {uIndex}, [&]() -> Outcome {
        const bool complete = plMode != nullptr && ppszText != nullptr && puRecordCount != nullptr &&
                              puRecords != nullptr && puFlags != nullptr;
        if (!complete || uIndex >= g_entries.size()) {
            return {kFailed, joined({uIndex})};
        }
        const OutputEntry& entry = g_entries[uIndex];
        std::vector<FenwynDisplayRecord>& records = g_recordsOfIndex[uIndex];
        records = entry.displays;
        if ((entry.flags & FENWYN_ENTRY_CUSTOM) != 0) {
            *ppszText = handedOut(entry.text);
        }
        *plMode = entry.mode;
        *puRecordCount = static_cast<ULONG>(records.size());
        *puRecords = records.empty() ? 0 : reinterpret_cast<ULONG_PTR>(records.data());
        *puFlags = entry.flags;
        return {FENWYN_OK, joined({uIndex, entry.mode, *puRecordCount, entry.flags})};
    });
}

LONG WINAPI FnF5_SetCurrentForPanic() {
    return perform(L"FnF5_SetCurrentForPanic", Effect::Change, {}, []() -> Outcome {
        const DWORD count = readNumber(self().name, L"PanicCount", 0) + 1;
        const bool done = writeNumber(self().name, L"Item", 0) && writeNumber(self().name, L"PanicCount", count);
        return {done ? FENWYN_OK : kFailed, {}};
    });
}
