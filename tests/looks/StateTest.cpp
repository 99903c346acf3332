// What can be checked of the looks by number, in every state, at every ratio, on every backdrop.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

#include "Messages.h"
#include "common/PictureStore.h"
#include "looks/LooksFixture.h"

namespace looks {
namespace {

class States : public LooksTest, public testing::WithParamInterface<double> {
 protected:
    [[nodiscard]] static double ratio() { return GetParam(); }
};
INSTANTIATE_TEST_SUITE_P(Ratios, States, testing::ValuesIn(kRatios));

TEST_P(States, StripKeepsEveryCardsTextInItsOwnColumns) {
    for (const bool bottom : {false, true}) {
        showStrip(ratio(), bottom, {kMute, kPlans, kBrightness, kMute});
        const Layer strip = stripLayer();
        const RECT place = items::windowRect(m_room.stripWindow());
        EXPECT_EQ(strip.place.x, place.left);
        EXPECT_EQ(strip.place.y, place.top);
        EXPECT_EQ(strip.picture.width, place.right - place.left);
        EXPECT_EQ(strip.picture.height, place.bottom - place.top);
        for (std::size_t i = 1; i < 4; ++i) {
            const geometry::Card& parts = BlackCardSeam::parts(card(i));
            for (int y = parts.desc.top; y < parts.desc.bottom; ++y) {
                for (const int x : {static_cast<int>(parts.desc.left) - 1, static_cast<int>(parts.desc.left)}) {
                    EXPECT_EQ(strip.picture.row(y)[x] >> 24U, 0U) << "card " << i << " at " << x << ", " << y;
                }
            }
        }
    }
}

TEST_P(States, CaptionsStandOutFromTheirCards) {
    showStrip(ratio(), false, {kMute, kPlans, kBrightness});
    const Picture strip = stripLayer().picture;
    for (const Backdrop backdrop : kBackdrops) {
        const Picture seen = onBackdrop(strip, backdrop);
        for (std::size_t i = 0; i < 3; ++i) {
            const double found = letterContrast(seen, BlackCardSeam::parts(card(i)).caption);
            EXPECT_GE(found, 4.5) << "card " << i << " on " << nameOf(backdrop);
        }
    }
}

TEST_P(States, TextsOfTheEnlargedCardStandOutAndKeepInside) {
    for (const bool bottom : {false, true}) {
        CBlackCard& middle = openCard(ratio(), bottom, kMute);
        CLargeCardDlg& enlarged = *BlackCardSeam::largeCard(middle);
        const Layer layer = layerOf(LargeCardSeam::layered(enlarged)->m_hWnd);
        const RECT place = items::windowRect(enlarged.m_hWnd);
        ASSERT_EQ(layer.picture.width, place.right - place.left);
        ASSERT_EQ(layer.picture.height, place.bottom - place.top);
        const geometry::LargeCardTexts& texts = LargeCardSeam::rects(enlarged);
        RECT status = texts.text;
        status.bottom = status.top + static_cast<int>(16 * ratio());  // its first line
        for (const Backdrop backdrop : kBackdrops) {
            const Picture seen = onBackdrop(layer.picture, backdrop);
            EXPECT_GE(letterContrast(seen, texts.caption), 4.5) << nameOf(backdrop);
            EXPECT_GE(letterContrast(seen, texts.desc), 4.5) << nameOf(backdrop);
            EXPECT_GE(letterContrast(seen, status), 4.5) << nameOf(backdrop);
        }
    }
}

// The rows of the parts of one card that another does not have, from the first to the last; light ones only.
std::pair<int, int> addedRows(const Picture& with, const Picture& without) {
    std::pair<int, int> rows{-1, -1};
    for (int y = 0; y < with.height; ++y) {
        for (int x = 0; x < with.width; ++x) {
            const DWORD pixel = with.row(y)[x];
            if (pixel != without.row(y)[x] && luminance(pixel | 0xFF000000U) > 0.15) {
                rows = {rows.first < 0 ? y : rows.first, y};
            }
        }
    }
    return rows;
}

// The glyph's rows: those between description and status, both of which are empty, that are light in the middle.
std::pair<int, int> glyphRows(const Picture& card, double ratio) {
    std::pair<int, int> rows{-1, -1};
    for (int y = static_cast<int>(28 * ratio); y < static_cast<int>(93 * ratio); ++y) {
        for (int x = card.width / 4; x < card.width * 3 / 4; ++x) {
            if (luminance(card.row(y)[x] | 0xFF000000U) > 0.15) {
                rows = {rows.first < 0 ? y : rows.first, y};
            }
        }
    }
    return rows;
}

TEST_P(States, DescriptionOfThreeLinesKeepsOffCaptionAndGlyph) {
    m_room.setRatio(ratio());
    for (const UINT picture : {kVolumeLargeCard, kKeyboardLightLargeCard}) {
        const Picture empty = describedCard(picture, L"", L"");
        const auto [first, last] = addedRows(describedCard(picture, kThreeLines, L""), empty);
        ASSERT_GE(first, 0);
        EXPECT_GE(last - first, static_cast<int>(28 * ratio())) << "three lines";
        EXPECT_GE(first, static_cast<int>(26 * ratio()));
        const auto [glyphTop, glyphBottom] = glyphRows(empty, ratio());
        ASSERT_GE(glyphTop, 0);
        EXPECT_GE(glyphTop - last - 1, static_cast<int>(2 * ratio())) << "air above the glyph of picture " << picture;
        const auto status =
            addedRows(describedCard(picture, kThreeLines, L"Status"), describedCard(picture, kThreeLines, L""));
        EXPECT_GE(status.first - glyphBottom - 1, static_cast<int>(2 * ratio())) << "air below it";
    }
}

// The rim of a round item over a backdrop: its outer fifth.
struct Rim {
    double lightest = 0.0;  // a tenth of it is lighter, or darker
    double darkest = 1.0;
    double toGround = 1.0;     // contrast of its lightest or darkest part to the backdrop
    double leastOutline = 21;  // of all directions: contrast of the ring to the line outside it
};

// From the edge inwards: the luminances that one direction crosses.
std::vector<double> rayOf(const Picture& seen, double angle) {
    constexpr double kInnermost = 0.75;
    const double radius = seen.width / 2.0;
    std::vector<double> lights;
    for (double away = radius - 0.5; away >= radius * kInnermost; away -= 0.5) {
        const int x = static_cast<int>(radius + away * std::cos(angle));
        const int y = static_cast<int>(radius + away * std::sin(angle));
        lights.push_back(luminance(seen.row(y)[x]));
    }
    return lights;
}

// How much the lightest point of the ray stands out from the darkest one outside it.
double outlineOf(const std::vector<double>& ray) {
    const auto ring = std::max_element(ray.begin(), ray.end());
    return contrast(*ring, *std::min_element(ray.begin(), ring + 1));
}

Rim rimOf(const Picture& item, Backdrop backdrop) {
    constexpr int kDirections = 48;
    const int size = item.width;
    const Picture seen = onBackdrop(item, backdrop);
    const Picture ground = backdropPicture(backdrop, size, item.height);
    std::vector<double> lights;
    std::vector<double> grounds;
    for (int y = 0; y < item.height; ++y) {
        for (int x = 0; x < size; ++x) {
            const double away = std::hypot(x + 0.5 - size / 2.0, y + 0.5 - size / 2.0) / (size / 2.0);
            if (away <= 1.0 && away >= 0.82) {
                lights.push_back(luminance(seen.row(y)[x]));
                grounds.push_back(luminance(ground.row(y)[x]));
            }
        }
    }
    std::sort(lights.begin(), lights.end());
    std::sort(grounds.begin(), grounds.end());
    Rim rim;
    rim.lightest = lights[lights.size() * 9 / 10];
    rim.darkest = lights[lights.size() / 10];
    const double middle = grounds[grounds.size() / 2];
    rim.toGround = std::max(contrast(rim.lightest, middle), contrast(rim.darkest, middle));
    for (int i = 0; i < kDirections; ++i) {
        const std::vector<double> ray = rayOf(seen, 2.0 * std::acos(-1.0) * i / kDirections);
        rim.leastOutline = std::min(rim.leastOutline, outlineOf(ray));
    }
    return rim;
}

// Without its size and without colours: it has a light ring with a dark line around it, and the others' ring is dimmer.
TEST_P(States, ChosenItemIsSeenOnEveryBackdropAndDiffersFromTheOthers) {
    CBlackCard& middle = openCard(ratio(), false, kMute);
    const auto items = BlackCardSeam::items(middle);
    ASSERT_EQ(items.size(), 2U);
    auto& chosen = dynamic_cast<CCircleItemDlg&>(*items[static_cast<std::size_t>(BlackCardSeam::selected(middle))]);
    auto& other = dynamic_cast<CCircleItemDlg&>(*items[static_cast<std::size_t>(1 - BlackCardSeam::selected(middle))]);
    const Picture large = layerOf(CircleItemSeam::largeWnd(chosen)).picture;
    ASSERT_EQ(large.width, items[0]->width());
    // The small picture is in the upper left corner of a frame as large as the item.
    constexpr int kInnerMargin = 11;
    const int inner = items[0]->width() - 2 * kInnerMargin;
    ASSERT_GT(inner, 0);
    const Picture small =
        scalePicture(layerOf(CircleItemSeam::smallWnd(other)).picture, {0, 0, inner, inner}, {inner, inner});
    for (const Backdrop backdrop : kBackdrops) {
        const Rim rim = rimOf(large, backdrop);
        EXPECT_GE(rim.toGround, 3.0) << nameOf(backdrop);
        EXPECT_GE(contrast(rim.lightest, rim.darkest), 3.0) << nameOf(backdrop);
        // At the smallest ratio, the line is half a pixel wide.
        EXPECT_GE(rim.leastOutline, ratio() < 0.5 ? 1.9 : 3.0) << nameOf(backdrop);
        EXPECT_GE(contrast(rim.lightest, rimOf(small, backdrop).lightest), 1.5) << nameOf(backdrop);
    }
}

TEST_P(States, LatchedModifierShowsItsMarkAndNothingElseChanges) {
    for (const bool bottom : {false, true}) {
        showStrip(ratio(), bottom, {kMute, kPlans, kMute});
        const Picture held = stripLayer().picture;
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 1, 0);
        paintAll();
        const Picture latched = stripLayer().picture;
        const RECT place = geometry::latchMark(card(2).imageRect(), ratio());
        int changed = 0;
        for (int y = 0; y < held.height; ++y) {
            for (int x = 0; x < held.width; ++x) {
                if (held.row(y)[x] != latched.row(y)[x]) {
                    ++changed;
                    EXPECT_TRUE(::PtInRect(&place, {x, y})) << x << ", " << y;
                }
            }
        }
        const int size = place.right - place.left;
        EXPECT_GE(changed, size * size / 4);
        for (const Backdrop backdrop : kBackdrops) {
            EXPECT_GE(letterContrast(onBackdrop(latched, backdrop), place), 3.0) << nameOf(backdrop);
        }
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 0, 0);
        paintAll();
        EXPECT_EQ(stripLayer().picture.pixels, held.pixels) << "the mark goes with the latch";
    }
}

