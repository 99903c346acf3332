#include "Logic/ZelCommonFunc.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "AppDouble.h"
#include "common/Handle.h"
#include "common/Rendering.h"
#include "framework/Wnd.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/ResourceCounters.h"

namespace {

using testing::ElementsAre;

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

TEST(TruncToInt, GoesTowardZeroAndNeverOverflows) {
    static_assert(truncToInt(2.99) == 2);
    static_assert(truncToInt(-2.99) == -2);
    static_assert(truncToInt(1.0e300) == kMaxInt);
    static_assert(truncToInt(-1.0e300) == kMinInt);
    EXPECT_EQ(truncToInt(0.0), 0);
    EXPECT_EQ(truncToInt(-0.9), 0);
    EXPECT_EQ(truncToInt(2147483646.9), 2147483646);
    EXPECT_EQ(truncToInt(std::numeric_limits<double>::infinity()), kMaxInt);
    EXPECT_EQ(truncToInt(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(MulDiv, EqualsTheSystems) {
    for (const int value : {0, 1, -1, -11, -12, -15, 15, 97, -1000, 1000000, kMaxInt, kMinInt + 1}) {
        for (const int denominator : {1, 3, 7, 96, 120, 144, 192, -96, kMaxInt}) {
            EXPECT_EQ(mulDiv(value, 96, denominator), ::MulDiv(value, 96, denominator)) << value << " " << denominator;
        }
    }
    EXPECT_EQ(mulDiv(5, 96, 0), -1);
}

TEST(NormalDpiFontHeight, FollowsTheCardsAndNotTheSystem) {
    static_assert(normalDpiFontHeight(-12, 96, 1.0) == -12);
    static_assert(normalDpiFontHeight(-15, 120, 1.0) == -12);
    static_assert(normalDpiFontHeight(-15, 120, 0.75) == -9);
    static_assert(normalDpiFontHeight(-11, 96, 0.75) == -8);
    static_assert(normalDpiFontHeight(-11, 96, 1.25) == -13);
    static_assert(normalDpiFontHeight(-16, 144, 1.0) == -11);
    static_assert(normalDpiFontHeight(0, 96, 1.25) == 0);
    EXPECT_EQ(normalDpiFontHeight(16, 192, 1.0), 8);
}

TEST(IndexInContainer, HoldsFromZeroToTheLast) {
    constexpr std::array<int, 3> kThree{};
    static_assert(indexInContainer(0, kThree) && indexInContainer(2, kThree));
    EXPECT_FALSE(indexInContainer(3, kThree));
    EXPECT_FALSE(indexInContainer(-1, kThree));
    EXPECT_FALSE(indexInContainer(0, std::vector<int>()));
    EXPECT_FALSE(indexInContainer(std::numeric_limits<long>::min(), kThree));
    EXPECT_FALSE(indexInContainer(std::numeric_limits<long>::max(), kThree));
}

TEST(WorkArea, IsTheSystems) {
    RECT expected{};
    ASSERT_NE(::SystemParametersInfoW(SPI_GETWORKAREA, 0, &expected, 0), FALSE);
    RECT rect{};
    EXPECT_EQ(getWorkArea(rect), S_OK);
    EXPECT_TRUE(::EqualRect(&rect, &expected));
    EXPECT_LT(rect.left, rect.right);
}

class WndFontTest : public testing::Test {
 protected:
    WndFontTest() {
        rendering::setImageRatio(1.0);
        EXPECT_TRUE(m_wnd.CreateEx(0, L"Static", L"", WS_POPUP, RECT{0, 0, 50, 20}, nullptr, nullptr));
    }
    ~WndFontTest() override {
        m_wnd.DestroyWindow();
        rendering::setImageRatio(1.0);
    }
    WndFontTest(const WndFontTest&) = delete;
    WndFontTest& operator=(const WndFontTest&) = delete;

    void giveFont(const LOGFONTW& logFont) {
        m_hFont.reset(::CreateFontIndirectW(&logFont));
        ::SendMessageW(m_wnd.m_hWnd, WM_SETFONT, reinterpret_cast<WPARAM>(m_hFont.get()), FALSE);
    }
    void giveFont(LONG height) {
        LOGFONTW logFont{};
        logFont.lfHeight = height;
        ::lstrcpynW(logFont.lfFaceName, L"Tahoma", LF_FACESIZE);
        giveFont(logFont);
    }
    LOGFONTW normalFont() {
        std::unique_ptr<Gdiplus::Font> font;
        EXPECT_EQ(getNormalDPIWndFont(&m_wnd, m_graphics, font), S_OK);
        LOGFONTW logFont{};
        if (font != nullptr) {
            font->GetLogFontW(&m_graphics, &logFont);
        }
        return logFont;
    }
    static int screenDpi() {
        const common::WindowDc screen(nullptr);
        return ::GetDeviceCaps(screen.get(), LOGPIXELSY);
    }

    support::LogCapture m_log;
    common::UniqueFont m_hFont;
    CWnd m_wnd;
    rendering::Canvas m_canvas{50, 20};
    Gdiplus::Graphics m_graphics{m_canvas.dc()};
};

TEST_F(WndFontTest, TheWindowsFontIsScaledByTheImageRatio) {
    giveFont(-20);
    for (const double ratio : {1.0, 0.75, 0.8, 1.25}) {
        rendering::setImageRatio(ratio);
        EXPECT_EQ(normalFont().lfHeight, normalDpiFontHeight(-20, screenDpi(), ratio)) << ratio;
    }
    EXPECT_THAT(m_log.errors(), testing::IsEmpty());
}

TEST_F(WndFontTest, EverythingButTheSizeStays) {
    LOGFONTW logFont{};
    logFont.lfHeight = -16;
    logFont.lfWeight = FW_BOLD;
    logFont.lfItalic = TRUE;
    logFont.lfStrikeOut = TRUE;
    ::lstrcpynW(logFont.lfFaceName, L"Tahoma", LF_FACESIZE);
    giveFont(logFont);
    const LOGFONTW result = normalFont();
    EXPECT_STREQ(result.lfFaceName, L"Tahoma");
    EXPECT_EQ(result.lfWeight, FW_BOLD);
    EXPECT_NE(result.lfItalic, 0);
    EXPECT_NE(result.lfStrikeOut, 0);
    EXPECT_EQ(result.lfUnderline, 0);
}

TEST_F(WndFontTest, NoWindowObjectIsReportedAndTouchesNothing) {
    auto font = std::make_unique<Gdiplus::Font>(L"Tahoma", 12.0F);
    const Gdiplus::Font* const before = font.get();
    EXPECT_EQ(getNormalDPIWndFont(nullptr, m_graphics, font), E_POINTER);
    EXPECT_EQ(font.get(), before);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (getNormalDPIWndFont): Error Code: 0x80004003"));
}

TEST_F(WndFontTest, WindowsWithoutAFontOrWithoutAWindowEnd) {
    std::unique_ptr<Gdiplus::Font> font;
    EXPECT_EQ(getNormalDPIWndFont(&m_wnd, m_graphics, font), S_OK);
    const CWnd noWindow;
    EXPECT_EQ(getNormalDPIWndFont(&noWindow, m_graphics, font), S_OK);
    rendering::setImageRatio(std::numeric_limits<double>::infinity());
    giveFont(-12);
    EXPECT_EQ(getNormalDPIWndFont(&m_wnd, m_graphics, font), S_OK);
}

TEST_F(WndFontTest, WithoutMemoryForTheFontItIsMissing) {
    std::unique_ptr<Gdiplus::Font> font;
    HRESULT status = S_OK;
    {
        const support::FailingAllocation failing(1);
        status = getNormalDPIWndFont(&m_wnd, m_graphics, font);
    }
    EXPECT_EQ(status, E_POINTER);
    EXPECT_EQ(font, nullptr);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (getNormalDPIWndFont): Error Code: 0x80004003"));
}

TEST_F(WndFontTest, TheGraphicsCanDrawAfterwards) {
    giveFont(-12);
    static_cast<void>(normalFont());
    EXPECT_EQ(m_graphics.Clear(Gdiplus::Color(0xFFFF0000U)), Gdiplus::Ok);
    EXPECT_EQ(m_canvas.at(10, 10), 0xFFFF0000U);
}

TEST_F(WndFontTest, FontsLeaveNothingBehind) {
    giveFont(-12);
    for (int i = 0; i < 5; ++i) {
        static_cast<void>(normalFont());
    }
    const std::size_t objects = testsupport::gdiHandles();
    const std::size_t bytes = testsupport::heapBytes();
    constexpr std::size_t kRuns = 100;
    for (std::size_t i = 0; i < kRuns; ++i) {
        static_cast<void>(normalFont());
    }
    EXPECT_EQ(testsupport::gdiHandles(), objects);
    EXPECT_LT(testsupport::heapBytes(), bytes + kRuns * 20);
}

}  // namespace
