// Where the field for trying keys shows each card.
#pragma once

#include <windows.h>

#include <algorithm>

namespace settings {

inline constexpr int kMostCardsInRow = 5;  // more would cut their captions

// `count` is not 0, and `index` below it. Pixels.
[[nodiscard]] inline RECT boxOfCard(const RECT& field, int count, int index) {
    const int rows = (count + kMostCardsInRow - 1) / kMostCardsInRow;
    const int columns = (count + rows - 1) / rows;
    const LONG gap = std::max<LONG>(1, (field.bottom - field.top) / 24);
    const LONG width = field.right - field.left - gap;
    const LONG height = field.bottom - field.top - gap;
    const LONG left = field.left + gap;
    const LONG top = field.top + gap;
    const int column = index % columns;
    const int row = index / columns;
    return {left + width * column / columns, top + height * row / rows, left + width * (column + 1) / columns - gap,
            top + height * (row + 1) / rows - gap};
}

// Between the edges of the box and its caption.
inline constexpr int kBesideCaption = 2;

}  // namespace settings