// How often that had a picture scaled.
int scalingsOf(const std::function<void()>& paints) {
    const int before = scalings();
    paints();
    return scalings() - before;
}

void paintEveryWindowAgain() {
    std::vector<HWND> windows;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM list) -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    for (const HWND window : windows) {
        if (::IsWindowVisible(window) != FALSE) {
            ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        }
    }
}

TEST_P(States, NothingIsScaledWhenItIsPaintedAgain) {
    const auto paintTwice = [] {
        paintEveryWindowAgain();
        paintEveryWindowAgain();
    };
    for (const bool bottom : {false, true}) {
        showStrip(ratio(), bottom, {kMute, kPlans, kBrightness});
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 1, 0);
        paintAll();
        EXPECT_EQ(scalingsOf(paintTwice), 0) << "strip with the latch's mark";
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 0, 0);
        for (const Offer& offer : {kMute, kPlans, kBrightness, kRadios}) {
            openCard(ratio(), bottom, offer);
            EXPECT_EQ(scalingsOf(paintTwice), 0) << "enlarged card and items of " << lowerName(offer);
        }
        openNotice(ratio(), bottom);
        EXPECT_EQ(scalingsOf(paintTwice), 0) << "notice";
        for (const LONG chosen : {0L, 1L}) {
            openDisplays(ratio(), bottom, true, chosen);
            EXPECT_EQ(scalingsOf(paintTwice), 0) << "display choice " << chosen << " with its preview";
        }
        showHoverStrip(ratio(), bottom);
        EXPECT_EQ(scalingsOf(paintTwice), 0) << "hover strip";
    }
}

