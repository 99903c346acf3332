#include "common/GdiPlusFunc.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "Rendering.h"
#include "common/Handle.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/ResourceCounters.h"

namespace {

using Gdiplus::RectF;
using rendering::alphaOf;
using rendering::Canvas;
using testing::ElementsAre;
using testing::IsEmpty;
using FontPtr = std::unique_ptr<Gdiplus::Font>;

constexpr wchar_t kSentence[] = L"The wireless adapter is switched off by the system";

LOGFONTW tahoma(LONG height) {
    LOGFONTW font{};
    font.lfHeight = height;
    font.lfWeight = FW_NORMAL;
    ::lstrcpynW(font.lfFaceName, L"Tahoma", LF_FACESIZE);
    return font;
}

class FontFitTest : public testing::Test {
 protected:
    FontPtr fontOf(const LOGFONTW& logFont) {
        const GraphicsDc dc(m_graphics);
        return std::make_unique<Gdiplus::Font>(dc.get(), &logFont);
    }
    FontPtr fontOf(LONG height) { return fontOf(tahoma(height)); }

    support::LogCapture m_log;
    LOGFONTW logFontOf(const Gdiplus::Font& font) {
        LOGFONTW logFont{};
        font.GetLogFontW(&m_graphics, &logFont);
        return logFont;
    }
    LONG heightOf(const Gdiplus::Font& font) { return logFontOf(font).lfHeight; }

    float textHeight(const wchar_t* text, const Gdiplus::Font& font, float width) {
        Gdiplus::StringFormat format;
        format.SetAlignment(Gdiplus::StringAlignmentCenter);
        format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
        RectF measured;
        m_graphics.MeasureString(text, -1, &font, RectF(0, 0, width, 0), &format, &measured);
        return measured.Height;
    }

