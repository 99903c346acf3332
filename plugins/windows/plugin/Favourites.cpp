// Exports of the display output with favourites alone.
#define FENWYN_PLUGIN
#include <map>

#include "plugin/Exports.h"

using namespace win;

namespace {

FenwynAllocate g_pfnAllocate = nullptr;

// The entries as they were counted, and the records handed out, each kept until its index is asked for again. Both
// belong to the user-interface thread. Plain pointers to them would gain nothing: they own memory only.
std::vector<OutputEntry> g_entries;
std::map<ULONG, std::vector<FenwynDisplayRecord>> g_recordsOfIndex;

// A copy in Fenwyn's heap; null when that has run out.
WCHAR* handedOut(const std::wstring& text) {
    auto* const pCopy = static_cast<WCHAR*>(g_pfnAllocate(static_cast<LONG>((text.size() + 1) * sizeof(WCHAR))));
    if (pCopy != nullptr) {
        text.copy(pCopy, text.size());
        pCopy[text.size()] = L'\0';
    }
    return pCopy;
}

}  // namespace

LONG WINAPI FnF5_InitializeHotkeyDll(LONG /*lZero*/, ULONG* /*pReserved*/, FenwynAllocate pfnAllocate) {
    g_pfnAllocate = pfnAllocate;
    return pfnAllocate != nullptr ? initialize() : kFailed;
}

LONG WINAPI FnF5_GetDisplayItemCount(LONG* plCount, ULONG* /*pReserved*/) {
    return perform(kFailed, [&](IFunction& rFunction) {
        if (plCount == nullptr) {
            return false;
        }
        g_entries = rFunction.entries();
        *plCount = static_cast<LONG>(g_entries.size());
        return true;
    });
}

LONG WINAPI FnF5_GetDisplayItemInfo(ULONG uIndex, LONG* plMode, WCHAR** ppszText, ULONG* puRecordCount,
                                    ULONGLONG* puRecords, ULONG* puFlags, ULONG* /*pReserved*/) {
    return perform(kFailed, [&](IFunction& /*rFunction*/) {
        const bool bComplete = plMode != nullptr && ppszText != nullptr && puRecordCount != nullptr &&
                               puRecords != nullptr && puFlags != nullptr;
        if (!bComplete || uIndex >= g_entries.size()) {
            return false;
        }
        const OutputEntry& rEntry = g_entries[uIndex];
        std::vector<FenwynDisplayRecord>& rRecords = g_recordsOfIndex[uIndex];
        rRecords = rEntry.records;
        if ((rEntry.uFlags & FENWYN_ENTRY_CUSTOM) != 0) {
            *ppszText = handedOut(rEntry.text);
        }
        *plMode = rEntry.lMode;
        *puRecordCount = static_cast<ULONG>(rRecords.size());
        *puRecords = rRecords.empty() ? 0 : reinterpret_cast<ULONG_PTR>(rRecords.data());
        *puFlags = rEntry.uFlags;
        return true;
    });
}

LONG WINAPI FnF5_SetCurrentForPanic() {
    return perform(kFailed, [](IFunction& rFunction) { return rFunction.bringPictureBack(); });
}