TEST_P(States, NothingIsScaledWhenAChoiceIsChosenAgainOrACardOpensAgain) {
    CBlackCard& middle = openCard(ratio(), false, kMute, 2);
    const auto step = [&] {
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_GE(middle.notifyHotkey(kKey, FALSE, false), 0);
            paintAll();
        }
    };
    step();
    EXPECT_EQ(scalingsOf(step), 0) << "both items were chosen before";
    EXPECT_EQ(scalingsOf([&] { openCard(ratio(), false, kMute, 2); }), 0) << "the pictures outlive their windows";
}

TEST(Scalings, AreCountedWhoeverScales) {
    MasterPicture master(transparent(8, 8));
    const auto scale = [&](int size) { static_cast<void>(master.scaled({0, 0, 8, 8}, {size, size})); };
    EXPECT_EQ(scalingsOf([&] { scale(4); }), 1);
    EXPECT_EQ(scalingsOf([&] { scale(4); }), 0) << "kept";
    EXPECT_EQ(scalingsOf([&] { scale(5); }), 1);
    const GdiplusSession session;
    Gdiplus::Bitmap source(8, 8, PixelFormat32bppPARGB);
    Gdiplus::Bitmap target(16, 16, PixelFormat32bppPARGB);
    Gdiplus::Graphics graphics(&target);
    EXPECT_EQ(scalingsOf([&] { graphics.DrawImage(&source, 0, 0, 8, 8); }), 0);
    EXPECT_EQ(scalingsOf([&] { graphics.DrawImage(&source, 0, 0, 16, 8); }), 1);
    EXPECT_EQ(scalingsOf([&] { graphics.DrawImage(&source, {0, 0, 4, 4}, 0, 0, 8, 8, Gdiplus::UnitPixel); }), 1);
}

