// High contrast: the windows in the system's colours, opaque, with every text at least 7:1, in the palettes that
// Windows ships; and the program's own look afterwards, pixel by pixel.
#include <algorithm>
#include <cstdio>

#include "common/Contrast.h"
#include "looks/LooksFixture.h"

namespace looks {
namespace {

using contrast::Palette;

struct Named {
    const char* name;
    Palette palette;
};
constexpr Named kPalettes[] = {
    {"black", {{0xFF000000, 0xFFFFFFFF}, {0xFF1AEBFF, 0xFF000000}}},
    {"white", {{0xFFFFFFFF, 0xFF000000}, {0xFF37006E, 0xFFFFFFFF}}},
    {"yellow on black", {{0xFF000000, 0xFFFFFF00}, {0xFF008000, 0xFFFFFFFF}}},
};
constexpr double kLeastContrast = 7.0;

// The picture is made of these two colours and what is between them, and of transparent pixels.
void expectColours(const Picture& picture, const contrast::Colours& colours, const char* where) {
    std::size_t ground = 0;
    std::size_t ink = 0;
    for (const DWORD pixel : picture.pixels) {
        ground += pixel == colours.ground ? 1U : 0U;
        ink += pixel == colours.ink ? 1U : 0U;
        for (const unsigned shift : {0U, 8U, 16U}) {
            const DWORD alpha = pixel >> 24U;
            const DWORD least = std::min(colours.ground >> shift & 0xFFU, colours.ink >> shift & 0xFFU) * alpha / 255U;
            const DWORD most = std::max(colours.ground >> shift & 0xFFU, colours.ink >> shift & 0xFFU) * alpha / 255U;
            const DWORD found = pixel >> shift & 0xFFU;
            ASSERT_TRUE(found + 1 >= least && found <= most + 1) << where << ": " << std::hex << pixel;
        }
    }
    EXPECT_GT(ground, 0U) << where;
    EXPECT_GT(ink, 0U) << where;
}

Picture partOf(const Picture& picture, const RECT& area) {
    const SIZE size{area.right - area.left, area.bottom - area.top};
    return scalePicture(picture, area, size);
}

class HighContrast : public LooksTest, public testing::WithParamInterface<double> {
 protected:
    ~HighContrast() override { contrast::use(std::nullopt); }
    static double ratio() { return GetParam(); }

