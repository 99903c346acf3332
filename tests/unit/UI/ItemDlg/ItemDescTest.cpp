#include "Logic/ZelCommonFunc.h"
#include "UI/CardStyle.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"

namespace items {
namespace {

constexpr wchar_t kLongText[] =
    L"A caption with far more words than any box under a round item would ever have room for";
constexpr wchar_t kLongWord[] = L"Donaudampfschifffahrtsgesellschaftskapitaensmuetzenabzeichen";

class ItemDesc : public ItemTest {
 protected:
    CItemDescDlg& make(const std::wstring& text) {
        m_pBox = std::make_unique<CItemDescDlg>(text);
        m_pBox->setPlacement(m_room.placement());
        EXPECT_TRUE(m_pBox->Create(nullptr));
        m_log.clear();
        return *m_pBox;
    }
    // The size of the text in a box of the maximum width.
    [[nodiscard]] Gdiplus::RectF measuredIn(int width) const {
        place(m_pBox->m_hWnd, 0, 0, width, 42);
        Gdiplus::RectF measured;
        EXPECT_EQ(ItemDescSeam::measure(*m_pBox, measured), S_OK);
        return measured;
    }
    static RECT around(int width, int height) {
        const int x = 336 - width / 2;
        return {x, 277, x + width, 277 + height};
    }

    std::unique_ptr<CItemDescDlg> m_pBox;
};

TEST_F(ItemDesc, LiesUnderTheItemAsWideAsItsText) {
    CItemDescDlg& box = make(L"Mute off");
    const Gdiplus::RectF measured = measuredIn(100);
    ASSERT_GT(measured.Width, 20.0F);
    EXPECT_EQ(box.setWndPos(&kItem), S_OK);
    EXPECT_EQ(windowRect(box.m_hWnd),
              around(static_cast<int>(measured.Width) + 6, static_cast<int>(measured.Height) + 2));
    EXPECT_TRUE((exStyle(box.m_hWnd) & WS_EX_TOPMOST) != 0);
    EXPECT_FALSE(shown(box.m_hWnd)) << "placing does not show";
}

TEST_F(ItemDesc, OddItemHasItsCentreToTheRight) {
    CItemDescDlg& box = make(L"On");
    const Gdiplus::RectF measured = measuredIn(100);
    const RECT odd{300, 200, 371, 272};
    ASSERT_EQ(box.setWndPos(&odd), S_OK);
    const int width = static_cast<int>(measured.Width) + 6;
    EXPECT_EQ(windowRect(box.m_hWnd).left, 371 - 71 / 2 - width / 2);
}

TEST_F(ItemDesc, LongTextIsWrappedAndNeverWiderThanTheSetting) {
    for (const double ratio : {1.0, 0.75}) {
        m_room.setRatio(ratio);
        for (const wchar_t* text : {kLongText, kLongWord}) {
            CItemDescDlg& box = make(text);
            ASSERT_EQ(box.setWndPos(&kItem), S_OK);
            const RECT place = windowRect(box.m_hWnd);
            EXPECT_LE(place.right - place.left, truncToInt(ratio * 100) + 6);
            EXPECT_LE(place.bottom - place.top, 42 + 2) << "at most as high as the place it is measured in";
        }
    }
}

TEST_F(ItemDesc, TextThatDoesNotFitIsCutWithAnEllipsis) {
    CItemDescDlg& box = make(kLongText);
    ASSERT_EQ(box.setWndPos(&kItem), S_OK);
    RECT client{};
    ::GetClientRect(box.m_hWnd, &client);
    ASSERT_LT(client.bottom, 60);
    // The text is drawn in black on a transparent canvas larger than the box.
    rendering::Canvas canvas(200, 100);
    ASSERT_EQ(ItemDescSeam::draw(box, canvas.dc()), S_OK);
    const RECT ink = canvas.ink();
    EXPECT_GT(ink.bottom, 20) << "several lines";
    EXPECT_LE(ink.bottom, client.bottom + 1) << "a descender may touch the frame";
    EXPECT_GE(ink.left, 0);
    EXPECT_LE(ink.right, client.right);
    // The last line's last pixels are dots on the baseline.
    RECT last{ink.right, ink.bottom, 0, 0};
    for (int y = ink.bottom - 6; y < ink.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            last.right = rendering::alphaOf(canvas.at(x, y)) > 0x80 ? std::max<LONG>(last.right, x) : last.right;
        }
    }
    int high = 0;
    for (int y = ink.bottom - 9; y < ink.bottom - 5; ++y) {
        high += rendering::alphaOf(canvas.at(last.right, y)) > 0x80 ? 1 : 0;
    }
    EXPECT_EQ(high, 0);
}

TEST_F(ItemDesc, WidthFollowsTheSetting) {
    m_room.config().uItemDescMaxWidth = 200;
    CItemDescDlg& wide = make(kLongText);
    ASSERT_EQ(wide.setWndPos(&kItem), S_OK);
    const RECT place = windowRect(wide.m_hWnd);
    EXPECT_GT(place.right - place.left, 106);
    EXPECT_LE(place.right - place.left, 206);
}

TEST_F(ItemDesc, AbsurdWidthsAreHarmless) {
    for (const DWORD width : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        m_room.config().uItemDescMaxWidth = width;
        EXPECT_EQ(make(L"Mute off").setWndPos(&kItem), S_OK);
        EXPECT_TRUE(m_pBox->isWindow());
    }
}

TEST_F(ItemDesc, NoPlaceIsAnError) {
    EXPECT_EQ(make(L"On").setWndPos(nullptr), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CItemDescDlg::setWndPos): Error Code: 0x80004003"});
}

TEST_F(ItemDesc, DrawsItsTextInBlackOnePixelDown) {
    CItemDescDlg& box = make(L"Mute off");
    ASSERT_EQ(box.setWndPos(&kItem), S_OK);
    const RECT place = windowRect(box.m_hWnd);
    rendering::Canvas canvas(200, 100);
    ::PatBlt(canvas.dc(), 0, 0, 200, 100, WHITENESS);
    ASSERT_EQ(ItemDescSeam::draw(box, canvas.dc()), S_OK);
    int black = 0;
    RECT ink{200, 100, 0, 0};
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 200; ++x) {
            const DWORD pixel = canvas.at(x, y) & 0xFFFFFFU;
            black += pixel == 0 ? 1 : 0;
            if (pixel != 0xFFFFFFU) {
                ink = {std::min<LONG>(ink.left, x), std::min<LONG>(ink.top, y), std::max<LONG>(ink.right, x + 1),
                       std::max<LONG>(ink.bottom, y + 1)};
            }
        }
    }
    EXPECT_GT(black, 2);
    EXPECT_GE(ink.left, 1);
    EXPECT_GE(ink.top, 1);
    EXPECT_LE(ink.right, place.right - place.left);
    EXPECT_LE(ink.bottom, place.bottom - place.top);
    EXPECT_NEAR(ink.left, place.right - place.left - ink.right, 3) << "centred";
}

