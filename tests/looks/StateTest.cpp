// What can be checked of the looks by number, in every state, at every ratio, on every backdrop.
#include <algorithm>
#include <cmath>

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

TEST_P(States, NothingIsScaledWhenItIsPaintedAgain) {
    showStrip(ratio(), false, {kMute, kPlans, kBrightness});
    const auto scalings = [this] {
        int count = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto* const stored = dynamic_cast<StoredImage*>(card(i).image());
            EXPECT_NE(stored, nullptr);
            count += stored != nullptr ? stored->master().scalings() : 0;
        }
        return count;
    };
    const int before = scalings();
    for (int i = 0; i < 5; ++i) {
        m_room.strip().invalidate();
        paintAll();
    }
    EXPECT_EQ(scalings(), before);
}

TEST_P(States, SliderHasNoBlackEdgesAndShowsItsThumb) {
    CBlackCard& middle = openCard(ratio(), false, kBrightness);
    ASSERT_EQ(BlackCardSeam::items(middle).size(), 1U);
    const HWND slider = BlackCardSeam::items(middle)[0]->windowHandle();
    for (const Layer& layer : visibleLayers()) {
        if (layer.window != slider) {
            continue;
        }
        int thumb = 0;
        for (int x = 0; x < layer.picture.width; ++x) {
            for (int y = 0; y < layer.picture.height; ++y) {
                const DWORD pixel = layer.picture.row(y)[x];
                EXPECT_TRUE(pixel >> 24U == 0 || luminance(pixel) > 0.05) << x << ", " << y;
            }
            // Beside the channel. The smallest thumb is all frame.
            const DWORD pixel = layer.picture.row(layer.picture.height / 3)[x];
            thumb += pixel == 0xFFFFFFFFU || pixel == 0xFF696969U ? 1 : 0;
        }
        EXPECT_GE(thumb, 2) << "no thumb";
        return;
    }
    ADD_FAILURE() << "no slider";
}

}  // namespace
}  // namespace looks
