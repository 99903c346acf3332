// Counts a process's system objects, so that tests detect leaks. The system's own counters (GetGuiResources,
// GetProcessHandleCount) are constant zero on some emulators, so other sources are used.
//
// Usage: run the code once (first-use caches), count, run it some more, compare. A counter that returns 0 does not work
// on this system: tests assert that it is above 0 before they rely on it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace testsupport {

template <typename Function>
Function ntdllFunction(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name)));
}

// GDI objects (bitmaps, device contexts, fonts, pens, brushes, regions) of this process, from the handle table that the
// process environment block points to. The system keeps a few for itself.
inline std::size_t gdiHandles() {
    struct Entry {  // of the GDI handle table, 64-bit layout on every system
        std::uint64_t object;
        std::uint16_t processId;
        std::uint16_t lock;
        std::uint16_t unique;
        std::uint8_t type;  // 0: free
        std::uint8_t flags;
        std::uint64_t userPointer;
    };
    constexpr std::size_t kEntries = 16384;  // the smallest possible table
    constexpr std::size_t kTableOffset = sizeof(void*) == 8 ? 0xF8 : 0x94;

    using CurrentPeb = const std::byte*(WINAPI*)();
    static const auto currentPeb = ntdllFunction<CurrentPeb>("RtlGetCurrentPeb");
    if (currentPeb == nullptr) {
        return 0;
    }
    const auto* const table = *reinterpret_cast<const Entry* const*>(currentPeb() + kTableOffset);
    const auto self = static_cast<std::uint16_t>(::GetCurrentProcessId());
    std::size_t used = 0;
    for (std::size_t i = 0; table != nullptr && i < kEntries; ++i) {
        const bool ours = table[i].processId == self || table[i].processId == 0;  // 0: not recorded
        used += table[i].type != 0 && ours ? 1U : 0U;
    }
    return used;
}

// Kernel handles (files, keys, events, threads, ...) of this process, from the system's list of handles.
inline std::size_t kernelHandles() {
    struct Entry {
        void* object;
        ULONG_PTR processId;
        ULONG_PTR handle;
        ULONG access;
        USHORT creatorBackTrace;
        USHORT type;
        ULONG attributes;
        ULONG reserved;
    };
    struct Table {
        ULONG_PTR count;
        ULONG_PTR reserved;
        Entry entries[1];
    };
    constexpr int kExtendedHandleInformation = 64;
    constexpr LONG kLengthMismatch = static_cast<LONG>(0xC0000004UL);
    using Query = LONG(WINAPI*)(int, void*, ULONG, ULONG*);

    static const auto query = ntdllFunction<Query>("NtQuerySystemInformation");
    std::vector<ULONG_PTR> buffer(1U << 15U);
    LONG status = kLengthMismatch;
    for (int attempt = 0; query != nullptr && status == kLengthMismatch && attempt < 10; ++attempt) {
        buffer.resize(buffer.size() * 2);
        ULONG written = 0;
        status = query(kExtendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size() * sizeof(ULONG_PTR)),
                       &written);
    }
    if (status < 0) {
        return 0;
    }
    const auto* const table = reinterpret_cast<const Table*>(buffer.data());
    std::size_t ours = 0;
    for (ULONG_PTR i = 0; i < table->count; ++i) {
        ours += table->entries[i].processId == ::GetCurrentProcessId() ? 1U : 0U;
    }
    return ours;
}

// Bytes in use in all heaps of this process. Occasional allocations of the system and the test framework change it a
// little: compare after many repetitions, with a tolerance.
inline std::size_t heapBytes() {
    std::vector<HANDLE> heaps(64);
    heaps.resize(::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    std::size_t bytes = 0;
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heap);
        while (::HeapWalk(heap, &entry) != FALSE) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0U;
        }
        ::HeapUnlock(heap);
    }
    return bytes;
}

}  // namespace testsupport
