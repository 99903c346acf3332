#include "functions/Zoom.h"

#include <gtest/gtest.h>

#include "plugins/windows/Waiting.h"
#include "system/fake/FakeDesktopIcons.h"

namespace win {
namespace {

TEST(ZoomSizes, TheNearestOneCounts) {
    constexpr ZoomTable kTable{48, 96, 144};
    EXPECT_EQ(nearestSize(kTable, 0), 0U);
    EXPECT_EQ(nearestSize(kTable, 48), 0U);
    EXPECT_EQ(nearestSize(kTable, 72), 0U) << "between two, the smaller";
    EXPECT_EQ(nearestSize(kTable, 73), 1U);
    EXPECT_EQ(nearestSize(kTable, 96), 1U);
    EXPECT_EQ(nearestSize(kTable, 256), 2U);
}

class Zoom : public testing::Test {
 protected:
    std::shared_ptr<CFakeDesktopIcons> m_pDesktop = std::make_shared<CFakeDesktopIcons>();
    CZoom m_function{m_pDesktop};
};

TEST_F(Zoom, IsOfferedWhereThereIsADesktop) {
    EXPECT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.items(), 0x7U);
    m_pDesktop->bDesktop = false;
    EXPECT_EQ(CZoom(m_pDesktop).initialize(), L"There is no desktop with icons.");
}

TEST_F(Zoom, AChoiceIsCurrentAtOnceAndVerified) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.currentItem(), 0);
    EXPECT_TRUE(m_function.select(2));
    EXPECT_EQ(m_function.currentItem(), 2);
    EXPECT_TRUE(soon([&] { return m_pDesktop->now == 2; }));
    EXPECT_FALSE(m_function.select(3));
    EXPECT_FALSE(m_function.select(-1));
    m_pDesktop->bRefuses = true;
    EXPECT_TRUE(m_function.select(1));
    EXPECT_TRUE(soon([&] { return m_function.currentItem() == 2; }));
}

TEST_F(Zoom, OpensWithAChangeThatWasMadeElsewhere) {
    m_pDesktop->dwReadMs = 5;
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(someTime([&](int nTry) {
        m_pDesktop->now = nTry % 2 == 0 ? 2 : 1;
        (void)m_function.items();
        const bool bAtOnce = m_function.currentItem() == static_cast<LONG>(m_pDesktop->now);
        return soon([&] { return m_function.currentItem() == static_cast<LONG>(m_pDesktop->now); }) && bAtOnce;
    }));
}

// The icon metrics of the prefix: set, visible to everybody, and restored.
TEST(RealZoom, ResizesTheIconsOfThisDesktop) {
    const auto pDesktop = makeWindowsDesktopIcons();
    const std::optional<std::size_t> before = pDesktop->size();
    ASSERT_TRUE(before);
    ICONMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    ASSERT_TRUE(::SystemParametersInfoW(SPI_GETICONMETRICS, sizeof(metrics), &metrics, 0));
    for (std::size_t size = 0; size < kZoomSizes; ++size) {
        pDesktop->resize(size);
        EXPECT_EQ(pDesktop->size(), size);
    }
    ICONMETRICSW largest{};
    largest.cbSize = sizeof(largest);
    ::SystemParametersInfoW(SPI_GETICONMETRICS, sizeof(largest), &largest, 0);
    EXPECT_GT(largest.iHorzSpacing, 75);
    EXPECT_LT(largest.lfFont.lfHeight, -12);
    ::SystemParametersInfoW(SPI_SETICONMETRICS, sizeof(metrics), &metrics, SPIF_UPDATEINIFILE);
    EXPECT_EQ(pDesktop->size(), *before);
}

}  // namespace
}  // namespace win
