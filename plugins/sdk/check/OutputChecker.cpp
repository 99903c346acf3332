#include "OutputChecker.h"

#include <algorithm>
#include <set>

namespace check {

namespace {

constexpr LONG kManyEntries = 64;
constexpr ULONG kKnownFlags = FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_NEEDS_SETUP | FENWYN_ENTRY_SHOW_RESOLUTION;

// The blocks that the plug-in got from the allocation callback and has not returned yet.
std::set<void*> g_blocks;

void* WINAPI allocate(LONG byteCount) {
    if (byteCount <= 0) {
        return nullptr;
    }
    void* const block = HeapAlloc(GetProcessHeap(), 0, static_cast<SIZE_T>(byteCount));
    if (block != nullptr) {
        g_blocks.insert(block);
    }
    return block;
}

// Copies memory that may not exist.
bool readMemory(ULONGLONG address, void* copy, std::size_t bytes) {
    SIZE_T read = 0;
    return ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(static_cast<ULONG_PTR>(address)), copy,
                             bytes, &read) != FALSE &&
           read == bytes;
}

struct Entry {
    LONG mode;
    WCHAR* text;
    ULONG recordCount;
    ULONGLONG records;
    ULONG flags;
};

class COutputChecker {
 public:
    COutputChecker(CPluginLibrary& library, CReport& report) : m_library(library), m_report(report) {}

    void run(std::optional<long> item) {
        if (!_initialize()) {
            return;
        }
        const LONG count = _entryCount();
        for (LONG i = 0; i < std::min(count, kManyEntries); ++i) {
            _checkEntry(static_cast<ULONG>(i));
        }
        _currentItem(count);
        if (item) {
            _choose(*item);
        }
    }

 private:
    bool _initialize() {
        g_blocks.clear();
        CGuarded<ULONG> reserved(0);
        const LONG result =
            m_library.call<FenwynFnF5InitializeHotkeyDll>(FENWYN_FNF5_INITIALIZE, 0L, reserved.out(), &allocate);
        reserved.checkGuard(m_report, FENWYN_FNF5_INITIALIZE, L"reserved");
        if (result != FENWYN_OK) {
            m_library.reportUnsupported(FENWYN_FNF5_INITIALIZE, result);
        }
        m_report.answers().initialized = result == FENWYN_OK;
        return result == FENWYN_OK;
    }

    LONG _entryCount() {
        CGuarded<LONG> count(0);
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynFnF5GetDisplayItemCount>(FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT,
                                                                          count.out(), reserved.out());
        count.checkGuard(m_report, FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT, L"count");
        if (result != FENWYN_OK) {
            m_report.error(L"FnF5_GetDisplayItemCount failed (" + std::to_wstring(result) +
                           L"): the card shows no items.");
            return 0;
        }
        if (count.value() < 1) {
            m_report.error(L"FnF5_GetDisplayItemCount gives " + std::to_wstring(count.value()) +
                           L": the card shows no items.");
        } else if (count.value() > FENWYN_MAX_ENTRIES) {
            m_report.error(L"FnF5_GetDisplayItemCount gives " + std::to_wstring(count.value()) + L", more than " +
                           std::to_wstring(FENWYN_MAX_ENTRIES) + L" entries: the card shows no items.");
        }
        if (count.value() > kManyEntries) {
            m_report.warning(L"Of " + std::to_wstring(count.value()) + L" entries only the first " +
                             std::to_wstring(kManyEntries) + L" were checked.");
        }
        return count.value();
    }

    void _checkEntry(ULONG index) {
        m_strEntry = L"Entry " + std::to_wstring(index);
        CGuarded<LONG> mode(-1);
        CGuarded<WCHAR*> text(nullptr);
        CGuarded<ULONG> recordCount(0);
        CGuarded<ULONGLONG> records(0);
        CGuarded<ULONG> flags(0);
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynFnF5GetDisplayItemInfo>(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, index,
                                                                         mode.out(), text.out(), recordCount.out(),
                                                                         records.out(), flags.out(), reserved.out());
        mode.checkGuard(m_report, FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, L"mode");
        recordCount.checkGuard(m_report, FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, L"record count");
        records.checkGuard(m_report, FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, L"records");
        flags.checkGuard(m_report, FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, L"flags");
        const Entry entry{mode.value(), text.value(), recordCount.value(), records.value(), flags.value()};
        if (result != FENWYN_OK) {
            m_report.error(m_strEntry + L": FnF5_GetDisplayItemInfo failed (" + std::to_wstring(result) +
                           L"): the whole card shows no items.");
        } else {
            _checkMode(entry);
            _checkRecords(entry);
            m_report.answers().entries.push_back({entry.mode, {}});
        }
        _checkText(entry);
    }

