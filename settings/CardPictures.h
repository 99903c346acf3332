// The pictures of the cards, small, as a list of images for a list control.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string_view>

#include "common/Handle.h"

namespace settings {

struct ImageListTraits : common::NullIsNone<HIMAGELIST> {
    static void close(type value) noexcept { ::ImageList_Destroy(value); }
};
using UniqueImageList = common::UniqueAny<ImageListTraits>;

// All functions that Fenwyn has, in the order of its table, in images of that size. Empty pictures, if the library of
// pictures is missing.
[[nodiscard]] UniqueImageList cardPictures(SIZE size);

// Which of them is the function's; -1: none.
[[nodiscard]] int cardPictureOf(std::wstring_view function);

}  // namespace settings