    // The contrast of the letters in that part, on the worst backdrop.
    static double worst(const Picture& picture, const RECT& area, const contrast::Colours& colours) {
        const bool dark = luminance(colours.ink) < luminance(colours.ground);
        double least = 21.0;
        for (const Backdrop backdrop : kBackdrops) {
            least = std::min(least, letterContrast(onBackdrop(picture, backdrop), area, dark));
        }
        return least;
    }
};

TEST_P(HighContrast, EveryTextIsAtLeastSevenToOne) {
    for (const Named& named : kPalettes) {
        contrast::use(named.palette);
        const contrast::Colours& plain = named.palette.plain;
        const auto expect = [&](const char* what, double found) {
            std::printf("ratio %.2f, %s: %s %.1f:1\n", ratio(), named.name, what, found);
            EXPECT_GE(found, kLeastContrast) << what << ", " << named.name;
        };
        for (const bool bottom : {false, true}) {
            showStrip(ratio(), bottom, {kMute, kPlans, kBrightness});
            const Picture strip = stripLayer().picture;
            const geometry::Card parts = geometry::cardParts(
                geometry::cardRect(geometry::cardStrip(m_room.placement().workArea, 3, ratio(), bottom), 1), ratio(),
                bottom);
            expect("caption", worst(strip, parts.caption, plain));
            expect("description", worst(strip, BlackCardSeam::descText(card(1)).place(), plain));
        }
        CBlackCard& middle = openCard(ratio(), false, kMute);
        const CLargeCardDlg& enlarged = *BlackCardSeam::largeCard(middle);
        const Picture large = layerOf(LargeCardSeam::layered(enlarged)->m_hWnd).picture;
        const geometry::LargeCardTexts& texts = LargeCardSeam::rects(enlarged);
        expect("enlarged caption", worst(large, texts.caption, plain));
        expect("enlarged description", worst(large, texts.desc, plain));
        expect("status", worst(large, texts.text, plain));
        auto& chosen = dynamic_cast<CCircleItemDlg&>(
            *BlackCardSeam::items(middle)[static_cast<std::size_t>(BlackCardSeam::selected(middle))]);
        const RECT box = items::windowRect(CircleItemSeam::box(chosen).m_hWnd);
        const Picture note = onScreen(visibleLayers(), box);
        expect("caption box", worst(note, {2, 2, note.width - 2, note.height - 2}, plain));
        CErrorItemDlg& notice = openNotice(ratio(), false);
        const RECT place = items::windowRect(notice.m_hWnd);
        const Picture error = onScreen(visibleLayers(), place);
        expect("notice", worst(error, {4, 2, error.width - 4, error.height - 2}, plain));
        openDisplays(ratio(), false, true, 1);
    }
}

TEST_P(HighContrast, PicturesAreOpaqueAndInTheSystemsColours) {
    for (const Named& named : kPalettes) {
        contrast::use(named.palette);
        showStrip(ratio(), false, {kMute, kPlans, kBrightness});
        const Picture strip = stripLayer().picture;
        expectColours(strip, named.palette.plain, "strip");
        // Within its rounded border, a card lets nothing through; nor does the ground of a description.
        for (std::size_t i = 0; i < 3; ++i) {
            for (RECT solid : {card(i).imageRect(), BlackCardSeam::descText(card(i)).place()}) {
                const int margin = i == 0 ? 6 : 5;
                ::InflateRect(&solid, -margin, -margin);
                const Picture part = partOf(strip, solid);
                EXPECT_TRUE(std::all_of(part.pixels.begin(), part.pixels.end(),
                                        [](DWORD pixel) { return pixel >> 24U == 0xFFU; }));
            }
        }
        CBlackCard& middle = openCard(ratio(), false, kMute);
        const auto selected = static_cast<std::size_t>(BlackCardSeam::selected(middle));
        auto& chosen = dynamic_cast<CCircleItemDlg&>(*BlackCardSeam::items(middle)[selected]);
        auto& other = dynamic_cast<CCircleItemDlg&>(*BlackCardSeam::items(middle)[1 - selected]);
        expectColours(layerOf(LargeCardSeam::layered(*BlackCardSeam::largeCard(middle))->m_hWnd).picture,
                      named.palette.plain, "enlarged card");
        expectColours(layerOf(CircleItemSeam::largeWnd(chosen)).picture, named.palette.chosen, "selected item");
        expectColours(layerOf(CircleItemSeam::smallWnd(other)).picture, named.palette.plain, "other item");
        const Picture box = onScreen(visibleLayers(), items::windowRect(CircleItemSeam::box(chosen).m_hWnd));
        expectColours(box, named.palette.plain, "caption box");
        expectColours(showHoverStrip(ratio(), false).picture, named.palette.plain, "hover strip");
    }
}

TEST_P(HighContrast, SliderHasItsThumbInTheColourOfSelections) {
    for (const Named& named : kPalettes) {
        contrast::use(named.palette);
        CBlackCard& middle = openCard(ratio(), false, kBrightness);
        const Picture slider =
            onScreen(visibleLayers(), items::windowRect(BlackCardSeam::items(middle).at(0)->windowHandle()));
        for (const DWORD colour : {named.palette.plain.ground, named.palette.plain.ink, named.palette.chosen.ground}) {
            // The smallest thumb is all frame.
            EXPECT_TRUE(std::count(slider.pixels.begin(), slider.pixels.end(), colour) > 0 ||
                        (ratio() < 0.5 && colour == named.palette.chosen.ground))
                << named.name << ": " << std::hex << colour;
        }
    }
}

TEST_P(HighContrast, OwnLookComesBackPixelByPixel) {
    const auto draw = [this] {
        std::vector<Picture> all;
        showStrip(ratio(), false, {kMute, kPlans, kBrightness});
        all.push_back(stripLayer().picture);
        for (const Offer& offer : {kMute, kBrightness}) {
            openCard(ratio(), false, offer);
            all.push_back(shot(Backdrop::Photo));
        }
        openNotice(ratio(), false);
        all.push_back(shot(Backdrop::Photo));
        return all;
    };
    const std::vector<Picture> before = draw();
    contrast::use(kPalettes[0].palette);
    const std::vector<Picture> meanwhile = draw();
    contrast::use(std::nullopt);
    const std::vector<Picture> after = draw();
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_NE(before[i].pixels, meanwhile[i].pixels) << i;
        EXPECT_EQ(before[i].pixels, after[i].pixels) << i;
    }
}

// The smallest, the largest and one between; drawing is slow.
INSTANTIATE_TEST_SUITE_P(Ratios, HighContrast, testing::Values(0.4, 0.8, 1.25));

// For people: tools/looks.
class ContrastSheets : public LooksTest {};

TEST_F(ContrastSheets, Draw) {
    if (!Sheet::wanted()) {
        return;
    }
    Sheet sheet;
    for (const Named& named : kPalettes) {
        contrast::use(named.palette);
        for (const double ratio : {0.6, 1.0}) {
            sheet.newRow();
            showStrip(ratio, false, {kMute, kPlans, kBrightness});
            sheet.add(shot(Backdrop::Photo));
            for (const Offer& offer : {kMute, kBrightness}) {
                openCard(ratio, false, offer);
                sheet.add(shot(Backdrop::Photo));
            }
            openNotice(ratio, false);
            sheet.add(shot(Backdrop::Photo));
            openDisplays(ratio, false, true, 1);
            sheet.add(shot(Backdrop::Photo));
        }
    }
    contrast::use(std::nullopt);
    EXPECT_TRUE(sheet.write("high-contrast"));
}

}  // namespace
}  // namespace looks