TEST_F(ItemDesc, TextSizeFollowsTheRatio) {
    make(L"Mute off");
    const float full = measuredIn(100).Height;
    m_room.setRatio(0.5);
    EXPECT_LT(measuredIn(100).Height, full);
}

TEST_F(ItemDesc, GivesTheFocusBack) {
    CItemDescDlg& box = make(L"On");
    ASSERT_EQ(box.setWndPos(&kItem), S_OK);
    ::ShowWindow(m_room.stripWindow(), SW_SHOW);
    ::ShowWindow(box.m_hWnd, SW_SHOWNOACTIVATE);
    ::SetFocus(m_room.stripWindow());
    ASSERT_EQ(::GetFocus(), m_room.stripWindow());
    ::SetFocus(box.m_hWnd);
    EXPECT_EQ(::GetFocus(), m_room.stripWindow());
}

TEST_F(ItemDesc, PaintsAFramedLightBox) {
    CItemDescDlg& box = make(L"On");
    ASSERT_EQ(box.setWndPos(&kItem), S_OK);
    ::ShowWindow(box.m_hWnd, SW_SHOWNOACTIVATE);
    paintNow(box.m_hWnd);
    const RECT place = windowRect(box.m_hWnd);
    rendering::Canvas canvas(100, 100);
    const common::WindowDc dc(box.m_hWnd);
    ::BitBlt(canvas.dc(), 0, 0, 100, 100, dc.get(), 0, 0, SRCCOPY);
    EXPECT_EQ(canvas.at(0, 0) & 0xFFFFFFU, 0x8C8C8CU);
    EXPECT_EQ(canvas.at(place.right - place.left - 1, place.bottom - place.top - 1) & 0xFFFFFFU, 0x8C8C8CU);
    EXPECT_EQ(canvas.at(1, 1) & 0xFFFFFFU, 0xF4F4F4U);
}

}  // namespace
}  // namespace items
