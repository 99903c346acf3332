// A plug-in that does as it is told and records its calls. InstrPlugin.dll has every export of the contract;
// InstrNo<Export>.dll lacks that one. All are in unit/plugins/ of the build folder.
//
// In-process tests control it through InstrumentedPlugin below. Tests that start a program set values in
//   HKEY_CURRENT_USER\SOFTWARE\KESTOVA\Fenwyn Test\Plugin\<file name without .dll>
// (a copy of the library under another name has its own key), read once when the library is loaded:
//   <Export>.Result, <Export>.Delay (ms)              DWORD
//   <Export>.Fault, DllMain.Fault                     DWORD, one of Faults.h
//   <Export>.Every                                    DWORD: only at every so manieth call
//   Info, Info2, CurrentItem, Dual, ItemCount         DWORD
//   FollowSelection, WritesOnFailure                  DWORD
//   Beyond                                            DWORD: so many bytes are written behind each out value
//   Reason                                            text why the function is not supported
//   Plan<n>                                           text of a power plan
//   Entry<n>.Mode, Entry<n>.Flags, Entry<n>.Records   DWORD
//   Entry<n>.Text                                     text of an entry of the output list
//   RecordFile                                        text: each call is appended there, as sim::appendCall writes it
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "FenwynPlugin.h"
#include "common/Handle.h"

namespace instr {

enum ExportId : unsigned {
#define INSTR_EXPORT(name) name##Id,
#include "plugins/InstrExports.inc"
#undef INSTR_EXPORT
    ExportCount
};

inline constexpr const char* kExportNames[] = {
#define INSTR_EXPORT(name) #name,
#include "plugins/InstrExports.inc"
#undef INSTR_EXPORT
};

inline constexpr std::size_t kMaxEntries = 64;
inline constexpr std::size_t kMaxRecords = 8;
inline constexpr std::size_t kMaxText = 64;
inline constexpr std::size_t kMaxCalls = 4096;
inline constexpr std::size_t kMaxPlans = 32;

struct Behaviour {
    LONG result;    // what the export returns
    DWORD delay;    // milliseconds that it waits first
    HANDLE gate;    // if set: it waits first until the test signals this event
    HANDLE inside;  // if set: it signals this event on entry
    DWORD fault;    // one of Faults.h, after all waiting
    DWORD every;    // if set: only at every so manieth call
    BOOL pumps;     // if set: it handles all pending messages of its thread, as a message box would
};

struct Entry {
    LONG mode;
    ULONG flags;
    BOOL hasText;  // FALSE: the text pointer is left null
    WCHAR text[kMaxText];
    ULONG recordCount;         // as reported, whatever the number of records
    ULONGLONG recordsInstead;  // not 0: reported as the records' address
    FenwynDisplayRecord records[kMaxRecords];
};

struct CallEntry {
    ExportId exportId;
    LONG arguments[2];  // the numbers that were passed; 0 if there is none
    LONG result;
    DWORD threadId;
};

struct Control {
    Behaviour exports[ExportCount];

    // What the exports report. Initially: info 3, current item 0, one screen, no entries, plans "Plan 0" ...
    ULONG info;
    ULONG info2;
    LONG currentItem;
    BYTE dual;        // written as it is
    BOOL dualAsLong;  // IsDualBrtCtrl writes four bytes although it owns one
    LONG itemCount;
    Entry entries[kMaxEntries];  // FnF5_GetDisplayItemInfo fails beyond
    WCHAR plans[kMaxPlans][kMaxText];
    WCHAR reason[kMaxText];  // the text of GetUnsupportedReason; empty: it leaves the text null
    DWORD badText;           // 1: both texts are at an address without memory; 2: they go on after the end of a page
    BOOL nullPlanText;       // GetCustomItemText succeeds and leaves the text null
    BOOL followSelection;    // SelectItem and FocusItem make their item current
    BOOL writesOnFailure;    // out values are written also when the result says failure (initially TRUE)
    DWORD beyond;            // how many bytes are written behind each out value

