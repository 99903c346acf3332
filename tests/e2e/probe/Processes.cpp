// Processes, what they hold, and named objects that a test takes before the program does.
#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <map>

#include "Commands.h"
#include "Json.h"
#include "common/Handle.h"

namespace probe {

namespace {

// The system's own counters return 0 under Wine, so the tables behind them are read.
struct HandleEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG access;
    USHORT backTrace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};
struct HandleTable {
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};
struct GdiEntry {
    std::uint64_t object;
    USHORT owner;
    USHORT count;
    USHORT unique;
    UCHAR type;
    UCHAR flags;
    std::uint64_t userPointer;
};
constexpr int kSystemExtendedHandles = 64;
constexpr std::size_t kGdiTableOffset = 0xF8;  // in the process environment block, 64 bit
constexpr std::size_t kGdiEntries = 0x10000;

// What the types in the table are called.
const std::map<int, const char*> kGdiTypes = {{0x01, "device contexts"}, {0x04, "regions"}, {0x05, "bitmaps"},
                                              {0x08, "palettes"},        {0x0A, "fonts"},   {0x10, "brushes and pens"}};

std::vector<common::UniqueHandle>& heldObjects() {
    static std::vector<common::UniqueHandle> all;
    return all;
}

template <typename Function>
Function ofNtdll(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name)));
}

std::int64_t kernelHandlesOf(DWORD process) {
    using Query = NTSTATUS(NTAPI*)(int, void*, ULONG, ULONG*);
    static const auto query = ofNtdll<Query>("NtQuerySystemInformation");
    std::vector<std::uint64_t> buffer(1U << 20);
    ULONG length = 0;
    const auto bytes = static_cast<ULONG>(buffer.size() * sizeof buffer[0]);
    if (query(kSystemExtendedHandles, buffer.data(), bytes, &length) != 0) {
        return -1;
    }
    const auto* table = reinterpret_cast<const HandleTable*>(buffer.data());
    return std::count_if(table->entries, table->entries + table->count,
                         [process](const HandleEntry& entry) { return entry.processId == process; });
}

template <typename T>
bool readFrom(HANDLE process, std::uint64_t address, T* out, std::size_t count) {
    SIZE_T read = 0;
    return ::ReadProcessMemory(process, reinterpret_cast<const void*>(address), out, count * sizeof(T), &read) != 0;
}

// GDI objects by type; empty if the table cannot be read.
std::map<int, std::int64_t> gdiObjectsOf(HANDLE process) {
    using Query = NTSTATUS(NTAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    static const auto query = ofNtdll<Query>("NtQueryInformationProcess");
    PROCESS_BASIC_INFORMATION basic{};
    std::uint64_t table = 0;
    std::vector<GdiEntry> entries(kGdiEntries);
    if (query(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0 ||
        !readFrom(process, reinterpret_cast<std::uint64_t>(basic.PebBaseAddress) + kGdiTableOffset, &table, 1) ||
        !readFrom(process, table, entries.data(), entries.size())) {
        return {};
    }
    std::map<int, std::int64_t> found;
    for (const GdiEntry& entry : entries) {
        if (entry.type != 0) {
            ++found[entry.type];
        }
    }
    return found;
}

}  // namespace

std::string listProcesses(const Arguments&) {
    const common::UniqueFile snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    std::vector<std::string> found;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = ::Process32FirstW(snapshot.get(), &entry); more; more = ::Process32NextW(snapshot.get(), &entry)) {
        found.push_back(object({{"pid", number(entry.th32ProcessID)}, {"file", quoted(entry.szExeFile)}}));
    }
    return array(found);
}

std::string countHandles(const Arguments& arguments) {
    const auto id = static_cast<DWORD>(toNumber(arguments[0]));
    const common::UniqueHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
    if (!process) {
        return error(L"no such process");
    }
    std::int64_t gdi = 0;
    std::vector<Member> kinds;
    for (const auto& [type, count] : gdiObjectsOf(process.get())) {
        gdi += count;
        const auto known = kGdiTypes.find(type);
        kinds.push_back({known == kGdiTypes.end() ? "others" : known->second, number(count)});
    }
    return object({{"kernel", number(kernelHandlesOf(id))}, {"gdi", number(gdi)}, {"gdi kinds", object(kinds)}});
}

// Nobody tells their number, but a new one gets a place in a table: first the free ones, the last freed before all
// others, then those behind the last one. So the table is full when places ascend, because what was made here is freed
// in that order.
std::string countUserObjects(const Arguments& /*arguments*/) {
    constexpr ULONG_PTR kFirstPlace = 0x20;  // each has two
    constexpr std::size_t kInARow = 16;
    const auto placeOf = [](HMENU menu) { return reinterpret_cast<ULONG_PTR>(menu) & 0xFFFF; };
    std::vector<HMENU> menus;
    ULONG_PTR highest = 0;
    for (std::size_t ascending = 0; ascending < kInARow;) {
        menus.push_back(::CreateMenu());
        if (menus.back() == nullptr) {
            break;
        }
        const ULONG_PTR place = placeOf(menus.back());
        ascending = place > highest ? ascending + 1 : 0;
        highest = std::max(highest, place);
    }
    std::ranges::sort(menus, {}, placeOf);
    std::ranges::for_each(menus, ::DestroyMenu);
    return menus.front() == nullptr ? error(L"there is no place for further objects")
                                    : number(static_cast<std::int64_t>((highest - kFirstPlace) / 2 + 1 - menus.size()));
}

std::string holdObject(const Arguments& arguments) {
    const wchar_t* name = arguments[1].c_str();
    ::SetLastError(ERROR_SUCCESS);
    common::UniqueHandle made(arguments[0] == L"mutex"   ? ::CreateMutexW(nullptr, FALSE, name)
                              : arguments[0] == L"event" ? ::CreateEventW(nullptr, FALSE, FALSE, name)
                                                         : ::CreateSemaphoreW(nullptr, 0, 1, name));
    const bool existed = ::GetLastError() == ERROR_ALREADY_EXISTS;
    if (!made) {
        return error(L"the object could not be made");
    }
    heldObjects().push_back(std::move(made));
    return boolean(existed);
}

std::string releaseObjects(const Arguments&) {
    heldObjects().clear();
    return boolean(true);
}

std::string setEvent(const Arguments& arguments) {
    const common::UniqueHandle event(::OpenEventW(EVENT_MODIFY_STATE, FALSE, arguments[0].c_str()));
    return boolean(event && ::SetEvent(event.get()) != FALSE);
}

}  // namespace probe
