#include "UI/ItemDlg/ErrorItemDlg.h"

#include "Logic/ZelCommonFunc.h"
#include "UI/CardStyle.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"
#include "support/LeakCheck.h"

namespace items {
namespace {

constexpr wchar_t kShort[] = L"Nothing to switch.";
constexpr wchar_t kLong[] =
    L"There is no wireless device in this machine that could be switched on or off, and no amount of pressing will "
    L"change that.";

class ErrorItem : public ItemTest {
 protected:
    CErrorItemDlg& make(const wchar_t* text) {
        m_pItem = std::make_unique<CErrorItemDlg>(text);
        m_pItem->setPlacement(m_room.placement());
        EXPECT_TRUE(m_pItem->Create(nullptr));
        EXPECT_EQ(m_pItem->initialize(), S_OK);
        place(item(), 300, 200, m_pItem->width(), m_pItem->height());
        m_log.clear();
        return *m_pItem;
    }
    [[nodiscard]] HWND item() const { return m_pItem->windowHandle(); }
    // GDI+'s measure of the text, wrapped at 288 pixels times the ratio.
    [[nodiscard]] Gdiplus::RectF measured(const wchar_t* text) const {
        const common::WindowDc dc(item());
        Gdiplus::Graphics graphics(dc.get());
        std::unique_ptr<Gdiplus::Font> font;
        EXPECT_EQ(getNormalDPIWndFont(m_pItem.get(), graphics, font), S_OK);
        const Gdiplus::RectF layout(0.0F, 0.0F, static_cast<float>(theApp.getPngRatio() * 288.0), 0.0F);
        const CCentredFormat format;
        Gdiplus::RectF result;
        graphics.MeasureString(text, -1, font.get(), layout, &format, &result);
        return result;
    }
    // A visible popup of this thread in exactly this place.
    [[nodiscard]] bool pictureShown() const {
        struct Search {
            RECT place;
            HWND found;
        } search{windowRect(item()), nullptr};
        const auto match = [](HWND window, LPARAM parameter) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(parameter);
            wchar_t name[64] = {};
            ::GetClassNameW(window, name, 64);
            if (std::wstring(name).starts_with(L"QRD_LayeredWnd") && shown(window) &&
                windowRect(window) == wanted.place) {
                wanted.found = window;
            }
            return TRUE;
        };
        ::EnumThreadWindows(::GetCurrentThreadId(), match, reinterpret_cast<LPARAM>(&search));
        return search.found != nullptr;
    }

    std::unique_ptr<CErrorItemDlg> m_pItem;
};

TEST_F(ErrorItem, IsAsLargeAsItsTextAndOnePixelAround) {
    for (const double ratio : {1.0, 0.75}) {
        m_room.setRatio(ratio);
        for (const wchar_t* text : {kShort, kLong}) {
            const CErrorItemDlg& item = make(text);
            const Gdiplus::RectF size = measured(text);
            EXPECT_EQ(item.width(), static_cast<int>(size.Width + 2.0F));
            EXPECT_EQ(item.height(), static_cast<int>(size.Height + 2.0F));
            EXPECT_LE(item.width(), truncToInt(288.0 * ratio) + 2);
        }
    }
}

TEST_F(ErrorItem, LongTextIsWrapped) {
    const int one = make(kShort).height();
    EXPECT_GE(make(kLong).height(), 2 * (one - 2));
}

TEST_F(ErrorItem, IsASurfaceWithoutAColourKey) {
    make(kShort);
    EXPECT_NE(exStyle(item()) & WS_EX_LAYERED, 0U);
    const Layer layer = layerOf(item());
    EXPECT_EQ(layer.alpha, 1);
    EXPECT_EQ(layer.flags, static_cast<DWORD>(LWA_ALPHA));
}

TEST_F(ErrorItem, ShowsItsTextOverItself) {
    make(kShort).showItem(true);
    paintNow(item());
    EXPECT_TRUE(shown(item()));
    EXPECT_TRUE(pictureShown());
    m_pItem->showItem(false);
    EXPECT_FALSE(shown(item()));
    EXPECT_FALSE(pictureShown());
}

TEST_F(ErrorItem, DrawsWhiteLettersWithABlackOutline) {
    CErrorItemDlg& item = make(kLong);
    rendering::Canvas canvas(300, 120);
    Gdiplus::Graphics graphics(canvas.dc());
    EXPECT_EQ(item.drawText(graphics), S_OK);
    int white = 0;
    int black = 0;
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 300; ++x) {
            white += canvas.at(x, y) == 0xFFFFFFFFU ? 1 : 0;
            black += canvas.at(x, y) == 0xFF000000U ? 1 : 0;
        }
    }
    EXPECT_GT(white, 200);
    EXPECT_GT(black, 200);
    const RECT ink = canvas.ink();
    EXPECT_LE(ink.right, item.width() + 2);
    EXPECT_LE(ink.bottom, item.height() + 2);
}

TEST_F(ErrorItem, TextIsCentred) {
    CErrorItemDlg& item = make(kShort);
    rendering::Canvas canvas(300, 60);
    Gdiplus::Graphics graphics(canvas.dc());
    item.drawText(graphics);
    const RECT ink = canvas.ink();
    EXPECT_NEAR(ink.left, item.width() - ink.right, 3);
}

TEST_F(ErrorItem, LostFocusGoesToTheCard) {
    EXPECT_EQ(make(kShort).setBlackCardInfo(&addCard(L"Mute", {0x3B})), S_OK);
    showStrip();
    m_room.setMouseOperating(true);
    killFocus(item(), support::foreignWindow());
    EXPECT_FALSE(stripShown());
}

TEST_F(ErrorItem, LostFocusWithoutACardIsLogged) {
    make(kShort);
    killFocus(item(), nullptr);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CQrdItem::killFocus): Error Code: 0x80004003"});
}

TEST_F(ErrorItem, TakesAnotherText) {
    CErrorItemDlg& item = make(kShort);
    EXPECT_EQ(item.setItemText(nullptr), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CErrorItemDlg::setItemText): Error Code: 0x80004003"});
    EXPECT_EQ(item.setItemText(kLong), S_OK);
    EXPECT_EQ(item.initialize(), S_OK);
    EXPECT_EQ(item.height(), static_cast<int>(measured(kLong).Height + 2.0F));
}

TEST_F(ErrorItem, HasNoOverhangAndIgnoresSelection) {
    CErrorItemDlg& item = make(kShort);
    EXPECT_EQ(item.descOverhang(), 0);
    EXPECT_EQ(item.switchItem(0x3B, true, true), S_OK);
}

TEST_F(ErrorItem, LeaksNothing) {
    testsupport::expectNoLeak(10, 100, [this](int) {
        make(kShort).showItem(true);
        paintNow(item());
        m_pItem->destroyItem();
        m_pItem.reset();
        support::pump();
        m_log.clear();
    });
}

}  // namespace
}  // namespace items