    BOOL textsOfOwnHeap;  // texts do not come from the allocation callback, as they should

    // Calls of the allocation callback. Size and result of one additional call, made by each FnF5_GetDisplayItemInfo
    // when probeAllocation is set; this block is leaked, as a careless plug-in would.
    BOOL probeAllocation;
    LONG probeSize;
    void* probeAnswer;
    LONG allocations;  // blocks allocated for texts
    LONG allocationsFailed;
    FenwynAllocate allocate;  // the callback as it was passed

    // The calls.
    LONG callCount;  // all calls; the first kMaxCalls are in `calls`
    CallEntry calls[kMaxCalls];
    LONG counts[ExportCount];
};

using GetControl = Control*(WINAPI*)();
using ResetControl = void(WINAPI*)();

// Keeps the library loaded for its own lifetime, so that its control block can be read after Fenwyn has unloaded it.
class InstrumentedPlugin {
 public:
    // Starts from the initial state. `name` without folder and ".dll".
    explicit InstrumentedPlugin(const std::wstring& name = L"InstrPlugin") : m_path(pathOf(name)) {
        m_hModule.reset(LoadLibraryW(m_path.c_str()));
        if (m_hModule) {
            reset();
        }
    }

    // In plugins\ next to the test program.
    [[nodiscard]] static std::wstring pathOf(const std::wstring& name) {
        wchar_t program[MAX_PATH];
        const DWORD length = GetModuleFileNameW(nullptr, program, MAX_PATH);
        const std::wstring path(program, length);
        return path.substr(0, path.rfind(L'\\')) + L"\\plugins\\" + name + L".dll";
    }

    [[nodiscard]] bool loaded() const { return static_cast<bool>(m_hModule); }
    [[nodiscard]] const std::wstring& path() const { return m_path; }

    [[nodiscard]] Control& control() const {
        return *reinterpret_cast<GetControl>(
            reinterpret_cast<void*>(GetProcAddress(m_hModule.get(), "InstrControl")))();
    }
    Control* operator->() const { return &control(); }

    void reset() const {
        reinterpret_cast<ResetControl>(reinterpret_cast<void*>(GetProcAddress(m_hModule.get(), "InstrReset")))();
    }

    [[nodiscard]] LONG count(ExportId id) const { return control().counts[id]; }

    // The calls so far, in order: of all exports, or of one.
    [[nodiscard]] std::vector<CallEntry> calls(ExportId id = ExportCount) const {
        const Control& block = control();
        std::vector<CallEntry> found;
        for (std::size_t i = 0; i < kMaxCalls && static_cast<LONG>(i) < block.callCount; ++i) {
            if (id == ExportCount || block.calls[i].exportId == id) {
                found.push_back(block.calls[i]);
            }
        }
        return found;
    }

    // Whether anybody but this object holds the library. Only for the last check of a test: this object releases it.
    [[nodiscard]] bool heldByOthers() {
        m_hModule.reset();
        return GetModuleHandleW(m_path.c_str()) != nullptr;
    }

 private:
    std::wstring m_path;
    common::UniqueModule m_hModule;
};

// Fills an entry of the output list.
inline void setEntry(Entry& entry, LONG mode, ULONG flags = 0, const std::wstring& text = {}) {
    entry = {};
    entry.mode = mode;
    entry.flags = flags;
    entry.hasText = text.empty() ? FALSE : TRUE;
    text.copy(entry.text, kMaxText - 1);
}

// Appends a record; `connector` may fill the whole field, so that there is no terminator.
inline void addRecord(Entry& entry, const std::wstring& connector, ULONG index, ULONG width, ULONG height) {
    FenwynDisplayRecord& record = entry.records[entry.recordCount++ % kMaxRecords];
    record = {};
    connector.copy(record.szConnector, FENWYN_CONNECTOR_CHARS);
    record.uDisplayIndex = index;
    record.uWidth = width;
    record.uHeight = height;
}

}  // namespace instr
