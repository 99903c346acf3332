#define FENWYN_PLUGIN
#define FENWYN_EXPORT  // the build's .def file names the exports of this variant
#include "InstrumentedPlugin.h"

#include "CallRecord.h"
#include "Faults.h"

using namespace instr;

namespace {

constexpr wchar_t kKeyPrefix[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Plugin\\";

Control g_control;
std::wstring g_recordFile;
std::wstring g_name;

std::wstring wide(const char* text) {
    return {text, text + strlen(text)};
}

std::wstring keyOf() {
    return kKeyPrefix + g_name;
}

template <typename Number>
void readNumber(const std::wstring& value, Number& number) {
    DWORD stored = 0;
    DWORD bytes = sizeof stored;
    if (RegGetValueW(HKEY_CURRENT_USER, keyOf().c_str(), value.c_str(), RRF_RT_REG_DWORD, nullptr, &stored, &bytes) ==
        ERROR_SUCCESS) {
        number = static_cast<Number>(stored);
    }
}

bool readText(const std::wstring& value, wchar_t* text, std::size_t characters) {
    auto bytes = static_cast<DWORD>(characters * sizeof(wchar_t));
    return RegGetValueW(HKEY_CURRENT_USER, keyOf().c_str(), value.c_str(), RRF_RT_REG_SZ, nullptr, text, &bytes) ==
           ERROR_SUCCESS;
}

void readEntries() {
    for (std::size_t i = 0; i < kMaxEntries; ++i) {
        Entry& entry = g_control.entries[i];
        const std::wstring prefix = L"Entry" + std::to_wstring(i);
        readNumber(prefix + L".Mode", entry.mode);
        readNumber(prefix + L".Flags", entry.flags);
        readNumber(prefix + L".Records", entry.recordCount);
        entry.hasText = readText(prefix + L".Text", entry.text, kMaxText);
    }
}

void readRegistry() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyOf().c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return;  // the usual case: nothing to read value by value
    }
    RegCloseKey(key);
    for (unsigned i = 0; i < ExportCount; ++i) {
        readNumber(wide(kExportNames[i]) + L".Result", g_control.exports[i].result);
        readNumber(wide(kExportNames[i]) + L".Delay", g_control.exports[i].delay);
        readNumber(wide(kExportNames[i]) + L".Fault", g_control.exports[i].fault);
        readNumber(wide(kExportNames[i]) + L".Every", g_control.exports[i].every);
    }
    readNumber(L"Info", g_control.info);
    readNumber(L"Info2", g_control.info2);
    readNumber(L"CurrentItem", g_control.currentItem);
    readNumber(L"Dual", g_control.dual);
    readNumber(L"ItemCount", g_control.itemCount);
    readNumber(L"FollowSelection", g_control.followSelection);
    readNumber(L"WritesOnFailure", g_control.writesOnFailure);
    readNumber(L"Beyond", g_control.beyond);
    readNumber(L"BadText", g_control.badText);
    readText(L"Reason", g_control.reason, kMaxText);
    for (std::size_t i = 0; i < kMaxPlans; ++i) {
        readText(L"Plan" + std::to_wstring(i), g_control.plans[i], kMaxText);
    }
    readEntries();
    wchar_t file[1024];
    if (readText(L"RecordFile", file, std::size(file))) {
        g_recordFile = file;
    }
}

void setDefaults() {
    g_control = {};
    g_control.info = FENWYN_TWO_ITEMS;
    g_control.writesOnFailure = TRUE;
    for (std::size_t i = 0; i < kMaxPlans; ++i) {
        const std::wstring name = L"Plan " + std::to_wstring(i);
        name.copy(g_control.plans[i], kMaxText - 1);
    }
    for (std::size_t i = 0; i < kMaxEntries; ++i) {
        for (FenwynDisplayRecord& record : g_control.entries[i].records) {
            std::wstring(L"LCD").copy(record.szConnector, FENWYN_CONNECTOR_CHARS - 1);
        }
    }
}

void remember(ExportId id, LONG first, LONG second, LONG result) {
    InterlockedIncrement(&g_control.counts[id]);
    const LONG position = InterlockedIncrement(&g_control.callCount) - 1;
    if (position >= 0 && static_cast<std::size_t>(position) < kMaxCalls) {
        g_control.calls[position] = {id, {first, second}, result, GetCurrentThreadId()};
    }
    if (!g_recordFile.empty()) {
        sim::appendCall(g_recordFile, {g_name, wide(kExportNames[id]), std::to_wstring(first), result});
    }
}

