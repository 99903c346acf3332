// The rules of the two display-output functions, independent of windows and plug-ins.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "Logic/FuncX/FunctionTables.h"
#include "Logic/ZelCommonFunc.h"
#include "companions/OutputSetup/include/OutputSetup.h"
#include "res/Pictures.h"

namespace outputrules {

// Width that one item takes in a row, in pixels at image ratio 1.0.
inline constexpr int kItemPitch = kItemSize + kItemGap;

[[nodiscard]] constexpr int scaledPitch(double ratio) {
    return truncToInt(kItemPitch * ratio);
}

// Width of a row of items with the overhang of its first item on either side. 32-bit arithmetic, so that an overhang
// that wrapped below zero (it is unsigned) yields the right sum.
[[nodiscard]] constexpr int totalItemWidth(std::size_t count, double ratio, int extraWidth) {
    return static_cast<int>(static_cast<unsigned>(count) * static_cast<unsigned>(scaledPitch(ratio)) +
                            2U * static_cast<unsigned>(extraWidth));
}

// By how much the items of a row have to shrink; nothing if the row fits.
[[nodiscard]] constexpr std::optional<double> shrinkRatio(int totalWidth, int workWidth) {
    if (totalWidth <= 0 || totalWidth < workWidth) {
        return std::nullopt;
    }
    return static_cast<double>(workWidth) / totalWidth;
}

// How many entries may be offered; nothing if all of them fit. The bound is deliberately unscaled.
[[nodiscard]] constexpr std::optional<DWORD> entryLimit(LONG count, double ratio, int workWidth) {
    if (static_cast<long long>(count) * scaledPitch(ratio) < workWidth) {
        return std::nullopt;
    }
    return static_cast<DWORD>(workWidth / kItemPitch);
}

// The positions to remove, from the last to the first, so that at most `limit` entries remain: those that need not be
// kept. At least one is removed if there is one, because the size is checked after each removal.
[[nodiscard]] inline std::vector<std::size_t> entriesToDrop(const std::vector<bool>& keep, std::size_t limit) {
    std::vector<std::size_t> dropped;
    for (std::size_t i = keep.size(); i-- > 0;) {
        if (keep[i]) {
            continue;
        }
        dropped.push_back(i);
        if (keep.size() - dropped.size() <= limit) {
            break;
        }
    }
    return dropped;
}

// The rows of the older function's tables whose bits are set, in the order of the items.
[[nodiscard]] inline std::vector<const functiontables::Item*> offeredOutputs(DWORD dwFirst, DWORD dwSecond) {
    std::vector<const functiontables::Item*> offered;
    const auto take = [&offered](std::span<const functiontables::Item> rows, DWORD dwMask) {
        for (const functiontables::Item& row : rows) {
            if ((dwMask & row.dwBit) != 0) {
                offered.push_back(&row);
            }
        }
    };
    take(functiontables::kOutputFirst, dwFirst);
    take(functiontables::kOutputSecond, dwSecond);
    return offered;
}

// The bit of a display mode among the modes that the display-configuration program is to offer.
[[nodiscard]] constexpr DWORD setupModeBit(LONG mode) {
    return DWORD{1} << (static_cast<DWORD>(mode) & 31U);
}

// The number for the display-configuration program: the chosen mode above the modes that it may offer.
[[nodiscard]] constexpr DWORD setupNumber(LONG mode, DWORD dwModes) {
    return static_cast<DWORD>(mode) << OUTPUT_SETUP_MASK_BITS | (dwModes & ((DWORD{1} << OUTPUT_SETUP_MASK_BITS) - 1));
}

}  // namespace outputrules
