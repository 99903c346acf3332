// Composing, on a surface that only records its calls, and the surface of frames on real pixels.
#include "common/FrameSurface.h"

#include <gtest/gtest.h>

#include <limits>

#include "Rendering.h"

namespace {

using Gdiplus::RectF;
using rendering::alphaOf;
using rendering::blueOf;
using rendering::Canvas;
using rendering::redOf;

class NotingSurface final : public IFrameSurface {
 public:
    struct Call {
        RectF source;
        RectF destination;
        Gdiplus::ColorMatrix colours;
    };

    HRESULT drawImage(Gdiplus::Image&, const RectF& source, const RectF& destination,
                      const Gdiplus::ColorMatrix& colours) override {
        calls.push_back({source, destination, colours});
        return result;
    }

    std::vector<Call> calls;
    HRESULT result = S_OK;
};

constexpr RECT kTarget{10, 20, 106, 85};

TEST(AlphaMatrix, IsTheIdentityWithAScaledAlpha) {
    for (const DWORD alpha : {0U, 1U, 128U, 220U, 255U}) {
        const Gdiplus::ColorMatrix matrix = alphaMatrix(alpha);
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 5; ++column) {
                const float expected = row != column ? 0.0F : row == 3 ? static_cast<float>(alpha) / 255.0F : 1.0F;
                EXPECT_FLOAT_EQ(matrix.m[row][column], expected) << alpha << " at " << row << "," << column;
            }
        }
    }
}

TEST(ComposeImage, TakesTheWholeImageIntoTheRectangle) {
    NotingSurface surface;
    const auto image = rendering::plainImage(96, 65, 0xFFFFFFFFU);
    EXPECT_EQ(composeImage(surface, image.get(), 220, {}, kTarget), S_OK);
    ASSERT_EQ(surface.calls.size(), 1U);
    EXPECT_TRUE(surface.calls[0].source.Equals(RectF(0, 0, 96, 65)));
    EXPECT_TRUE(surface.calls[0].destination.Equals(RectF(10, 20, 96, 65)));
    EXPECT_FLOAT_EQ(surface.calls[0].colours.m[3][3], 220.0F / 255.0F);
}

TEST(ComposeImage, SliceDecidesTheRows) {
    const auto image = rendering::plainImage(96, 65, 0xFFFFFFFFU);
    const struct {
        SourceSlice slice;
        float top;
        float height;
    } cases[] = {{{61, 0}, 61, 4}, {{61, -5}, 61, 4}, {{10, 7}, 10, 7}, {{0, 100}, 0, 100}, {{65, 0}, 65, 0}};
    for (const auto& item : cases) {
        NotingSurface surface;
        EXPECT_EQ(composeImage(surface, image.get(), 255, item.slice, kTarget), S_OK);
        ASSERT_EQ(surface.calls.size(), 1U);
        EXPECT_TRUE(surface.calls[0].source.Equals(RectF(0, item.top, 96, item.height)))
            << item.slice.top << " " << item.slice.height;
    }
}

TEST(ComposeImage, NoImageIsNoWork) {
    NotingSurface surface;
    EXPECT_EQ(composeImage(surface, nullptr, 255, {}, kTarget), S_FALSE);
    EXPECT_TRUE(surface.calls.empty());
}

TEST(ComposeImage, HandsTheSurfacesFailureOn) {
    NotingSurface surface;
    surface.result = E_OUTOFMEMORY;
    const auto image = rendering::plainImage(2, 2, 0xFFFFFFFFU);
    EXPECT_EQ(composeImage(surface, image.get(), 255, {}, kTarget), E_OUTOFMEMORY);
}