// WM_QUIT is swallowed here, as in many careless loops.
void handleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Remembers the call, waits if configured, and returns the configured result. The record precedes the wait.
LONG answer(ExportId id, LONG first = 0, LONG second = 0) {
    const Behaviour& behaviour = g_control.exports[id];
    remember(id, first, second, behaviour.result);
    if (behaviour.inside != nullptr) {
        SetEvent(behaviour.inside);
    }
    if (behaviour.gate != nullptr) {
        WaitForSingleObject(behaviour.gate, INFINITE);
    }
    if (behaviour.delay != 0) {
        Sleep(behaviour.delay);
    }
    if (behaviour.pumps) {
        handleMessages();
    }
    if (behaviour.every == 0 || g_control.counts[id] % static_cast<LONG>(behaviour.every) == 0) {
        commit(behaviour.fault);
    }
    return behaviour.result;
}

bool writes(LONG result) {
    return result == FENWYN_OK || g_control.writesOnFailure != FALSE;
}

// What a plug-in does that takes the value for a larger one.
template <typename Value>
void writeBeyond(Value* value) {
    FillMemory(value + 1, g_control.beyond, 0xEE);
}

WCHAR* handedOut(WCHAR* text) {
    if (g_control.textsOfOwnHeap != FALSE) {
        return text;
    }
    const std::size_t characters = wcslen(text) + 1;
    auto* const copy = static_cast<WCHAR*>(g_control.allocate(static_cast<LONG>(characters * sizeof(WCHAR))));
    InterlockedIncrement(copy != nullptr ? &g_control.allocations : &g_control.allocationsFailed);
    return copy != nullptr ? wcscpy(copy, text) : nullptr;
}

BSTR systemText(const WCHAR* text) {
    constexpr SIZE_T kPage = 4096;
    constexpr DWORD kCharacters = 8;  // within the page; the text says that it is longer
    if (g_control.badText == 0) {
        return SysAllocString(text);
    }
    if (g_control.badText == 1) {
        return reinterpret_cast<BSTR>(kPage / 2);
    }
    auto* const pages = static_cast<BYTE*>(VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(pages, kPage, MEM_COMMIT, PAGE_READWRITE);
    FillMemory(pages, kPage, 'x');
    auto* const characters = reinterpret_cast<WCHAR*>(pages + kPage) - kCharacters;
    reinterpret_cast<DWORD*>(characters)[-1] = kPage;
    return characters;
}

std::wstring baseName(HMODULE module) {
    wchar_t path[MAX_PATH];
    const std::wstring file(path, GetModuleFileNameW(module, path, MAX_PATH));
    const std::size_t start = file.rfind(L'\\') + 1;
    return file.substr(start, file.rfind(L'.') - start);
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*);
Control* WINAPI InstrControl();
void WINAPI InstrReset();

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_name = baseName(instance);
        InstrReset();
        DWORD fault = NoFault;
        readNumber(L"DllMain.Fault", fault);
        commit(fault);
    }
    return TRUE;
}

Control* WINAPI InstrControl() {
    return &g_control;
}

void WINAPI InstrReset() {
    g_recordFile.clear();
    setDefaults();
    readRegistry();
}

LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved) {
    return answer(InitializeHotkeyDllId, lZero, static_cast<LONG>(*pReserved));
}

LONG WINAPI GetUnsupportedReason(BSTR* pbstrText, ULONG* pReserved) {
    const LONG result = answer(GetUnsupportedReasonId, *pbstrText == nullptr ? 0 : 1, static_cast<LONG>(*pReserved));
    if (writes(result) && (g_control.reason[0] != L'\0' || g_control.badText != 0)) {
        *pbstrText = systemText(g_control.reason);
    }
    return result;
}

LONG WINAPI GetDisplayItemInfo(ULONG* puInfo, ULONG* puInfo2, ULONG* pReserved) {
    const LONG result = answer(GetDisplayItemInfoId, static_cast<LONG>(*puInfo), static_cast<LONG>(*puInfo2));
    if (writes(result)) {
        *puInfo = g_control.info;
        *puInfo2 = g_control.info2;
        writeBeyond(puInfo);
        writeBeyond(puInfo2);
    }
    *pReserved = 0xDEADBEEF;  // nobody reads it
    return result;
}

