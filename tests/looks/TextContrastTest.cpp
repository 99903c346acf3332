// How well the letters of an outlined description stand out from their outline, by number.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

#include "UI/CardStyle.h"
#include "common/GdiPlusFunc.h"
#include "common/Rendering.h"
#include "looks/Looks.h"

namespace looks {
namespace {

// Descriptions with narrow and with round letters.
constexpr const wchar_t* kTexts[] = {L"Switch the sound on or off", L"Lock this computer", L"Helligkeit einstellen",
                                     L"Funk ein- oder ausschalten"};

// The height of a card's font at 96 dots per inch: 11 pixels at ratio 1.0.
LONG fontHeight(double ratio) {
    return static_cast<LONG>(-11 * ratio);
}

// Each text in a box of its own, one below the other.
Picture descriptions(double ratio) {
    const int width = static_cast<int>(96 * ratio);
    const int height = static_cast<int>(34 * ratio) + 4;
    const rendering::Canvas canvas(width, height * static_cast<int>(std::size(kTexts)));
    Gdiplus::Graphics graphics(canvas.dc());
    LOGFONTW face{};
    face.lfHeight = fontHeight(ratio);
    ::lstrcpynW(face.lfFaceName, L"MS Shell Dlg", LF_FACESIZE);
    std::unique_ptr<Gdiplus::Font> font;
    {
        const GraphicsDc dc(graphics);
        font = std::make_unique<Gdiplus::Font>(dc.get(), &face);
    }
    const CDescFormat format;
    float top = 0.0F;
    for (const wchar_t* text : kTexts) {
        Gdiplus::RectF box(0.0F, top, static_cast<float>(width), static_cast<float>(height));
        box.Inflate(-static_cast<float>(kOutlineWidth), 0.0F);
        drawOutlineText(graphics, box, text, *font, &format, kOutlineWidth, kWhite, kBlack);
        top += static_cast<float>(height);
    }
    return {canvas.frame().width, canvas.frame().height, canvas.pixels()};
}

struct Stems {
    double mean = 1.0;  // geometric
    double low = 1.0;   // a tenth of all is below
    std::size_t count = 0;
};

// For each two neighbouring stems of a row: how much lighter they are than the darkest pixel between them.
Stems measure(const Picture& texts, Backdrop backdrop) {
    constexpr int kWithinWord = 5;  // pixels; two words are not neighbours
    constexpr DWORD kStem = 0x70;   // of the letters' colour
    const Picture seen = onBackdrop(texts, backdrop);
    std::vector<double> found;
    for (int y = 0; y < texts.height; ++y) {
        const auto ink = [&](int x) { return texts.row(y)[x] >> 16U & 0xFFU; };
        int last = -1;
        for (int x = 1; x + 1 < texts.width; ++x) {
            if (ink(x) < kStem || ink(x) < ink(x - 1) || ink(x) <= ink(x + 1)) {
                continue;
            }
            if (last >= 0 && x - last <= kWithinWord) {
                double darkest = 1.0;
                for (int between = last + 1; between < x; ++between) {
                    darkest = std::min(darkest, luminance(seen.row(y)[between]));
                }
                const double light = std::min(luminance(seen.row(y)[last]), luminance(seen.row(y)[x]));
                found.push_back(light > darkest ? contrast(light, darkest) : 1.0);
            }
            last = x;
        }
    }
    if (found.empty()) {
        return {};
    }
    std::sort(found.begin(), found.end());
    double sum = 0.0;
    for (const double value : found) {
        sum += std::log(value);
    }
    return {std::exp(sum / static_cast<double>(found.size())), found[found.size() / 10], found.size()};
}

// At least so many stems are told apart from their neighbours, with at least so much contrast.
struct Least {
    double ratio;
    std::size_t stems;
    double mean;
    double low;
};
class OutlinedDescription : public testing::TestWithParam<Least> {};

TEST_P(OutlinedDescription, StemsStandOutFromTheOutlineBetweenThem) {
    const Picture texts = descriptions(GetParam().ratio);
    for (const Backdrop backdrop : kBackdrops) {
        const Stems stems = measure(texts, backdrop);
        std::printf("ratio %.2f on %-5s %4u stems, mean contrast %.2f, a tenth below %.2f\n", GetParam().ratio,
                    nameOf(backdrop), static_cast<unsigned>(stems.count), stems.mean, stems.low);
        EXPECT_GE(stems.count, GetParam().stems) << nameOf(backdrop);
        EXPECT_GE(stems.mean, GetParam().mean) << nameOf(backdrop);
        EXPECT_GE(stems.low, GetParam().low) << nameOf(backdrop);
    }
}

INSTANTIATE_TEST_SUITE_P(Ratios, OutlinedDescription,
                         testing::Values(Least{0.4, 115, 4.0, 1.25}, Least{0.47, 165, 4.9, 2.3},
                                         Least{0.6, 330, 6.3, 1.8}, Least{0.75, 465, 6.9, 1.65},
                                         Least{0.85, 525, 7.6, 1.3}, Least{1.0, 640, 10.0, 1.5},
                                         Least{1.25, 620, 11.6, 2.3}));

// For people: tools/looks.
TEST(DescriptionSheets, Draw) {
    if (!Sheet::wanted()) {
        return;
    }
    Sheet sheet;
    for (const double ratio : {0.47, 0.6, 0.75, 0.85, 1.0}) {
        const Picture texts = descriptions(ratio);
        for (const Backdrop backdrop : kBackdrops) {
            sheet.add(enlarged(onBackdrop(texts, backdrop), 2));
        }
        sheet.newRow();
    }
    EXPECT_TRUE(sheet.write("descriptions"));
}

}  // namespace
}  // namespace looks