TEST(ComposeImage, TakesAbsurdNumbersWithoutOverflow) {
    constexpr int kMin = std::numeric_limits<int>::min();
    constexpr int kMax = std::numeric_limits<int>::max();
    const auto image = rendering::plainImage(2, 2, 0xFFFFFFFFU);
    NotingSurface surface;
    EXPECT_EQ(composeImage(surface, image.get(), 0xFFFFFFFFU, {kMin, kMin}, RECT{kMin, kMin, kMax, kMax}), S_OK);
    EXPECT_EQ(composeImage(surface, image.get(), 0, {kMax, kMax}, RECT{kMax, kMax, kMin, kMin}), S_OK);
    EXPECT_GT(surface.calls[0].destination.Width, 4.0e9F);
}

class PixelSurfaceTest : public testing::Test {
 protected:
    Canvas m_canvas{40, 20};
    PixelSurface m_surface{m_canvas.frame()};
};

TEST_F(PixelSurfaceTest, FullOpacityKeepsTheImagesOwnAlpha) {
    const auto image = rendering::plainImage(8, 8, 0x80FF0000U);
    EXPECT_EQ(composeImage(m_surface, image.get(), 255, {}, RECT{4, 4, 12, 12}), S_OK);
    EXPECT_EQ(m_canvas.at(6, 6), 0x80800000U);
    EXPECT_EQ(m_canvas.at(3, 6), 0U);
    EXPECT_EQ(m_canvas.at(12, 6), 0U);
    EXPECT_EQ(m_canvas.at(6, 12), 0U);
}

TEST_F(PixelSurfaceTest, OpacityScalesThePixelsAlpha) {
    const auto opaque = rendering::plainImage(8, 8, 0xFFFF0000U);
    const auto half = rendering::plainImage(8, 8, 0x80FF0000U);
    EXPECT_EQ(composeImage(m_surface, opaque.get(), 220, {}, RECT{0, 0, 8, 8}), S_OK);
    EXPECT_EQ(composeImage(m_surface, half.get(), 220, {}, RECT{10, 0, 18, 8}), S_OK);
    EXPECT_EQ(composeImage(m_surface, opaque.get(), 0, {}, RECT{20, 0, 28, 8}), S_OK);
    EXPECT_NEAR(alphaOf(m_canvas.at(4, 4)), 220, 1);
    EXPECT_NEAR(redOf(m_canvas.at(4, 4)), 220, 1);
    EXPECT_NEAR(alphaOf(m_canvas.at(14, 4)), 128 * 220 / 255, 1);
    EXPECT_EQ(m_canvas.at(24, 4), 0U);
}

TEST_F(PixelSurfaceTest, LaterImagesLieOverEarlierOnes) {
    const auto red = rendering::plainImage(8, 8, 0xFFFF0000U);
    const auto blue = rendering::plainImage(8, 8, 0x800000FFU);
    EXPECT_EQ(composeImage(m_surface, red.get(), 255, {}, RECT{0, 0, 8, 8}), S_OK);
    EXPECT_EQ(composeImage(m_surface, blue.get(), 255, {}, RECT{0, 0, 8, 8}), S_OK);
    EXPECT_EQ(alphaOf(m_canvas.at(4, 4)), 255);
    EXPECT_NEAR(redOf(m_canvas.at(4, 4)), 127, 1);
    EXPECT_NEAR(blueOf(m_canvas.at(4, 4)), 128, 1);
}

TEST_F(PixelSurfaceTest, ScalesToTheRectangle) {
    const auto image = rendering::plainImage(4, 4, 0xFF00FF00U);
    EXPECT_EQ(composeImage(m_surface, image.get(), 255, {}, RECT{0, 0, 20, 20}), S_OK);
    EXPECT_EQ(m_canvas.at(10, 10), 0xFF00FF00U);
    EXPECT_EQ(m_canvas.at(21, 10), 0U);
}

TEST_F(PixelSurfaceTest, AnImageThatFailedToLoadIsAFailure) {
    const auto image = rendering::brokenImage();
    EXPECT_EQ(composeImage(m_surface, image.get(), 255, {}, kTarget), E_FAIL);
    EXPECT_EQ(composeImage(m_surface, image.get(), 100, {}, kTarget), E_FAIL);
}

}  // namespace
