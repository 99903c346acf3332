// The texts that the display-output plug-in passes to the program: the plug-in allocates them with the program's
// function, the program frees them.
#pragma once

#include <windows.h>

#include "common/Handle.h"
#include "common/ShownText.h"

namespace fnf5 {

// FenwynAllocate: a block of the process heap, null for a count below 1 or without memory. Callable on any thread.
void* WINAPI allocate(LONG lByteCount) noexcept;
void release(void* pBlock) noexcept;

// Blocks allocated and not yet freed, including those that a plug-in never passed on.
[[nodiscard]] long outstandingBlocks() noexcept;

struct TextTraits : common::NullIsNone<wchar_t*> {
    static void close(type value) noexcept { release(value); }
};
using UniqueText = common::UniqueAny<TextTraits>;

// The text of a block as far as it is shown, and no further than the block. Empty for null.
[[nodiscard]] common::ShownText textOf(const UniqueText& text) noexcept;

}  // namespace fnf5
