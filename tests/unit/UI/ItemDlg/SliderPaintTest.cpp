#include <algorithm>
#include <cmath>

// The slider's own painting: its result at each stage, and the pixels of its three layers.
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"

namespace items {
namespace {

class SliderPaint : public ItemTest {
 protected:
    void open(double ratio) {
        m_room.setRatio(ratio);
        m_pItem = std::make_unique<CSliderItemDlg>(0x3E, 0x3F, 10, 5);
        m_pItem->setPlacement(m_room.placement());
        ASSERT_TRUE(m_pItem->Create(nullptr));
        m_nWidth = m_pItem->width();
        m_nHeight = m_pItem->height();
        m_pCanvas = std::make_unique<rendering::Canvas>(m_nWidth + 4, m_nHeight + 4);
    }
    ~SliderPaint() override {
        if (m_pItem != nullptr) {
            m_pItem->destroyItem();
        }
    }

    [[nodiscard]] HWND slider() const { return SliderItemSeam::slider(*m_pItem).m_hWnd; }
    LRESULT stage(DWORD drawStage, DWORD_PTR part = 0, const RECT& place = {}) {
        NMCUSTOMDRAW draw{};
        draw.hdr = {slider(), static_cast<UINT_PTR>(::GetDlgCtrlID(slider())), static_cast<UINT>(NM_CUSTOMDRAW)};
        draw.dwDrawStage = drawStage;
        draw.hdc = m_pCanvas->dc();
        draw.rc = place;
        draw.dwItemSpec = part;
        return ::SendMessageW(m_pItem->m_hWnd, WM_NOTIFY, draw.hdr.idFrom, reinterpret_cast<LPARAM>(&draw));
    }
    [[nodiscard]] DWORD at(int x, int y) const { return m_pCanvas->at(x, y) & 0xFFFFFFU; }
    [[nodiscard]] bool blank() const {
        const RECT ink = m_pCanvas->ink(0xFFFFFFFFU);
        return ink.right <= ink.left;
    }
    [[nodiscard]] int grey(int x, int y) const {
        const DWORD pixel = at(x, y);
        EXPECT_EQ(pixel >> 16U, pixel & 0xFFU) << "no grey at " << x << ", " << y;
        EXPECT_EQ(pixel >> 8U & 0xFFU, pixel & 0xFFU) << "no grey at " << x << ", " << y;
        return static_cast<int>(pixel & 0xFFU);
    }

    std::unique_ptr<CSliderItemDlg> m_pItem;
    std::unique_ptr<rendering::Canvas> m_pCanvas;
    int m_nWidth = 0;
    int m_nHeight = 0;
};

TEST_F(SliderPaint, AsksForItsParts) {
    open(1.0);
    EXPECT_EQ(stage(CDDS_PREPAINT), CDRF_NOTIFYITEMDRAW);
    EXPECT_TRUE(blank());
}

TEST_F(SliderPaint, LeavesNoPartToTheSystem) {
    open(1.0);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, TBCD_TICS), CDRF_SKIPDEFAULT);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, TBCD_CHANNEL), CDRF_SKIPDEFAULT);
    EXPECT_TRUE(blank()) << "only the thumb paints, and paints everything";
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, TBCD_THUMB, {80, 2, 100, 22}), CDRF_SKIPDEFAULT);
    EXPECT_FALSE(blank());
}

TEST_F(SliderPaint, OtherStagesAreTheSystems) {
    open(1.0);
    for (const int other :
         {CDDS_POSTPAINT, CDDS_PREERASE, CDDS_POSTERASE, CDDS_ITEMPOSTPAINT, CDDS_ITEMPREERASE, CDDS_ITEMPOSTERASE}) {
        EXPECT_EQ(stage(static_cast<DWORD>(other), TBCD_THUMB, {80, 2, 100, 22}), CDRF_DODEFAULT) << other;
    }
    EXPECT_TRUE(blank());
}

class SliderLayers : public SliderPaint, public testing::WithParamInterface<double> {
 protected:
    void paint(const RECT& thumb) {
        open(GetParam());
        stage(CDDS_ITEMPREPAINT, TBCD_THUMB, thumb);
    }
};

TEST_P(SliderLayers, FaceIsARoundedRectangleLighterInTheMiddle) {
    paint({40, 2, 50, 12});
    // What the corner arcs cross is seen through; the item's picture shows it. The rest is opaque.
    for (const int y : {0, m_nHeight - 1}) {
        int first = 0;
        while (first < m_nHeight / 4 && at(first, y) == 0xFF00FFU) {
            EXPECT_EQ(at(m_nWidth - 1 - first, y), 0xFF00FFU);
            ++first;
        }
        EXPECT_GE(first, 1);
        EXPECT_GT(grey(first, y), 0x90) << "the arc is mixed with no colour";
        EXPECT_GT(grey(m_nWidth - 1 - first, y), 0x90);
    }
    for (const int edge : {grey(m_nWidth / 4, 0), grey(m_nWidth / 4, m_nHeight - 1), grey(0, m_nHeight / 2),
                           grey(m_nWidth - 1, m_nHeight / 2)}) {
        EXPECT_GT(edge, 0x90) << "no dark line at an edge";
    }
    const int row = m_nHeight / 6;  // beside the channel
    EXPECT_NEAR(grey(2, row), 0xFF * 0.6, 6);
    EXPECT_NEAR(grey(m_nWidth / 2, row), 0xFF * 0.85, 6);
    EXPECT_NEAR(grey(m_nWidth - 4, row), 0xFF * 0.6, 6);
    EXPECT_NEAR(grey(m_nWidth / 4, row), 0xFF * 0.725, 8) << "even steps from the ends to the middle";
    EXPECT_EQ(at(m_nWidth + 1, 3), 0U) << "nothing beyond the control";
    EXPECT_EQ(at(3, m_nHeight + 1), 0U);
}