    void _checkMode(const Entry& entry) {
        if (entry.mode < FENWYN_MODE_INTERNAL || entry.mode > FENWYN_MODE_SAVE) {
            m_report.error(m_strEntry + L": there is no mode " + std::to_wstring(entry.mode) + L".");
        }
        if ((entry.flags & ~kKnownFlags) != 0) {
            m_report.warning(m_strEntry + L": the flags " + hex(entry.flags & ~kKnownFlags) + L" mean nothing.");
        }
    }

    // Frees the text as Fenwyn would.
    void _checkText(const Entry& entry) {
        const bool custom = (entry.flags & FENWYN_ENTRY_CUSTOM) != 0;
        if (entry.text == nullptr) {
            if (custom) {
                m_report.error(m_strEntry + L": it is custom, but it has no text.");
            }
            return;
        }
        if (g_blocks.erase(entry.text) == 0) {
            m_report.error(m_strEntry +
                           L": its text is not a fresh block of the allocation callback; freeing it would damage the "
                           L"heap.");
            return;
        }
        if (custom) {
            if (!m_report.answers().entries.empty()) {
                m_report.answers().entries.back().text = entry.text;
            }
            m_report.note(m_strEntry + L": \"" + entry.text + L"\".");
        } else {
            m_report.warning(m_strEntry + L": only custom entries show their text; this one is thrown away.");
        }
        HeapFree(GetProcessHeap(), 0, entry.text);
    }

    void _checkRecords(const Entry& entry) {
        if (entry.recordCount > FENWYN_MAX_RECORDS) {
            m_report.error(m_strEntry + L": it claims " + std::to_wstring(entry.recordCount) +
                           L" displays; the preview shows " + std::to_wstring(FENWYN_MAX_RECORDS) + L" at most.");
            return;
        }
        for (ULONG i = 0; i < entry.recordCount; ++i) {
            FenwynDisplayRecord record{};
            if (!readMemory(entry.records + i * sizeof record, &record, sizeof record)) {
                m_report.error(m_strEntry + L": display record " + std::to_wstring(i) + L" cannot be read at " +
                               L"the given address.");
                return;
            }
            _checkRecord(record, i);
        }
    }

    void _checkRecord(const FenwynDisplayRecord& record, ULONG number) {
        const std::wstring which = m_strEntry + L", display record " + std::to_wstring(number);
        const WCHAR* const end = std::find(record.szConnector, record.szConnector + FENWYN_CONNECTOR_CHARS, L'\0');
        const std::wstring_view name(record.szConnector, static_cast<std::size_t>(end - record.szConnector));
        if (name.size() == FENWYN_CONNECTOR_CHARS) {
            m_report.error(which + L": the connector name has no end within its field.");
        }
        const bool known = std::any_of(std::begin(kConnectorWords), std::end(kConnectorWords),
                                       [&](auto word) { return name.find(word) != std::wstring_view::npos; });
        if (!known) {
            m_report.warning(which + L": no picture for the connector \"" + std::wstring(name) +
                             L"\"; the preview leaves the display out.");
        }
        if ((record.uWidth == 0) != (record.uHeight == 0)) {
            m_report.warning(which + L": a display of " + std::to_wstring(record.uWidth) + L" x " +
                             std::to_wstring(record.uHeight) + L" pixels.");
        }
    }

    void _currentItem(LONG count) {
        CGuarded<LONG> item(-1);
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, item.out(), reserved.out());
        item.checkGuard(m_report, FENWYN_GET_CURRENT_ITEM, L"item");
        if (result != FENWYN_OK) {
            m_report.error(L"GetCurrentItem failed (" + std::to_wstring(result) + L"): the card shows no items.");
        } else if (item.value() < 0 || item.value() >= count) {
            m_report.error(L"GetCurrentItem gives " + std::to_wstring(item.value()) + L", which is no entry.");
        } else {
            m_report.answers().current = item.value();
            m_report.note(L"The current entry is " + std::to_wstring(item.value()) + L".");
        }
    }

    void _choose(long item) {
        CGuarded<ULONG> reserved(0);
        const LONG result =
            m_library.call<FenwynSelectItem>(FENWYN_SELECT_ITEM, static_cast<LONG>(item), reserved.out());
        const std::wstring call = L"SelectItem(" + std::to_wstring(item) + L")";
        if (result != FENWYN_OK) {
            m_report.error(call + L" failed (" + std::to_wstring(result) + L").");
        } else {
            m_report.note(call + L" succeeded.");
        }
    }

    CPluginLibrary& m_library;
    CReport& m_report;
    std::wstring m_strEntry;
};

}  // namespace

void checkOutput(CPluginLibrary& library, CReport& report, std::optional<long> item) {
    COutputChecker(library, report).run(item);
    if (!g_blocks.empty()) {
        report.warning(std::to_wstring(g_blocks.size()) +
                       L" block(s) of the allocation callback were never handed out: they are lost.");
    }
}

}  // namespace check