    Canvas m_canvas{200, 100};
    Gdiplus::Graphics m_graphics{m_canvas.dc()};
};

TEST_F(FontFitTest, AFontThatFitsStaysTheSameObject) {
    FontPtr font = fontOf(-12);
    const Gdiplus::Font* const before = font.get();
    EXPECT_EQ(measureTextFont(m_graphics, L"Mute", RectF(0, 0, 100, 50), &font), S_OK);
    EXPECT_EQ(font.get(), before);
    EXPECT_EQ(heightOf(*font), -12);
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(FontFitTest, ShrinksToTheLargestSizeThatFits) {
    const RectF box(7, 9, 90, 34);
    FontPtr font = fontOf(-24);
    ASSERT_EQ(measureTextFont(m_graphics, kSentence, box, &font), S_OK);
    const LONG height = heightOf(*font);
    EXPECT_GT(height, -24);
    EXPECT_LT(height, -1);
    EXPECT_LT(textHeight(kSentence, *font, box.Width), box.Height);
    EXPECT_GE(textHeight(kSentence, *fontOf(height - 1), box.Width), box.Height);
}

TEST_F(FontFitTest, ABoxExactlyAsHighAsTheTextIsTooLow) {
    FontPtr font = fontOf(-16);
    const float height = textHeight(L"Mute", *font, 100);
    ASSERT_EQ(measureTextFont(m_graphics, L"Mute", RectF(0, 0, 100, height), &font), S_OK);
    EXPECT_EQ(heightOf(*font), -15);
}

TEST_F(FontFitTest, TheWidthWrapsTheText) {
    FontPtr narrow = fontOf(-20);
    FontPtr wide = fontOf(-20);
    ASSERT_EQ(measureTextFont(m_graphics, kSentence, RectF(0, 0, 60, 40), &narrow), S_OK);
    ASSERT_EQ(measureTextFont(m_graphics, kSentence, RectF(0, 0, 180, 40), &wide), S_OK);
    EXPECT_GT(heightOf(*narrow), heightOf(*wide));
}

TEST_F(FontFitTest, OnlyTheSizeChanges) {
    LOGFONTW logFont = tahoma(-20);
    logFont.lfWeight = FW_BOLD;
    logFont.lfUnderline = TRUE;
    FontPtr font = fontOf(logFont);
    ASSERT_EQ(measureTextFont(m_graphics, kSentence, RectF(0, 0, 90, 34), &font), S_OK);
    const LOGFONTW result = logFontOf(*font);
    EXPECT_EQ(result.lfWeight, FW_BOLD);
    EXPECT_NE(result.lfUnderline, 0);
    EXPECT_STREQ(result.lfFaceName, L"Tahoma");
}

TEST_F(FontFitTest, WhereNothingFitsTheSmallestSizeRemains) {
    constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
    for (const RectF& box : {RectF(0, 0, 50, 0), RectF(0, 0, 50, 1), RectF(0, 0, 50, -10), RectF(0, 0, 0, 0),
                             RectF(0, 0, -20, -20), RectF(0, 0, 50, kNoNumber), RectF(0, 0, kNoNumber, 0)}) {
        FontPtr font = fontOf(-14);
        ASSERT_EQ(measureTextFont(m_graphics, kSentence, box, &font), S_OK);
        EXPECT_EQ(heightOf(*font), -1) << box.Width << " x " << box.Height;
    }
}

TEST_F(FontFitTest, WithoutAFontTheDeviceContextsOwnIsTaken) {
    const LOGFONTW logFont = tahoma(-17);
    const common::UniqueFont gdiFont(::CreateFontIndirectW(&logFont));
    const common::SelectScope selected(m_canvas.dc(), gdiFont.get());
    Gdiplus::Graphics graphics(m_canvas.dc());
    FontPtr font;
    ASSERT_EQ(measureTextFont(graphics, L"Mute", RectF(0, 0, 100, 50), &font), S_OK);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(heightOf(*font), -17);
}

TEST_F(FontFitTest, NoPlaceForTheFontIsReported) {
    EXPECT_EQ(measureTextFont(m_graphics, L"Mute", RectF(0, 0, 100, 50), nullptr), E_POINTER);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (measureTextFont): Error Code: 0x80004003"));
}

TEST_F(FontFitTest, WithoutMemoryForAFontThereIsNone) {
    FontPtr font;
    HRESULT status = S_OK;
    {
        const support::FailingAllocation failing(1);
        status = measureTextFont(m_graphics, L"Mute", RectF(0, 0, 100, 50), &font);
    }
    EXPECT_EQ(status, E_POINTER);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (measureTextFont): Error Code: 0x80004003"));
}

TEST_F(FontFitTest, WithoutMemoryForASmallerFontTheLargerOneStays) {
    FontPtr font = fontOf(-40);
    const Gdiplus::Font* const before = font.get();
    HRESULT status = E_FAIL;
    {
        const support::FailingAllocation failing(1);
        status = measureTextFont(m_graphics, L"Mute", RectF(0, 0, 100, 10), &font);
    }
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(font.get(), before);
}

TEST_F(FontFitTest, NoTextAndBrokenFontsEnd) {
    FontPtr font = fontOf(-14);
    EXPECT_EQ(measureTextFont(m_graphics, nullptr, RectF(0, 0, 50, 20), &font), S_OK);
    EXPECT_EQ(measureTextFont(m_graphics, L"", RectF(0, 0, 50, 0), &font), S_OK);
    FontPtr broken = std::make_unique<Gdiplus::Font>(L"Tahoma", -5.0F);
    EXPECT_EQ(measureTextFont(m_graphics, kSentence, RectF(0, 0, 50, 0), &broken), S_OK);
}

TEST_F(FontFitTest, FittingLeavesNothingBehind) {
    const auto fit = [this] {
        FontPtr font = fontOf(-20);
        EXPECT_EQ(measureTextFont(m_graphics, kSentence, RectF(0, 0, 90, 34), &font), S_OK);
    };
    for (int i = 0; i < 5; ++i) {
        fit();
    }
    const std::size_t objects = testsupport::gdiHandles();
    const std::size_t bytes = testsupport::heapBytes();
    constexpr std::size_t kRuns = 40;
    for (std::size_t i = 0; i < kRuns; ++i) {
        fit();
    }
    EXPECT_EQ(testsupport::gdiHandles(), objects);
    EXPECT_LT(testsupport::heapBytes(), bytes + kRuns * 50);
}

// ---- outlined text ----

class OutlineTextTest : public FontFitTest {
 protected:
    static constexpr Gdiplus::ARGB kFill = 0xFFFFFFFFU;
    static constexpr Gdiplus::ARGB kOutline = 0xFF0000FFU;

    void draw(double width, const Gdiplus::StringFormat* format = nullptr) {
        drawOutlineText(m_graphics, m_layout, L"HIH", *m_pFont, format, width, kFill, kOutline);
    }

    const RectF m_layout{20, 20, 160, 60};
    FontPtr m_pFont = fontOf(-40);
};

TEST_F(OutlineTextTest, HalfTheOutlineSurroundsTheFilledLetters) {
    draw(6.0);
    const RECT all = m_canvas.ink();
    const RECT letters = m_canvas.ink(0x00FF0000U);  // the outline has no red
    ASSERT_LT(letters.left, letters.right) << "the letters are filled";
    EXPECT_NEAR(letters.left - all.left, 3, 1);
    EXPECT_NEAR(letters.top - all.top, 3, 1);
    EXPECT_NEAR(all.right - letters.right, 3, 1);
    EXPECT_NEAR(all.bottom - letters.bottom, 3, 1);
    const int middle = (letters.top + letters.bottom) / 2;
    EXPECT_EQ(m_canvas.at(letters.left - 2, middle), 0xFF0000FFU);
    EXPECT_EQ(m_canvas.at(letters.left + 2, middle), 0xFFFFFFFFU);
    EXPECT_EQ(m_canvas.at(all.left - 1, middle), 0U);
}

TEST_F(OutlineTextTest, TheLettersStandWherePlainTextWouldStand) {
    draw(3.0);
    const RECT letters = m_canvas.ink(0x00FF0000U);
    m_canvas.clear();
    Gdiplus::FontFamily family;
    m_pFont->GetFamily(&family);
    Gdiplus::GraphicsPath path;
    const Gdiplus::StringFormat format;
    path.AddString(L"HIH", -1, &family, m_pFont->GetStyle(), m_pFont->GetSize(), m_layout, &format);
    const Gdiplus::SolidBrush brush(Gdiplus::Color{kFill});
    m_graphics.FillPath(&brush, &path);
    const RECT plain = m_canvas.ink();
    // To whole pixels: a letter moves by half a pixel at most, and its strokes get a little wider.
    EXPECT_NEAR(letters.left, plain.left, 1);
    EXPECT_NEAR(letters.top, plain.top, 1);
    EXPECT_NEAR(letters.right, plain.right, 1);
    EXPECT_NEAR(letters.bottom, plain.bottom, 1);
}

TEST_F(OutlineTextTest, TheFormatPlacesTheText) {
    draw(3.0);
    const RECT leading = m_canvas.ink();
    m_canvas.clear();
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentCenter);
    draw(3.0, &format);
    const RECT centred = m_canvas.ink();
    EXPECT_GT(centred.left, leading.left);
    EXPECT_NEAR((centred.left + centred.right) / 2, 100, 3);
}

TEST_F(OutlineTextTest, LeavesTheGraphicsAntialiasing) {
    draw(3.0);
    EXPECT_EQ(m_graphics.GetSmoothingMode(), Gdiplus::SmoothingModeAntiAlias);
}

TEST_F(OutlineTextTest, OddArgumentsDrawNothingAndEnd) {
    drawOutlineText(m_graphics, m_layout, nullptr, *m_pFont, nullptr, 3.0, kFill, kOutline);
    drawOutlineText(m_graphics, m_layout, L"", *m_pFont, nullptr, 3.0, kFill, kOutline);
    const Gdiplus::Font broken(L"Tahoma", -5.0F);
    drawOutlineText(m_graphics, m_layout, L"HIH", broken, nullptr, 3.0, kFill, kOutline);
    EXPECT_EQ(m_canvas.ink().right, 0);
    constexpr float kHuge = 1.0e30F;
    constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
    for (const RectF& layout : {RectF(kHuge, 0, 50, 50), RectF(0, -kHuge, 50, 50), RectF(0, 0, kHuge, kHuge),
                                RectF(kNoNumber, kNoNumber, kNoNumber, kNoNumber), RectF(0, 0, -50, -50)}) {
        drawOutlineText(m_graphics, layout, L"HIH HIH", *m_pFont, nullptr, 3.0, kFill, kOutline);
    }
    const FontPtr gigantic = fontOf(-1000000);
    drawOutlineText(m_graphics, m_layout, L"HIH", *gigantic, nullptr, 3.0, kFill, kOutline);
    draw(0.0);
    draw(-3.0);
    draw(1.0e9);
    draw(std::numeric_limits<double>::quiet_NaN());
    draw(3.0);
    EXPECT_GT(m_canvas.ink().right, 0);
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(OutlineTextTest, WordsWrapAtTheWidthOfTheLayout) {
    const RectF wide(5, 5, 190, 90);
    const RectF narrow(5, 5, 70, 90);
    const FontPtr font = fontOf(-20);
    drawOutlineText(m_graphics, wide, L"HHHH HHHH", *font, nullptr, 3.0, kFill, kOutline);
    const RECT oneLine = m_canvas.ink();
    m_canvas.clear();
    drawOutlineText(m_graphics, narrow, L"HHHH HHHH", *font, nullptr, 3.0, kFill, kOutline);
    const RECT twoLines = m_canvas.ink();
    EXPECT_GT(oneLine.right - oneLine.left, 100);
    EXPECT_LT(twoLines.right - twoLines.left, 80);
    EXPECT_GT(twoLines.bottom - twoLines.top, oneLine.bottom - oneLine.top + 15);
}

TEST_F(OutlineTextTest, LineBreaksOfTheTextAreKept) {
    const FontPtr font = fontOf(-20);
    drawOutlineText(m_graphics, m_layout, L"H H", *font, nullptr, 3.0, kFill, kOutline);
    const RECT oneLine = m_canvas.ink();
    m_canvas.clear();
    drawOutlineText(m_graphics, m_layout, L"H\r\nH", *font, nullptr, 3.0, kFill, kOutline);
    EXPECT_GT(m_canvas.ink().bottom - m_canvas.ink().top, oneLine.bottom - oneLine.top + 15);
}

// Each row of pixels shows the same strokes: dark and light, without blurring values in between.
TEST_F(OutlineTextTest, UprightStrokesAndBaselinesStandOnWholePixels) {
    for (const LONG size : {-8, -9, -11, -13}) {
        for (const float left : {20.0F, 20.3F, 20.5F, 20.8F}) {
            m_canvas.clear();
            const FontPtr font = fontOf(size);
            drawOutlineText(m_graphics, RectF(left, left, 160, 60), L"lIl", *font, nullptr, 3.0, kFill, kOutline);
            const RECT letters = m_canvas.ink(0x00FF0000U);
            const int middle = (letters.top + letters.bottom) / 2;
            int brightest = 0;
            int strokes = 0;
            for (int x = letters.left; x < letters.right; ++x) {
                const int red = rendering::redOf(m_canvas.at(x, middle));
                brightest = std::max(brightest, red);
                strokes += red > 0xC0 ? 1 : 0;
            }
            EXPECT_GT(brightest, 0xD8) << size << " at " << left;
            EXPECT_GE(strokes, 2) << size << " at " << left;
            int lowest = 0;
            for (int x = letters.left; x < letters.right; ++x) {
                lowest = std::max(lowest, rendering::redOf(m_canvas.at(x, letters.bottom - 1)));
            }
            EXPECT_GT(lowest, 0xC0) << "a blurred baseline: " << size << " at " << left;
        }
    }
}

// With a column of pixels between two letters that is clearly darker than both.
TEST_F(OutlineTextTest, LettersKeepApart) {
    for (const LONG size : {-8, -9, -11}) {
        m_canvas.clear();
        const FontPtr font = fontOf(size);
        drawOutlineText(m_graphics, m_layout, L"llll", *font, nullptr, 0.0, kFill, kOutline);
        const RECT letters = m_canvas.ink();
        const int middle = (letters.top + letters.bottom) / 2;
        int gaps = 0;
        for (int x = letters.left + 1; x + 1 < letters.right; ++x) {
            const int here = alphaOf(m_canvas.at(x, middle));
            gaps +=
                here < 0x80 && alphaOf(m_canvas.at(x - 1, middle)) > here && alphaOf(m_canvas.at(x + 1, middle)) >= here
                    ? 1
                    : 0;
        }
        EXPECT_EQ(gaps, 3) << size;
    }
}

TEST_F(OutlineTextTest, WhatDoesNotFitEndsWithAnEllipsis) {
    Gdiplus::StringFormat oneLine;
    oneLine.SetAlignment(Gdiplus::StringAlignmentCenter);
    oneLine.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    oneLine.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    const FontPtr font = fontOf(-11);
    const RectF box(20, 20, 60, 16);
    const auto inkOf = [&](const wchar_t* text) {
        m_canvas.clear();
        drawOutlineText(m_graphics, box, text, *font, &oneLine, 0.0, kFill, kOutline);
        return m_canvas.ink();
    };
    const RECT cut = inkOf(L"Bildschirmausgabe w\x00E4hlen");
    EXPECT_GE(cut.left, 20);
    EXPECT_LE(cut.right, 80);
    EXPECT_LE(cut.bottom, 36) << "one line only";
    // The dots: only the baseline's rows at the end.
    int high = 0;
    for (int y = 20; y < cut.bottom - 5; ++y) {
        high += alphaOf(m_canvas.at(cut.right - 2, y)) > 0x40 ? 1 : 0;
    }
    EXPECT_EQ(high, 0);
    const RECT whole = inkOf(L"Mute");
    EXPECT_LT(whole.right - whole.left, 40);
}

TEST_F(OutlineTextTest, LinesThatDoNotFitEndWithAnEllipsis) {
    Gdiplus::StringFormat format;
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    const FontPtr font = fontOf(-11);
    drawOutlineText(m_graphics, RectF(20, 20, 60, 28), kSentence, *font, &format, 0.0, kFill, kOutline);
    EXPECT_LE(m_canvas.ink().bottom, 50);
    EXPECT_GT(m_canvas.ink().bottom, 40) << "two lines";
}

// No single short word in the last one.
TEST_F(OutlineTextTest, LinesAreOfLikeLength) {
    Gdiplus::StringFormat format;
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    const FontPtr font = fontOf(-11);
    constexpr int kTop = 20;
    drawOutlineText(m_graphics, RectF(20, kTop, 90, 60), L"Choose a power plan", *font, &format, 0.0, kFill, kOutline);
    const int half = kTop + static_cast<int>(font->GetHeight(&m_graphics));
    int ends[2] = {};
    for (int y = kTop; y < m_canvas.ink().bottom; ++y) {
        for (int x = 20; x < 110; ++x) {
            if (alphaOf(m_canvas.at(x, y)) > 0x80) {
                int& end = ends[y < half ? 0 : 1];
                end = std::max(end, x - 20);
            }
        }
    }
    EXPECT_GT(ends[1], 45) << "two words in the second line";
    EXPECT_LT(ends[0], 60) << "and two in the first";
}

TEST_F(OutlineTextTest, WordsOfSmallLettersAreToldApart) {
    struct Least {
        LONG size;
        int columns;
    };
    for (const Least& least : {Least{-4, 1}, Least{-6, 2}, Least{-8, 3}, Least{-9, 3}, Least{-11, 3}}) {
        m_canvas.clear();
        const FontPtr font = fontOf(least.size);
        drawOutlineText(m_graphics, m_layout, L"nn nn", *font, nullptr, 0.0, kFill, kOutline);
        const RECT letters = m_canvas.ink();
        int run = 0;
        int longest = 0;
        for (int x = letters.left; x < letters.right; ++x) {
            int dark = 0;
            for (int y = letters.top; y < letters.bottom; ++y) {
                dark = std::max(dark, alphaOf(m_canvas.at(x, y)));
            }
            run = dark < 0x40 ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        EXPECT_GE(longest, least.columns) << least.size;
    }
}

// A text that must be whole stays in one line if only its outline lacks the room.
TEST_F(OutlineTextTest, WhatNearlyFitsIsCondensedUnlessItMayBeCut) {
    const FontPtr font = fontOf(-20);
    drawOutlineText(m_graphics, RectF(5, 5, 190, 90), L"HHHH HHHH", *font, nullptr, 0.0, kFill, kOutline);
    const RECT natural = m_canvas.ink();
    const int width = natural.right - natural.left - 2;
    m_canvas.clear();
    drawOutlineText(m_graphics, RectF(5, 5, static_cast<float>(width), 90), L"HHHH HHHH", *font, nullptr, 3.0, kFill,
                    kOutline);
    const RECT condensed = m_canvas.ink(0x00FF0000U);
    EXPECT_LT(condensed.bottom - condensed.top, natural.bottom - natural.top + 3) << "one line";
    EXPECT_LE(condensed.right, 5 + width + 1);
}

// Joined letters, or letters that the face lacks, are drawn too.
TEST_F(OutlineTextTest, OtherScriptsAreDrawnAsWell) {
    draw(3.0);
    const RECT latin = m_canvas.ink();
    for (const wchar_t* text : {L"\x05E9\x05DC\x05D5\x05DD", L"e\x0301te", L"\x0E01\x0E33"}) {
        m_canvas.clear();
        drawOutlineText(m_graphics, m_layout, text, *m_pFont, nullptr, 3.0, kFill, kOutline);
        EXPECT_GT(m_canvas.ink().right, latin.left) << text;
    }
}

// A cached text looks like a newly drawn one, whatever argument changes between two drawings.
TEST_F(OutlineTextTest, AKeptTextFollowsEveryArgument) {
    Gdiplus::StringFormat centred;
    centred.SetAlignment(Gdiplus::StringAlignmentCenter);
    Gdiplus::StringFormat low;
    low.SetLineAlignment(Gdiplus::StringAlignmentFar);
    LOGFONTW boldFace = tahoma(-40);
    boldFace.lfWeight = FW_BOLD;
    LOGFONTW otherFace = boldFace;
    ::lstrcpynW(otherFace.lfFaceName, L"Liberation Mono", LF_FACESIZE);
    const FontPtr small = fontOf(-30);
    const FontPtr other = fontOf(otherFace);
    const FontPtr bold = fontOf(boldFace);
    const struct {
        const wchar_t* text;
        RectF layout;
        const Gdiplus::Font* font;
        const Gdiplus::StringFormat* format;
        double width;
        Gdiplus::ARGB fill;
        Gdiplus::ARGB outline;
    } steps[] = {{L"HIH", m_layout, m_pFont.get(), nullptr, 3.0, kFill, kOutline},
                 {L"HIH", m_layout, m_pFont.get(), nullptr, 3.0, kFill, kOutline},
                 {L"IHI", m_layout, m_pFont.get(), nullptr, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), m_pFont.get(), nullptr, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), small.get(), nullptr, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), nullptr, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), &centred, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), &low, 3.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), &low, 6.0, kFill, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), &low, 6.0, kOutline, kOutline},
                 {L"IHI", RectF(10, 5, 160, 60), bold.get(), &low, 6.0, kOutline, kFill},
                 {L"IHI", RectF(10, 5, 160, 60), other.get(), &low, 6.0, kOutline, kFill},
                 {L"", m_layout, bold.get(), &low, 6.0, kOutline, kFill}};
    OutlineText kept;
    for (const auto& step : steps) {
        m_canvas.clear();
        kept.draw(m_graphics, step.layout, step.text, *step.font, step.format, step.width, step.fill, step.outline);
        const std::vector<DWORD> actual = m_canvas.pixels();
        m_canvas.clear();
        drawOutlineText(m_graphics, step.layout, step.text, *step.font, step.format, step.width, step.fill,
                        step.outline);
        EXPECT_EQ(actual, m_canvas.pixels()) << "step " << (&step - steps);
    }
}

TEST_F(OutlineTextTest, DrawingLeavesNothingBehind) {
    for (int i = 0; i < 5; ++i) {
        draw(3.0);
    }
    const std::size_t objects = testsupport::gdiHandles();
    const std::size_t bytes = testsupport::heapBytes();
    constexpr std::size_t kRuns = 100;
    for (std::size_t i = 0; i < kRuns; ++i) {
        draw(3.0);
    }
    EXPECT_EQ(testsupport::gdiHandles(), objects);
    EXPECT_LT(testsupport::heapBytes(), bytes + kRuns * 20);
}

}  // namespace