// The corner at the upper left, and the others turned there.
struct Corner {
    const char* name;
    bool right;
    bool bottom;
};
constexpr Corner kCorners[] = {{"upper left", false, false},
                               {"upper right", true, false},
                               {"lower left", false, true},
                               {"lower right", true, true}};

// On any backdrop, a pixel that the corner's arc crosses is between the face and what is behind it, and of no other
// colour; no row is opaque up to a step.
TEST_P(States, SliderHasNoBlackEdgesAndNoStaircaseCorners) {
    constexpr int kFaceEnd = 0x99;  // of the face, at its ends
    m_plugin->currentItem = 7;
    CBlackCard& middle = openCard(ratio(), false, kBrightness);
    ASSERT_EQ(BlackCardSeam::items(middle).size(), 1U);
    const RECT place = items::windowRect(BlackCardSeam::items(middle)[0]->windowHandle());
    const std::vector<Layer> layers = visibleLayers();
    const Picture slider = onScreen(layers, place);
    const int corner = (place.bottom - place.top) / 8 + 1;
    for (const Backdrop backdrop : kBackdrops) {
        const Picture seen = onBackdrop(slider, backdrop);
        const Picture ground = backdropPicture(backdrop, seen.width, seen.height);
        for (const Corner& where : kCorners) {
            int between = 0;
            for (int i = 0; i < corner * corner; ++i) {
                const int x = where.right ? seen.width - 1 - i % corner : i % corner;
                const int y = where.bottom ? seen.height - 1 - i / corner : i / corner;
                for (const unsigned shift : {0U, 8U, 16U}) {
                    const int found = static_cast<int>(seen.row(y)[x] >> shift & 0xFFU);
                    const int behind = static_cast<int>(ground.row(y)[x] >> shift & 0xFFU);
                    EXPECT_GE(found, std::min(behind, kFaceEnd) - 3) << where.name << " on " << nameOf(backdrop);
                    EXPECT_LE(found, std::max(behind, kFaceEnd) + 6) << where.name << " on " << nameOf(backdrop);
                    between += std::abs(found - behind) > 8 && std::abs(found - kFaceEnd) > 8 ? 1 : 0;
                }
            }
            EXPECT_TRUE(between > 0 || backdrop == Backdrop::Photo) << where.name << " on " << nameOf(backdrop);
        }
        for (int x = corner; x < seen.width / 2; ++x) {  // the thumb is in the right half
            EXPECT_GT(luminance(seen.row(0)[x]), 0.3) << "a dark edge at " << x;
            EXPECT_GT(luminance(seen.row(seen.height - 1)[x]), 0.3) << "a dark edge at " << x;
        }
    }
}

TEST_P(States, SliderShowsItsThumb) {
    CBlackCard& middle = openCard(ratio(), false, kBrightness);
    ASSERT_EQ(BlackCardSeam::items(middle).size(), 1U);
    const RECT place = items::windowRect(BlackCardSeam::items(middle)[0]->windowHandle());
    const Picture slider = onScreen(visibleLayers(), place);
    int thumb = 0;
    for (int x = 0; x < slider.width; ++x) {
        // Beside the channel. The smallest thumb is all frame.
        const DWORD pixel = slider.row(slider.height / 3)[x];
        thumb += pixel == 0xFFFFFFFFU || pixel == 0xFF696969U ? 1 : 0;
    }
    EXPECT_GE(thumb, 2) << "no thumb";
}

}  // namespace
}  // namespace looks
