// Scaling with precalculated numbers, and cached pictures.
#include "common/Picture.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Rendering.h"
#include "common/FrameSurface.h"
#include "common/PictureStore.h"
#include "common/ResourceFunc.h"

namespace {

using rendering::alphaOf;
using rendering::blueOf;
using rendering::Canvas;
using rendering::greenOf;
using rendering::redOf;

constexpr DWORD kWhitePixel = 0xFFFFFFFFU;
constexpr DWORD kBlackPixel = 0xFF000000U;

Picture plain(int width, int height, DWORD pixel) {
    return {width, height, std::vector<DWORD>(static_cast<std::size_t>(width * height), pixel)};
}

RECT whole(const Picture& picture) {
    return {0, 0, picture.width, picture.height};
}

int srgbOf(double light) {
    return static_cast<int>(std::lround(255.0 * (1.055 * std::pow(light, 1.0 / 2.4) - 0.055)));
}

// An even colour stays unchanged at every size and opacity.
TEST(ScalePicture, KeepsAnEvenColour) {
    for (const DWORD pixel : std::vector<DWORD>{0, kWhitePixel, kBlackPixel, 0xFF336699U, 0x80402010U, 0x01010101U}) {
        for (const SIZE size : {SIZE{1, 1}, SIZE{7, 5}, SIZE{20, 13}, SIZE{31, 40}}) {
            const Picture scaled = scalePicture(plain(20, 13, pixel), RECT{0, 0, 20, 13}, size);
            ASSERT_EQ(scaled.pixels.size(), static_cast<std::size_t>(size.cx * size.cy));
            EXPECT_EQ(scaled.pixels, std::vector<DWORD>(scaled.pixels.size(), pixel)) << size.cx << " of " << pixel;
        }
    }
}

TEST(ScalePicture, TheSameSizeGivesTheSamePixels) {
    Picture picture = plain(16, 9, 0);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = 0xFF000000U | static_cast<DWORD>(i * 7919U);
    }
    EXPECT_EQ(scalePicture(picture, whole(picture), {16, 9}).pixels, picture.pixels);
    const Picture part = scalePicture(picture, RECT{2, 3, 6, 5}, {4, 2});
    EXPECT_EQ(part.row(0)[0], picture.row(3)[2]);
    EXPECT_EQ(part.row(1)[3], picture.row(4)[5]);
}

TEST(ScalePicture, AveragesTheAreaInLinearLight) {
    Picture picture = plain(4, 4, kBlackPixel);
    picture.row(0)[0] = kWhitePixel;                      // a quarter of the first block
    picture.row(0)[2] = picture.row(1)[3] = kWhitePixel;  // half of the second
    const Picture scaled = scalePicture(picture, whole(picture), {2, 2});
    EXPECT_EQ(redOf(scaled.row(0)[0]), srgbOf(0.25));
    EXPECT_EQ(greenOf(scaled.row(0)[1]), srgbOf(0.5));
    EXPECT_EQ(blueOf(scaled.row(1)[0]), 0);
    EXPECT_EQ(alphaOf(scaled.row(1)[0]), 255);
}

// 3 pixels into 2: the middle one belongs to both halves.
TEST(ScalePicture, SharesAPixelBetweenThoseThatCoverIt) {
    Picture picture = plain(3, 1, kBlackPixel);
    picture.row(0)[1] = kWhitePixel;
    const Picture scaled = scalePicture(picture, whole(picture), {2, 1});
    EXPECT_EQ(redOf(scaled.row(0)[0]), srgbOf(1.0 / 3));
    EXPECT_EQ(scaled.row(0)[0], scaled.row(0)[1]);
}

// A transparent pixel has no colour that could darken the rest.
TEST(ScalePicture, WeightsColoursWithTheirAlpha) {
    Picture picture = plain(2, 1, 0);
    picture.row(0)[0] = 0xFFFF0000U;
    const Picture scaled = scalePicture(picture, whole(picture), {1, 1});
    EXPECT_EQ(scaled.row(0)[0], 0x80800000U);
}

TEST(ScalePicture, OutsideOfThePictureNothingShows) {
    const Picture picture = plain(4, 4, kWhitePixel);
    const Picture scaled = scalePicture(picture, RECT{0, 2, 4, 10}, {2, 4});
    EXPECT_EQ(scaled.row(0)[0], kWhitePixel);
    EXPECT_EQ(scaled.row(1)[1], 0U);
    EXPECT_EQ(scaled.row(3)[0], 0U);
    EXPECT_TRUE(scalePicture(picture, RECT{0, 0, 0, 4}, {2, 2}).pixels.empty());
    EXPECT_TRUE(scalePicture(picture, RECT{0, 0, 4, 4}, {2, 0}).pixels.empty());
}