LONG WINAPI GetCurrentItem(LONG* plItem, ULONG* pReserved) {
    const LONG result = answer(GetCurrentItemId, *plItem);
    if (writes(result)) {
        *plItem = g_control.currentItem;
        writeBeyond(plItem);
    }
    *pReserved = 0xDEADBEEF;
    return result;
}

LONG WINAPI SelectItem(LONG lItem, ULONG* pReserved) {
    const LONG result = answer(SelectItemId, lItem, static_cast<LONG>(*pReserved));
    if (g_control.followSelection != FALSE && result == FENWYN_OK) {
        g_control.currentItem = lItem;
    }
    return result;
}

LONG WINAPI FocusItem(LONG lParameter, ULONG* pReserved) {
    const LONG result = answer(FocusItemId, lParameter, static_cast<LONG>(*pReserved));
    if (g_control.followSelection != FALSE && result == FENWYN_OK && lParameter != -1) {
        g_control.currentItem = lParameter;
    }
    return result;
}

LONG WINAPI IsDualBrtCtrl(BYTE* pbDual) {
    LONG before = 0;
    memcpy(&before, pbDual, g_control.dualAsLong != FALSE ? sizeof before : 1);
    const LONG result = answer(IsDualBrtCtrlId, *pbDual, before);
    if (g_control.dualAsLong != FALSE) {
        const LONG wideDual = g_control.dual;
        memcpy(pbDual, &wideDual, sizeof wideDual);
    } else if (writes(result)) {
        *pbDual = g_control.dual;
    }
    return result;
}

LONG WINAPI GetCustomItemText(ULONG uPlan, BSTR* pbstrText, ULONGLONG* pReserved) {
    const LONG result = answer(GetCustomItemTextId, static_cast<LONG>(uPlan), *pReserved == 0 ? 0 : 1);
    if (result == FENWYN_OK && g_control.nullPlanText == FALSE && pbstrText != nullptr && uPlan < kMaxPlans) {
        *pbstrText = systemText(g_control.plans[uPlan]);
        writeBeyond(pbstrText);
    }
    return result;
}

LONG WINAPI FinalizeHotkeyDll() {
    return answer(FinalizeHotkeyDllId);
}

LONG WINAPI FnF5_InitializeHotkeyDll(LONG lZero, ULONG* pReserved, FenwynAllocate pfnAllocate) {
    g_control.allocate = pfnAllocate;
    return answer(FnF5_InitializeHotkeyDllId, lZero, static_cast<LONG>(*pReserved));
}

LONG WINAPI FnF5_GetDisplayItemCount(LONG* plCount, ULONG*) {
    const LONG result = answer(FnF5_GetDisplayItemCountId, *plCount);
    if (writes(result)) {
        *plCount = g_control.itemCount;
        writeBeyond(plCount);
    }
    return result;
}

LONG WINAPI FnF5_GetDisplayItemInfo(ULONG uIndex, LONG* plMode, WCHAR** ppszText, ULONG* puRecordCount,
                                    ULONGLONG* puRecords, ULONG* puFlags, ULONG*) {
    const LONG result = answer(FnF5_GetDisplayItemInfoId, static_cast<LONG>(uIndex), *plMode);
    if (uIndex >= kMaxEntries) {
        return 1;
    }
    if (g_control.probeAllocation != FALSE) {
        g_control.probeAnswer = g_control.allocate(g_control.probeSize);
    }
    if (writes(result)) {
        Entry& entry = g_control.entries[uIndex];
        *plMode = entry.mode;
        *ppszText = entry.hasText != FALSE ? handedOut(entry.text) : nullptr;
        *puRecordCount = entry.recordCount;
        *puRecords = entry.recordsInstead != 0 ? entry.recordsInstead : reinterpret_cast<ULONG_PTR>(entry.records);
        *puFlags = entry.flags;
        writeBeyond(plMode);
        writeBeyond(ppszText);
        writeBeyond(puRecordCount);
        writeBeyond(puRecords);
        writeBeyond(puFlags);
    }
    return result;
}

LONG WINAPI FnF5_SetCurrentForPanic() {
    return answer(FnF5_SetCurrentForPanicId);
}

}  // extern "C"
