// Dialogs in another font than that of their template.
#include "common/DialogFont.h"

#include <gtest/gtest.h>

#include <utility>

#include "common/Handle.h"

namespace {

// Multiples of 4 and 8 dialog units are whole numbers of pixels in every font.
constexpr short kWidth = 160;
constexpr short kHeight = 80;

struct Template {
    DLGTEMPLATE dialog{WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0, 0, 0, kWidth, kHeight};
    WORD menu = 0;
    WORD windowClass = 0;
    WORD title = 0;
};

}  // namespace

TEST(DialogFont, ClientAreaIsWhatTheTemplateMeansInUnitsOfTheFont) {
    const Template words;
    const common::UniqueWindow dialog(::CreateDialogIndirectParamW(
        nullptr, &words.dialog, nullptr, [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0));
    ASSERT_TRUE(dialog);
    common::UniqueFont font;
    for (const LONG height : {-12, -17, -30}) {
        LOGFONTW face = common::messageFont();
        face.lfHeight = height;
        common::UniqueFont next(::CreateFontIndirectW(&face));
        if (font) {
            common::changeDialogFont(dialog.get(), font.get(), next.get());
        } else {
            common::setDialogFont(dialog.get(), next.get());
        }
        font = std::move(next);
        const SIZE units = common::dialogUnitsOf(font.get());
        RECT client{};
        ::GetClientRect(dialog.get(), &client);
        EXPECT_EQ(client.right, kWidth / 4 * units.cx) << height;
        EXPECT_EQ(client.bottom, kHeight / 8 * units.cy) << height;
    }
}