// An enlarged edge stays between its two colours, and is steeper than a straight ramp.
TEST(ScalePicture, EnlargesWithoutRingsAndWithoutBlur) {
    Picture picture = plain(8, 8, kBlackPixel);
    for (int y = 0; y < 8; ++y) {
        std::fill(picture.row(y) + 4, picture.row(y) + 8, 0xFFFF8080U);
    }
    const Picture scaled = scalePicture(picture, whole(picture), {32, 32});
    EXPECT_EQ(scaled.row(16)[2], kBlackPixel);
    EXPECT_EQ(scaled.row(16)[29], 0xFFFF8080U);
    int between = 0;
    for (int x = 0; x < 32; ++x) {
        const int red = redOf(scaled.row(16)[x]);
        between += red > 0 && red < 255 ? 1 : 0;
        EXPECT_GE(red, x == 0 ? 0 : redOf(scaled.row(16)[x - 1])) << x;
    }
    EXPECT_LE(between, 6);
}

TEST(BlendPicture, LeavesOutWhatSticksOutOfTheFrame) {
    Canvas canvas(6, 4);
    blendPicture(canvas.frame(), plain(4, 4, kWhitePixel), 4, -2, 255);
    EXPECT_EQ(canvas.at(4, 1), kWhitePixel);
    EXPECT_EQ(canvas.at(3, 1), 0U);
    EXPECT_EQ(canvas.at(4, 2), 0U);
    blendPicture(canvas.frame(), plain(4, 4, kWhitePixel), 2147483647, 2147483647, 255);
    blendPicture(canvas.frame(), plain(4, 4, kWhitePixel), -2147483647, 0, 255);
    EXPECT_EQ(canvas.at(0, 0), 0U);
}

TEST(MasterPictureTest, ScalesOnceForEachSizeAndPart) {
    MasterPicture master(plain(96, 65, kWhitePixel));
    const RECT upper{0, 0, 96, 59};
    const RECT lower{0, 6, 96, 65};
    EXPECT_EQ(master.scaled(upper, {72, 44}).width, 72);
    EXPECT_EQ(master.scaled(upper, {72, 44}).height, 44);
    EXPECT_EQ(master.scalings(), 1);
    static_cast<void>(master.scaled(lower, {72, 44}));
    static_cast<void>(master.scaled(upper, {96, 59}));
    EXPECT_EQ(master.scalings(), 3);
    static_cast<void>(master.scaled(upper, {72, 44}));
    EXPECT_EQ(master.scalings(), 3);
    EXPECT_EQ(&master.scaled({0, 0, 96, 65}, {96, 65}), &master.pixels()) << "its own size needs no copy";
}

// The screen may change as often as it likes.
TEST(MasterPictureTest, ForgetsTheSizesThatAreShownNoMore) {
    MasterPicture master(plain(96, 65, kWhitePixel));
    for (int width = 40; width < 90; ++width) {
        static_cast<void>(master.scaled({0, 0, 96, 65}, {width, 30}));
    }
    EXPECT_LE(master.bytes(), 96U * 65U * 4U + 3U * 90U * 30U * 4U);
}

TEST(StoredImage, IsAnImageOfItsPixels) {
    const auto master = std::make_shared<MasterPicture>(plain(12, 7, 0x80402000U));
    StoredImage image(master);
    EXPECT_EQ(image.GetWidth(), 12U);
    EXPECT_EQ(image.GetHeight(), 7U);
    Gdiplus::Color colour;
    ASSERT_EQ(image.GetPixel(3, 3, &colour), Gdiplus::Ok);
    EXPECT_EQ(colour.GetAlpha(), 0x80);
    EXPECT_EQ(pixelsOf(image).pixels, master->pixels().pixels);
}

// However often a frame is composed, and by however many images of the same picture.
TEST(StoredImage, IsScaledOnceForAllFrames) {
    const auto master = std::make_shared<MasterPicture>(plain(96, 65, 0xFF102030U));
    Canvas canvas(100, 60);
    PixelSurface surface(canvas.frame());
    for (int frame = 0; frame < 5; ++frame) {
        StoredImage image(master);
        EXPECT_EQ(composeImage(surface, &image, 220, {0, 59}, RECT{10, 10, 82, 54}), S_OK);
    }
    EXPECT_EQ(master->scalings(), 1);
    EXPECT_EQ(canvas.at(9, 20), 0U);
    EXPECT_EQ(alphaOf(canvas.at(40, 30)), 255);
}

TEST(PictureStore, KeepsWhatIsUsedAndDropsTheRest) {
    const std::vector<std::byte> shown(10, std::byte{1});
    const std::vector<std::byte> other(10, std::byte{2});
    const auto kept = std::make_shared<MasterPicture>(plain(96, 65, kWhitePixel));
    picturestore::keep(shown, kept);
    picturestore::keep(other, std::make_shared<MasterPicture>(plain(96, 65, kBlackPixel)));
    EXPECT_EQ(picturestore::find(shown), kept);
    ASSERT_NE(picturestore::find(other), nullptr);
    for (int i = 0; i < 40; ++i) {
        const std::vector<std::byte> bytes(static_cast<std::size_t>(100 + i), std::byte{3});
        picturestore::keep(bytes, std::make_shared<MasterPicture>(plain(512, 512, kWhitePixel)));
    }
    EXPECT_EQ(picturestore::find(other), nullptr);
    EXPECT_EQ(picturestore::find(shown), kept);
}

}  // namespace
