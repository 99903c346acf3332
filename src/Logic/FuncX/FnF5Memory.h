// The texts that cross the border between the display-output plug-in and the program: the plug-in allocates them with
// the program's function, the program frees them.
#pragma once

#include <windows.h>

#include <string>

#include "common/Handle.h"

namespace fnf5 {

// FenwynAllocate: a block of the process heap, null for a count below 1 or without memory. Callable on any thread.
void* WINAPI allocate(LONG lByteCount) noexcept;
void release(void* pBlock) noexcept;

// Blocks handed out and not yet given back; a plug-in that keeps blocks to itself shows here.
[[nodiscard]] long outstandingBlocks() noexcept;

struct TextTraits : common::NullIsNone<wchar_t*> {
    static void close(type value) noexcept { release(value); }
};
using UniqueText = common::UniqueAny<TextTraits>;

// The text of a block up to its end: a missing terminator does not lead beyond it. Empty for null.
[[nodiscard]] std::wstring textOf(const UniqueText& text);

}  // namespace fnf5
