// By number, at every ratio and on every backdrop: the error notice, the hover strip, and the caption and the preview
// of the display cards.
#include <algorithm>

#include "UI/CardGeometry.h"
#include "looks/LooksFixture.h"

namespace looks {
namespace {

class SmallWindows : public LooksTest, public testing::WithParamInterface<double> {
 protected:
    [[nodiscard]] static double ratio() { return GetParam(); }
    // What is seen exactly there.
    [[nodiscard]] static Picture seenAt(const RECT& place) {
        for (const Layer& layer : visibleLayers()) {
            const RECT own{layer.place.x, layer.place.y, layer.place.x + layer.picture.width,
                           layer.place.y + layer.picture.height};
            if (own == place) {
                return layer.picture;
            }
        }
        return {};
    }
};
INSTANTIATE_TEST_SUITE_P(Ratios, SmallWindows, testing::ValuesIn(kRatios));

TEST_P(SmallWindows, NoticeIsReadableAndKeepsInside) {
    for (const bool bottom : {false, true}) {
        CErrorItemDlg& notice = openNotice(ratio(), bottom);
        const Picture picture = seenAt(items::windowRect(notice.m_hWnd));
        ASSERT_FALSE(picture.pixels.empty());
        for (int y = 0; y < picture.height; ++y) {
            EXPECT_EQ(picture.row(y)[0] >> 24U, 0U) << "cut at its left, row " << y;
            EXPECT_EQ(picture.row(y)[picture.width - 1] >> 24U, 0U) << "cut at its right, row " << y;
        }
        // Letters against outline, where both are: between the first and the last letter.
        const int height = picture.height;
        const RECT text{height, height / 4, picture.width - height, height * 3 / 4};
        for (const Backdrop backdrop : kBackdrops) {
            EXPECT_GE(letterContrast(onBackdrop(picture, backdrop), text), 4.5) << nameOf(backdrop);
        }
    }
}

TEST_P(SmallWindows, HoverStripIsSeenOnEveryBackdropOneLinePerCard) {
    for (const bool bottom : {false, true}) {
        const Layer strip = showHoverStrip(ratio(), bottom);
        ASSERT_EQ(strip.picture.height, geometry::kHoverStripHeight);
        const int cardWidth = geometry::cardWidth(ratio());
        ASSERT_EQ(strip.picture.width, 3 * cardWidth);
        for (const Backdrop backdrop : kBackdrops) {
            const Picture seen = onBackdrop(strip.picture, backdrop);
            const Picture ground = backdropPicture(backdrop, seen.width, seen.height);
            int clear = 0;
            for (int x = 0; x < seen.width; ++x) {
                double most = 1.0;
                for (int y = 0; y < seen.height; ++y) {
                    const double behind = luminance(ground.row(y)[x]);
                    most = std::max(most, contrast(luminance(seen.row(y)[x]), behind));
                }
                clear += most >= 3.0 ? 1 : 0;
            }
            EXPECT_GE(clear, seen.width * 8 / 10) << nameOf(backdrop);
        }
    }
}

// Where the caption box hides nothing of them: of rows without a resolution the whole text, of the others the lower
// line.
TEST_P(SmallWindows, PreviewNamesEveryDisplayBesideTheCaption) {
    constexpr int kRow = 40;          // pixels, not scaled, as all of the preview
    constexpr int kPictureLeft = 84;  // of the connector
    for (const bool resolutions : {false, true}) {
        CBlackCard& card = openDisplays(ratio(), false, resolutions, 1);
        const RECT place = items::windowRect(FxOutputItemSeam::preview(choice(card, 1))->m_hWnd);
        const Picture preview = seenAt(place);
        ASSERT_EQ(preview.height, 2 * kRow);
        RECT caption = items::windowRect(CircleItemSeam::box(choice(card, 1)).m_hWnd);
        ::OffsetRect(&caption, -place.left, -place.top);
        for (const int top : {0, kRow}) {
            const int from = top + (resolutions ? kRow / 2 : 2);
            int ink = 0;
            for (int y = from; y < top + kRow - 1; ++y) {
                for (int x = 3; x < kPictureLeft; ++x) {
                    const bool letter = luminance(preview.row(y)[x]) < 0.4;
                    ink += letter ? 1 : 0;
                    EXPECT_FALSE(letter && ::PtInRect(&caption, {x, y}) != FALSE) << x << ", " << y;
                }
            }
            EXPECT_GE(ink, 15) << "row at " << top << (resolutions ? " with" : " without") << " a resolution";
        }
    }
}

TEST_P(SmallWindows, CaptionsOfAllDisplayChoicesStandSideBySide) {
    m_room.config().bAlwaysShowItemsCaption = 1;
    constexpr LONG kChoices = 4;
    for (LONG chosen = 0; chosen < kChoices; ++chosen) {
        CBlackCard& card = openDisplays(ratio(), false, false, chosen);
        RECT before{};
        for (LONG i = 0; i < kChoices; ++i) {
            const HWND caption = CircleItemSeam::box(choice(card, i)).m_hWnd;
            EXPECT_TRUE(items::shown(caption));
            const RECT box = items::windowRect(caption);
            RECT both{};
            EXPECT_FALSE(::IntersectRect(&both, &before, &box))
                << "choice " << i << " of which " << chosen << " is chosen";
            before = box;
        }
    }
}

}  // namespace
}  // namespace looks
