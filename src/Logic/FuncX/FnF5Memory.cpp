#include "Logic/FuncX/FnF5Memory.h"

#include <atomic>

namespace fnf5 {

namespace {

std::atomic<long> s_lOutstanding = 0;

}  // namespace

void* WINAPI allocate(LONG lByteCount) noexcept {
    void* const pBlock = lByteCount > 0 ? ::HeapAlloc(::GetProcessHeap(), 0, static_cast<SIZE_T>(lByteCount)) : nullptr;
    s_lOutstanding += pBlock != nullptr ? 1 : 0;
    return pBlock;
}

void release(void* pBlock) noexcept {
    if (pBlock != nullptr && ::HeapFree(::GetProcessHeap(), 0, pBlock) != FALSE) {
        --s_lOutstanding;
    }
}

long outstandingBlocks() noexcept {
    return s_lOutstanding;
}

common::ShownText textOf(const UniqueText& text) noexcept {
    const SIZE_T bytes = text ? ::HeapSize(::GetProcessHeap(), 0, text.get()) : 0;
    // A block of another heap has no size.
    if (bytes == 0 || bytes == static_cast<SIZE_T>(-1)) {
        return {};
    }
    return {text.get(), bytes / sizeof(wchar_t)};
}

}  // namespace fnf5