TEST_P(SliderLayers, ChannelIsGreyWhereTheControlHasIt) {
    paint({40, 2, 50, 12});
    const RECT channel = SliderItemSeam::slider(*m_pItem).GetChannelRect();
    ASSERT_GT(channel.right - channel.left, m_nWidth / 2);
    const int y = (channel.top + channel.bottom) / 2;
    // Its ends are round.
    for (const int x : {static_cast<int>(channel.left) + 3, m_nWidth * 2 / 3, static_cast<int>(channel.right) - 4}) {
        EXPECT_EQ(at(x, y), 0x696969U) << x;
    }
    EXPECT_NE(at(channel.right + 1, y), 0x696969U);
    EXPECT_NE(at(m_nWidth * 2 / 3, channel.bottom), 0x696969U);
}

TEST_P(SliderLayers, ThumbIsWhiteWithAGreyFrame) {
    paint({40, 2, 58, 14});
    EXPECT_EQ(at(48, 8), 0xFFFFFFU);
    EXPECT_EQ(at(41, 8), 0x696969U);   // two pixels wide around x = 41
    EXPECT_EQ(at(48, 3), 0x696969U);   // and y = 3
    EXPECT_EQ(at(56, 8), 0x696969U);   // 41 + width 18 - 3
    EXPECT_EQ(at(48, 12), 0x696969U);  // 3 + height 12 - 3
    EXPECT_NE(at(57, 8), 0xFFFFFFU) << "its last column is not filled";
}

INSTANTIATE_TEST_SUITE_P(Ratios, SliderLayers, testing::Values(1.0, 0.75, 1.25));

// At this ratio their radius is 3 pixels.
TEST_F(SliderPaint, OnlyWhatItsCornerArcsCrossHasTheColourKey) {
    constexpr double kRadius = 3.0;
    open(1.0);
    place(m_pItem->m_hWnd, 200, 200, m_nWidth, m_nHeight);
    m_pItem->showItem(true);
    support::pump();
    const common::WindowDc dc(m_pItem->m_hWnd);
    ::BitBlt(m_pCanvas->dc(), 0, 0, m_nWidth, m_nHeight, dc.get(), 0, 0, SRCCOPY);
    int painted = 0;
    for (int y = 0; y < m_nHeight; ++y) {
        for (int x = 0; x < m_nWidth; ++x) {
            const double fromSide = kRadius - std::min(x, m_nWidth - 1 - x);
            const double fromEnd = kRadius - std::min(y, m_nHeight - 1 - y);
            const bool crossed = fromSide > 0 && fromEnd > 0 && std::hypot(fromSide, fromEnd) > kRadius;
            ASSERT_EQ(at(x, y) == 0xFF00FFU, crossed) << x << ", " << y;
            painted += at(x, y) == 0xFFFFFFU || at(x, y) == 0x696969U ? 1 : 0;
        }
    }
    EXPECT_GT(painted, 200) << "thumb and channel are there";
}

// The picture that shows the smooth edges of the corners; null while it has no window.
HWND ownedBy(HWND owner) {
    HWND found = owner;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM result) -> BOOL {
            HWND& wanted = *reinterpret_cast<HWND*>(result);
            const bool here = ::GetWindow(window, GW_OWNER) == wanted;
            wanted = here ? window : wanted;
            return here ? FALSE : TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found == owner ? nullptr : found;
}

TEST_F(SliderPaint, PictureOfItsCornersComesAndGoesWithIt) {
    open(1.0);
    place(m_pItem->m_hWnd, 200, 200, m_nWidth, m_nHeight);
    for (int round = 0; round < 2; ++round) {
        m_pItem->showItem(true);
        support::pump();
        const HWND corners = ownedBy(m_pItem->m_hWnd);
        ASSERT_NE(corners, nullptr);
        EXPECT_TRUE(shown(corners));
        EXPECT_EQ(windowRect(corners), windowRect(m_pItem->m_hWnd));
        m_pItem->showItem(false);
        support::pump();
        EXPECT_FALSE(shown(corners));
    }
}

TEST_F(SliderPaint, OneThatHasTheFocusLooksTheSame) {
    open(1.0);
    place(m_pItem->m_hWnd, 200, 200, m_nWidth, m_nHeight);
    m_pItem->showItem(true);
    std::vector<DWORD> pixels[2];
    for (std::vector<DWORD>& seen : pixels) {
        ::SetFocus(&seen == pixels ? nullptr : slider());
        ::InvalidateRect(slider(), nullptr, TRUE);
        support::pump();
        const common::WindowDc dc(m_pItem->m_hWnd);
        ::BitBlt(m_pCanvas->dc(), 0, 0, m_nWidth, m_nHeight, dc.get(), 0, 0, SRCCOPY);
        for (int y = 0; y < m_nHeight; ++y) {
            for (int x = 0; x < m_nWidth; ++x) {
                seen.push_back(at(x, y));
            }
        }
    }
    EXPECT_EQ(::GetFocus(), slider());
    EXPECT_TRUE(pixels[0] == pixels[1]) << "no dotted frame";
}

TEST_F(SliderPaint, ControlWithoutASizeIsHarmless) {
    open(1.0);
    ::MoveWindow(slider(), 0, 0, 0, 0, FALSE);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, TBCD_THUMB, {0, 0, 0, 0}), CDRF_SKIPDEFAULT);
    EXPECT_EQ(stage(CDDS_ITEMPREPAINT, TBCD_THUMB, {10, 10, -5, -5}), CDRF_SKIPDEFAULT);
}

}  // namespace
}  // namespace items
