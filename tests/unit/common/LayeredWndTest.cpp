#include "common/LayeredWnd.h"

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <limits>
#include <set>

#include "Rendering.h"
#include "common/PictureStore.h"
#include "common/Status.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/ResourceCounters.h"

namespace {

using rendering::alphaOf;
using rendering::blueOf;
using rendering::greenOf;
using rendering::redOf;
using testing::ElementsAre;
using testing::IsEmpty;
using Images = std::vector<Gdiplus::Image*>;
using Alphas = std::vector<DWORD>;
using Rects = std::vector<const RECT*>;

constexpr int kWidth = 100;
constexpr int kHeight = 60;

// A text painter that copies the frame, and draws if told to.
class FrameReader final : public IDrawTextOnLayeredWnd {
 public:
    HRESULT drawText(Gdiplus::Graphics& graphics) override {
        ++calls;
        smoothing = graphics.GetSmoothingMode();
        if (draw) {
            draw(graphics);
        }
        const HDC dc = graphics.GetHDC();
        DIBSECTION section{};
        const HGDIOBJ bitmap = ::GetCurrentObject(dc, OBJ_BITMAP);
        EXPECT_EQ(::GetObjectW(bitmap, sizeof(section), &section), static_cast<int>(sizeof(section)));
        ::GdiFlush();
        header = section.dsBmih;
        const auto* const bits = static_cast<const DWORD*>(section.dsBm.bmBits);
        pixels.assign(bits, bits + static_cast<std::ptrdiff_t>(section.dsBm.bmWidth) * section.dsBm.bmHeight);
        graphics.ReleaseHDC(dc);
        return result;
    }

    // The frame is stored from its lowest row up.
    [[nodiscard]] DWORD at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>((header.biHeight - 1 - y) * header.biWidth + x));
    }

    int calls = 0;
    HRESULT result = S_OK;
    std::function<void(Gdiplus::Graphics&)> draw;
    Gdiplus::SmoothingMode smoothing = Gdiplus::SmoothingModeInvalid;
    BITMAPINFOHEADER header{};
    std::vector<DWORD> pixels;
};

common::UniqueWindow makeShadowed(DWORD style = WS_POPUP | WS_VISIBLE) {
    return common::UniqueWindow(::CreateWindowExW(WS_EX_TOOLWINDOW, L"Static", L"", style, 40, 30, kWidth, kHeight,
                                                  nullptr, nullptr, nullptr, nullptr));
}

RECT placeOf(HWND window) {
    RECT rect{};
    ::GetWindowRect(window, &rect);
    return rect;
}

bool sameRect(const RECT& left, const RECT& right) {
    return ::EqualRect(&left, &right) != FALSE;
}

bool classExists(const std::wstring& name) {
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof(wndClass);
    return ::GetClassInfoExW(::GetModuleHandleW(nullptr), name.c_str(), &wndClass) != FALSE;
}

class LayeredWndTest : public testing::Test {
 protected:
    HRESULT paint(const Images& images, const Alphas& alphas, Rects rects = {}, const POINT* position = nullptr,
                  int top = 0, int height = 0) {
        return m_layered.paint(images, alphas, rects, position, top, height);
    }

    support::LogCapture m_log;
    common::UniqueWindow m_shadowed = makeShadowed();
    FrameReader m_reader;
    CLayeredWnd m_layered{m_shadowed.get(), &m_reader};
    std::unique_ptr<Gdiplus::Bitmap> m_pRed = rendering::plainImage(kWidth, kHeight, 0xFFFF0000U);
    std::unique_ptr<Gdiplus::Bitmap> m_pGreen = rendering::plainImage(kWidth, kHeight, 0x8000FF00U);
    std::unique_ptr<Gdiplus::Bitmap> m_pBlue = rendering::plainImage(kWidth, kHeight, 0x800000FFU);
};

// ---- construction ----

TEST(LayeredWndNames, CountFromOneAndAreNeverUsedTwice) {
    EXPECT_EQ(rendering::firstClassName(), L"QRD_LayeredWnd1");
    const HWND window = ::GetDesktopWindow();
    const auto numberOf = [](const CLayeredWnd& object) {
        EXPECT_EQ(object.className().rfind(L"QRD_LayeredWnd", 0), 0U);
        return std::stoul(object.className().substr(std::size(L"QRD_LayeredWnd") - 1));
    };
    unsigned long first = 0;
    {
        const CLayeredWnd object(window);
        first = numberOf(object);
    }
    EXPECT_EQ(numberOf(CLayeredWnd(window)), first + 1);
}

TEST(LayeredWndConstruction, AWindowThatIsNoneIsOnlyLogged) {
    const support::LogCapture m_log;
    {
        const CLayeredWnd object(nullptr);
        EXPECT_EQ(object.m_hWnd, nullptr);
    }
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::CLayeredWnd): ASSERT( ::IsWindow(hRealWnd) )"));
}

TEST_F(LayeredWndTest, ConstructionMakesNoWindowAndNoLine) {
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_FALSE(classExists(m_layered.className()));
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

// ---- createWnd, destroyWnd ----

TEST_F(LayeredWndTest, CreatesAHiddenClickThroughPopupOverTheWindowThatOwnsIt) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    const HWND window = m_layered.m_hWnd;
    constexpr DWORD kExpected = 0x080800A0U;  // the system removes the edge style of a popup
    EXPECT_EQ(static_cast<DWORD>(::GetWindowLongW(window, GWL_EXSTYLE)) & kExpected, kExpected);
    EXPECT_NE(::GetWindowLongW(window, GWL_STYLE) & static_cast<LONG>(WS_POPUP), 0);
    EXPECT_EQ(::IsWindowVisible(window), FALSE);
    EXPECT_EQ(::GetWindow(window, GW_OWNER), m_shadowed.get());
    EXPECT_TRUE(sameRect(placeOf(window), placeOf(m_shadowed.get())));
    EXPECT_EQ(::GetWindowTextLengthW(window), 0);
}

TEST_F(LayeredWndTest, RegistersAClassOfItsOwn) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof(wndClass);
    ASSERT_NE(::GetClassInfoExW(::GetModuleHandleW(nullptr), m_layered.className().c_str(), &wndClass), 0);
    EXPECT_EQ(wndClass.style, 3U);
    EXPECT_EQ(wndClass.hbrBackground, nullptr);
    EXPECT_EQ(wndClass.hCursor, ::LoadCursorW(nullptr, IDC_ARROW));
    std::array<wchar_t, 64> name{};
    ::GetClassNameW(m_layered.m_hWnd, name.data(), static_cast<int>(name.size()));
    EXPECT_EQ(m_layered.className(), name.data());
}

TEST_F(LayeredWndTest, CreatingAgainReplacesTheWindow) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    const HWND first = m_layered.m_hWnd;
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    EXPECT_NE(m_layered.m_hWnd, first);
    EXPECT_EQ(::IsWindow(first), FALSE);
    EXPECT_NE(::IsWindow(m_layered.m_hWnd), FALSE);
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(LayeredWndTest, CreatingOverADestroyedWindowFails) {
    m_shadowed.reset();
    EXPECT_EQ(m_layered.createWnd(), E_FAIL);
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::createWnd): Error Code: 0x80004005"));
}

TEST_F(LayeredWndTest, DestroyingWhatWasNeverCreatedTouchesNoClass) {
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof(wndClass);
    wndClass.lpfnWndProc = &::DefWindowProcW;
    wndClass.hInstance = ::GetModuleHandleW(nullptr);
    wndClass.lpszClassName = m_layered.className().c_str();
    ASSERT_NE(::RegisterClassExW(&wndClass), 0);
    EXPECT_EQ(m_layered.destroyWnd(), S_OK);
    EXPECT_TRUE(classExists(m_layered.className()));
    ::UnregisterClassW(m_layered.className().c_str(), wndClass.hInstance);
}

TEST_F(LayeredWndTest, DestroyingTakesWindowAndClassAway) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    const HWND window = m_layered.m_hWnd;
    EXPECT_EQ(m_layered.destroyWnd(), S_OK);
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_EQ(::IsWindow(window), FALSE);
    EXPECT_FALSE(classExists(m_layered.className()));
    EXPECT_EQ(m_layered.destroyWnd(), S_OK);
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(LayeredWndTest, AWindowThatDiedWithItsOwnerIsNoFailure) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    m_shadowed.reset();
    EXPECT_EQ(m_layered.destroyWnd(), S_OK);
    EXPECT_FALSE(classExists(m_layered.className()));
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(LayeredWndTest, AClassThatCannotBeUnregisteredIsReportedAsASystemError) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    ::DestroyWindow(m_layered.m_hWnd);
    ::UnregisterClassW(m_layered.className().c_str(), ::GetModuleHandleW(nullptr));
    const HRESULT status = m_layered.destroyWnd();
    EXPECT_EQ(static_cast<ULONG>(status), 0x80070000U | ERROR_CLASS_DOES_NOT_EXIST);
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::destroyWnd): Error Code: 0x80070583"));
}

TEST_F(LayeredWndTest, CreatingStopsWhenTheOldWindowCannotBeDestroyedCleanly) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    ::DestroyWindow(m_layered.m_hWnd);
    ::UnregisterClassW(m_layered.className().c_str(), ::GetModuleHandleW(nullptr));
    EXPECT_EQ(m_layered.createWnd(), common::statusFromWin32(ERROR_CLASS_DOES_NOT_EXIST));
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::destroyWnd): Error Code: 0x80070583",
                                            L"[ERR] (CLayeredWnd::createWnd): Error Code: 0x80070583"));
}

TEST_F(LayeredWndTest, TheObjectsEndDestroysItsWindow) {
    HWND window = nullptr;
    {
        CLayeredWnd object(m_shadowed.get());
        ASSERT_EQ(object.createWnd(), S_OK);
        window = object.m_hWnd;
    }
    EXPECT_EQ(::IsWindow(window), FALSE);
}

// ---- paint: what is in the frame ----

TEST_F(LayeredWndTest, WithoutMemoryForTheFrameOrTheGraphicsNothingIsPainted) {
    const Images images{m_pRed.get()};
    const Alphas alphas{255};
    Rects rects{nullptr};
    HRESULT status = S_OK;
    std::set<HRESULT> statuses;
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    m_log.clear();
    support::forEachFailure(
        support::FailingAllocation::Extent::Once,
        [&] { status = m_layered.paint(images, alphas, rects, nullptr, 0, 0); },
        [&] {
            statuses.insert(status);
            EXPECT_EQ(::IsWindowVisible(m_layered.m_hWnd) != FALSE, SUCCEEDED(status)) << std::hex << status;
            EXPECT_EQ(m_log.errors().empty(), SUCCEEDED(status));
            EXPECT_EQ(m_layered.destroyWnd(), S_OK);
            EXPECT_EQ(m_layered.createWnd(), S_OK);
            m_log.clear();
        });
    EXPECT_TRUE(statuses.contains(E_POINTER)) << "the frame, the graphics";
    EXPECT_TRUE(statuses.contains(S_OK)) << "with memory";
    statuses.erase(E_POINTER);
    statuses.erase(E_OUTOFMEMORY);  // the one beneath
    EXPECT_EQ(statuses, std::set<HRESULT>{S_OK});
}

TEST_F(LayeredWndTest, EmptyRectanglesMeanTheWholeWindowAndAreFilledIn) {
    Rects rects;
    ASSERT_EQ(m_layered.paint({m_pRed.get(), m_pGreen.get(), m_pBlue.get()}, {255, 255, 255}, rects, nullptr, 0, 0),
              S_OK);
    EXPECT_THAT(rects, ElementsAre(nullptr, nullptr, nullptr));
    for (const POINT& at : {POINT{0, 0}, POINT{kWidth - 1, kHeight - 1}, POINT{50, 30}}) {
        const DWORD pixel = m_reader.at(at.x, at.y);
        EXPECT_EQ(alphaOf(pixel), 255);
        EXPECT_NEAR(redOf(pixel), 63, 2);    // a quarter remains below the two others
        EXPECT_NEAR(greenOf(pixel), 64, 2);  // half, then halved
        EXPECT_NEAR(blueOf(pixel), 128, 2);  // on top
    }
}

TEST_F(LayeredWndTest, TheFrameIsATransparentTrueColourBitmapOfTheWindowsSize) {
    const RECT corner{0, 0, 10, 10};
    ASSERT_EQ(paint({m_pRed.get()}, {255}, {&corner}), S_OK);
    EXPECT_EQ(m_reader.header.biWidth, kWidth);
    EXPECT_EQ(m_reader.header.biHeight, kHeight);
    EXPECT_EQ(m_reader.header.biPlanes, 1);
    EXPECT_EQ(m_reader.header.biBitCount, 32);
    EXPECT_EQ(m_reader.header.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(m_reader.at(5, 5), 0xFFFF0000U);
    EXPECT_EQ(m_reader.at(11, 5), 0U);
    EXPECT_EQ(m_reader.at(kWidth - 1, kHeight - 1), 0U);
}

TEST_F(LayeredWndTest, NothingIsKeptFromTheFrameBefore) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    ASSERT_EQ(paint({}, {}), S_OK);
    EXPECT_EQ(m_reader.at(5, 5), 0U);
}

TEST_F(LayeredWndTest, RectanglesMayBeMixedWithNulls) {
    const RECT right{60, 10, 80, 20};
    ASSERT_EQ(paint({m_pRed.get(), m_pBlue.get()}, {255, 255}, {nullptr, &right}), S_OK);
    EXPECT_EQ(m_reader.at(5, 5), 0xFFFF0000U);
    EXPECT_NEAR(blueOf(m_reader.at(70, 15)), 128, 1);
    EXPECT_EQ(m_reader.at(81, 15), 0xFFFF0000U);
}

TEST_F(LayeredWndTest, NullImagesAreSkipped) {
    ASSERT_EQ(paint({m_pRed.get(), nullptr, m_pBlue.get()}, {255, 255, 255}), S_OK);
    EXPECT_NEAR(redOf(m_reader.at(5, 5)), 127, 1);
    EXPECT_NEAR(blueOf(m_reader.at(5, 5)), 128, 1);
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(LayeredWndTest, ASliceIsStretchedOverTheRectangle) {
    std::vector<Gdiplus::ARGB> rows(65, 0xFFFF0000U);
    std::fill(rows.begin() + 61, rows.end(), 0xFF0000FFU);
    const auto image = rendering::stripedImage(96, rows);
    ASSERT_EQ(paint({image.get()}, {255}, {}, nullptr, 61, 0), S_OK);
    EXPECT_EQ(m_reader.at(50, 2), 0xFF0000FFU);
    EXPECT_EQ(m_reader.at(50, kHeight / 2), 0xFF0000FFU);
}

TEST_F(LayeredWndTest, AnExplicitHeightLimitsTheSlice) {
    std::vector<Gdiplus::ARGB> rows(64, 0xFF0000FFU);
    std::fill(rows.begin(), rows.begin() + 32, 0xFFFF0000U);
    const auto image = rendering::stripedImage(96, rows);
    ASSERT_EQ(paint({image.get()}, {255}, {}, nullptr, 0, 16), S_OK);
    EXPECT_EQ(m_reader.at(50, kHeight - 2), 0xFFFF0000U);
}

TEST_F(LayeredWndTest, TextIsDrawnOnceAfterTheImagesWithoutSmoothing) {
    m_reader.draw = [](Gdiplus::Graphics& graphics) {
        const Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFFU));
        graphics.FillRectangle(&white, 10, 10, 5, 5);
    };
    ASSERT_EQ(paint({m_pRed.get(), m_pRed.get()}, {255, 255}), S_OK);
    EXPECT_EQ(m_reader.calls, 1);
    EXPECT_EQ(m_reader.smoothing, Gdiplus::SmoothingModeNone);
    EXPECT_EQ(m_reader.at(12, 12), 0xFFFFFFFFU);
    EXPECT_EQ(m_reader.at(20, 20), 0xFFFF0000U);
}

TEST_F(LayeredWndTest, AFailureToDrawTextDoesNotStopTheFrame) {
    m_reader.result = E_FAIL;
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_NE(::IsWindowVisible(m_layered.m_hWnd), FALSE);
}

TEST_F(LayeredWndTest, PaintsWithoutATextPainter) {
    CLayeredWnd plain(m_shadowed.get());
    Rects rects;
    EXPECT_EQ(plain.paint({m_pRed.get()}, {255}, rects, nullptr, 0, 0), S_OK);
    EXPECT_NE(::IsWindowVisible(plain.m_hWnd), FALSE);
}

// ---- paint: the window ----

TEST_F(LayeredWndTest, TheFirstPaintCreatesAndShowsThePopupWithoutActivatingIt) {
    const HWND active = ::GetActiveWindow();
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_NE(::IsWindowVisible(m_layered.m_hWnd), FALSE);
    EXPECT_EQ(::GetActiveWindow(), active);
    EXPECT_TRUE(sameRect(placeOf(m_layered.m_hWnd), placeOf(m_shadowed.get())));
}

TEST_F(LayeredWndTest, EveryPaintFollowsTheShadowedWindow) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    const HWND window = m_layered.m_hWnd;
    ::MoveWindow(m_shadowed.get(), 200, 150, 70, 90, FALSE);
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_EQ(m_layered.m_hWnd, window);
    EXPECT_TRUE(sameRect(placeOf(window), RECT{200, 150, 270, 240}));
    EXPECT_EQ(m_reader.header.biWidth, 70);
    EXPECT_EQ(m_reader.header.biHeight, 90);
    EXPECT_EQ(m_reader.at(65, 85), 0xFFFF0000U);
}

TEST_F(LayeredWndTest, APositionMovesTheFrameOnly) {
    const POINT position{300, 250};
    ASSERT_EQ(paint({m_pRed.get()}, {255}, {}, &position), S_OK);
    EXPECT_TRUE(sameRect(placeOf(m_layered.m_hWnd), RECT{300, 250, 300 + kWidth, 250 + kHeight}));
    EXPECT_TRUE(sameRect(placeOf(m_shadowed.get()), RECT{40, 30, 40 + kWidth, 30 + kHeight}));
}

TEST_F(LayeredWndTest, APopupThatIsGoneIsMadeAnew) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    ::DestroyWindow(m_layered.m_hWnd);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_NE(::IsWindowVisible(m_layered.m_hWnd), FALSE);
}

TEST_F(LayeredWndTest, HidingLastsUntilTheNextPaint) {
    m_layered.hide();  // nothing there yet
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    m_layered.hide();
    EXPECT_EQ(::IsWindowVisible(m_layered.m_hWnd), FALSE);
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_NE(::IsWindowVisible(m_layered.m_hWnd), FALSE);
    m_shadowed.reset();
    m_layered.hide();  // the popup went with its owner
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

// ---- paint: one image ----

TEST_F(LayeredWndTest, OneImageIsPaintedWithItsOpacityAndRectangle) {
    const RECT corner{0, 0, 20, 20};
    ASSERT_EQ(m_layered.paint(m_pRed.get(), 220, nullptr, &corner), S_OK);
    EXPECT_NEAR(alphaOf(m_reader.at(10, 10)), 220, 1);
    EXPECT_NEAR(redOf(m_reader.at(10, 10)), 220, 1);
    EXPECT_EQ(m_reader.at(30, 10), 0U);
}

TEST_F(LayeredWndTest, OneImageWaitsWhileTheShadowedWindowIsHidden) {
    ::ShowWindow(m_shadowed.get(), SW_HIDE);
    EXPECT_EQ(m_layered.paint(m_pRed.get(), 220, nullptr, nullptr), S_FALSE);
    EXPECT_EQ(m_layered.m_hWnd, nullptr);
    EXPECT_EQ(m_reader.calls, 0);
    m_shadowed.reset();
    EXPECT_EQ(m_layered.paint(m_pRed.get(), 220, nullptr, nullptr), S_FALSE);
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(LayeredWndTest, ManyImagesDoNotWaitForTheShadowedWindow) {
    ::ShowWindow(m_shadowed.get(), SW_HIDE);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    EXPECT_NE(m_layered.m_hWnd, nullptr);
}

// ---- paint: failures ----

TEST_F(LayeredWndTest, CountsThatDifferDrawAndShowNothing) {
    const RECT rect{0, 0, 5, 5};
    EXPECT_EQ(paint({m_pRed.get(), m_pRed.get()}, {255}), E_FAIL);
    EXPECT_EQ(paint({m_pRed.get(), m_pRed.get()}, {255, 255}, {&rect}), E_FAIL);
    EXPECT_EQ(paint({}, {}, {&rect}), E_FAIL);
    EXPECT_EQ(m_reader.calls, 0);
    EXPECT_EQ(::IsWindowVisible(m_layered.m_hWnd), FALSE);
    EXPECT_THAT(m_log.errors(),
                ElementsAre(L"[ERR] (CLayeredWnd::paint): ASSERT( vecImages.size() == vecAlphas.size() )",
                            L"[ERR] (CLayeredWnd::paint): ASSERT( vecImages.size() == vecDrawRects.size() )",
                            L"[ERR] (CLayeredWnd::paint): ASSERT( vecImages.size() == vecDrawRects.size() )"));
}

TEST_F(LayeredWndTest, AnImageThatCannotBeDrawnEndsTheFrameUnshown) {
    const auto broken = rendering::brokenImage();
    EXPECT_EQ(paint({m_pRed.get(), broken.get(), m_pBlue.get()}, {255, 255, 255}), E_FAIL);
    EXPECT_EQ(m_reader.calls, 0);
    EXPECT_EQ(::IsWindowVisible(m_layered.m_hWnd), FALSE);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::drawImage): Error Code: 0x80004005",
                                            L"[ERR] (CLayeredWnd::paint): Error Code: 0x80004005"));
}

TEST_F(LayeredWndTest, AWindowWithoutAreaHasNoFrame) {
    ::MoveWindow(m_shadowed.get(), 40, 30, 0, 0, FALSE);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), E_POINTER);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::paint): Error Code: 0x80004003"));
}

TEST_F(LayeredWndTest, ADestroyedWindowCannotBePaintedOver) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    m_shadowed.reset();
    EXPECT_EQ(paint({m_pRed.get()}, {255}), E_FAIL);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::createWnd): Error Code: 0x80004005",
                                            L"[ERR] (CLayeredWnd::paint): Error Code: 0x80004005"));
}

TEST_F(LayeredWndTest, AWindowSystemThatRefusesTheFrameIsReported) {
    ASSERT_EQ(m_layered.createWnd(), S_OK);
    const LONG style = ::GetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE);
    ::SetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE, style & ~WS_EX_LAYERED);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), E_FAIL);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (CLayeredWnd::updateLyrWnd): Error Code: 0x80004005",
                                            L"[ERR] (CLayeredWnd::paint): Error Code: 0x80004005"));
}

// The system refuses a window that is not layered: this shows whether it was called.
TEST_F(LayeredWndTest, OnlyAFrameThatChangedIsHandedToTheWindowSystem) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    const LONG style = ::GetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE);
    ::SetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE, style & ~WS_EX_LAYERED);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK) << "it is on the screen already";
    EXPECT_EQ(m_reader.calls, 2);
    EXPECT_EQ(paint({m_pRed.get()}, {254}), E_FAIL) << "another opacity";
    EXPECT_EQ(paint({m_pRed.get()}, {255}), E_FAIL) << "what could not be shown is not there";
    ::SetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE, style);
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    ::SetWindowLongW(m_layered.m_hWnd, GWL_EXSTYLE, style & ~WS_EX_LAYERED);
    m_layered.hide();
    EXPECT_EQ(paint({m_pRed.get()}, {255}), E_FAIL) << "hidden meanwhile";
    const POINT position{300, 250};
    EXPECT_EQ(paint({m_pRed.get()}, {255}, {}, &position), E_FAIL) << "at another place";
}

// A text painter that tells when its text changes.
class StatedText final : public IDrawTextOnLayeredWnd {
 public:
    HRESULT drawText(Gdiplus::Graphics& /*graphics*/) override {
        ++calls;
        return result;
    }
    std::optional<std::size_t> textState() const override { return state; }

    int calls = 0;
    HRESULT result = S_OK;
    std::optional<std::size_t> state = 1;
};

std::unique_ptr<StoredImage> storedImage(DWORD pixel) {
    return std::make_unique<StoredImage>(
        std::make_shared<MasterPicture>(Picture{kWidth, kHeight, std::vector<DWORD>(kWidth * kHeight, pixel)}));
}

class ComposedOnceTest : public LayeredWndTest {
 protected:
    // Whether painting that draws its text, that is, composes the frame.
    bool composes(const Images& images, const Alphas& alphas, Rects rects = {}, int top = 0) {
        const int before = m_text.calls;
        EXPECT_EQ(m_popup.paint(images, alphas, rects, nullptr, top, 0), S_OK);
        return m_text.calls != before;
    }

    StatedText m_text;
    CLayeredWnd m_popup{m_shadowed.get(), &m_text};
    std::unique_ptr<StoredImage> m_pOne = storedImage(0xFFFF0000U);
    std::unique_ptr<StoredImage> m_pOther = storedImage(0xFF00FF00U);
    RECT m_place{0, 0, 20, 20};
    RECT m_otherPlace{0, 0, 20, 21};
};

TEST_F(ComposedOnceTest, AFrameOfTheSameIsNotComposedAgain) {
    EXPECT_TRUE(composes({m_pOne.get()}, {255}, {&m_place}));
    EXPECT_FALSE(composes({m_pOne.get()}, {255}, {&m_place}));
    m_popup.hide();
    EXPECT_FALSE(composes({m_pOne.get()}, {255}, {&m_place}));
    EXPECT_TRUE(::IsWindowVisible(m_popup.m_hWnd));
}

TEST_F(ComposedOnceTest, EveryDifferenceComposesItAgain) {
    EXPECT_TRUE(composes({m_pOne.get()}, {255}, {&m_place}));
    EXPECT_TRUE(composes({m_pOther.get()}, {255}, {&m_place})) << "another picture";
    EXPECT_TRUE(composes({m_pOther.get()}, {254}, {&m_place})) << "another opacity";
    EXPECT_TRUE(composes({m_pOther.get()}, {254}, {&m_otherPlace})) << "another place";
    EXPECT_TRUE(composes({m_pOther.get()}, {254}, {nullptr})) << "the whole window";
    EXPECT_TRUE(composes({m_pOther.get()}, {254}, {nullptr}, 1)) << "other rows";
    EXPECT_TRUE(composes({m_pOther.get(), nullptr}, {254, 254}, {nullptr, nullptr}, 1)) << "one more";
    m_text.state = 2;
    EXPECT_TRUE(composes({m_pOther.get(), nullptr}, {254, 254}, {nullptr, nullptr}, 1)) << "another text";
    ::SetWindowPos(m_shadowed.get(), nullptr, 0, 0, kWidth + 1, kHeight, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE(composes({m_pOther.get(), nullptr}, {254, 254}, {nullptr, nullptr}, 1)) << "another size";
    EXPECT_FALSE(composes({m_pOther.get(), nullptr}, {254, 254}, {nullptr, nullptr}, 1));
}

TEST_F(ComposedOnceTest, WhatCannotBeComparedIsComposedEachTime) {
    EXPECT_TRUE(composes({m_pRed.get()}, {255}));
    EXPECT_TRUE(composes({m_pRed.get()}, {255})) << "a picture without a number";
    m_text.state.reset();
    EXPECT_TRUE(composes({m_pOne.get()}, {255}));
    EXPECT_TRUE(composes({m_pOne.get()}, {255})) << "a text without a state";
    m_text.state = 1;
    m_text.result = E_OUTOFMEMORY;
    EXPECT_TRUE(composes({m_pOne.get()}, {255}));
    EXPECT_TRUE(composes({m_pOne.get()}, {255})) << "the text was not drawn";
}

TEST_F(ComposedOnceTest, APreparedFrameIsShownByTheNextPaint) {
    EXPECT_EQ(m_popup.prepare({m_pOne.get()}, {255}, {nullptr}, 0, 0), S_OK);
    EXPECT_EQ(m_text.calls, 1);
    ASSERT_TRUE(::IsWindow(m_popup.m_hWnd));
    EXPECT_FALSE(::IsWindowVisible(m_popup.m_hWnd));
    EXPECT_FALSE(composes({m_pOne.get()}, {255}));
    EXPECT_TRUE(::IsWindowVisible(m_popup.m_hWnd));
}

// Nothing of the old frame remains from one paint to the next.
TEST_F(LayeredWndTest, AKeptFrameStartsEmpty) {
    ASSERT_EQ(paint({m_pRed.get()}, {255}), S_OK);
    const RECT corner{0, 0, 20, 20};
    ASSERT_EQ(paint({m_pGreen.get()}, {255}, {&corner}), S_OK);
    EXPECT_EQ(m_reader.at(50, 30), 0U);
    EXPECT_EQ(redOf(m_reader.at(10, 10)), 0);
}

TEST_F(LayeredWndTest, LogLinesNameTheSource) {
    static_cast<void>(paint({m_pRed.get()}, {}));
    ASSERT_EQ(m_log.sources().size(), 1U);
    const std::wstring source = m_log.sources()[0];
    EXPECT_EQ(source, L".\\common\\LayeredWnd.cpp");
}

TEST_F(LayeredWndTest, AbsurdNumbersAreTaken) {
    constexpr LONG kMin = std::numeric_limits<LONG>::min();
    constexpr LONG kMax = std::numeric_limits<LONG>::max();
    const std::array rects{RECT{kMin, kMin, kMax, kMax}, RECT{kMax, kMax, kMin, kMin}, RECT{5, 5, 5, 5},
                           RECT{20, 20, 10, 10}, RECT{-1000, -1000, 1000, 1000}};
    for (const RECT& rect : rects) {
        for (const int number : {static_cast<int>(kMin), -1, 0, 59, 60, 61, static_cast<int>(kMax)}) {
            static_cast<void>(paint({m_pRed.get()}, {0xFFFFFFFFU}, {&rect}, nullptr, number, 0));
            static_cast<void>(paint({m_pRed.get()}, {255}, {&rect}, nullptr, 0, number));
        }
    }
    EXPECT_EQ(paint({m_pRed.get()}, {255}), S_OK);
}

// ---- leaks ----

class LayeredWndLeakTest : public LayeredWndTest {
 protected:
    // GDI objects that 40 runs leave behind after the first ones have filled all caches.
    long growth(const std::function<void()>& run) {
        for (int i = 0; i < 5; ++i) {
            run();
        }
        const auto before = static_cast<long>(testsupport::gdiHandles());
        EXPECT_GT(before, 0);
        for (int i = 0; i < 40; ++i) {
            run();
        }
        return static_cast<long>(testsupport::gdiHandles()) - before;
    }
};

TEST_F(LayeredWndLeakTest, NoPathOfPaintLeavesObjectsBehind) {
    const auto broken = rendering::brokenImage();
    const RECT rect{0, 0, 5, 5};
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({m_pRed.get(), m_pGreen.get()}, {255, 220}), S_OK); }), 0);
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({m_pRed.get()}, {}), E_FAIL); }), 0);
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({m_pRed.get()}, {255}, {&rect, &rect}), E_FAIL); }), 0);
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({broken.get()}, {255}), E_FAIL); }), 0);
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({broken.get()}, {100}), E_FAIL); }), 0);
    ::MoveWindow(m_shadowed.get(), 40, 30, 0, 0, FALSE);
    EXPECT_EQ(growth([&] { EXPECT_EQ(paint({m_pRed.get()}, {255}), E_POINTER); }), 0);
}

TEST_F(LayeredWndLeakTest, CreatingAndDestroyingLeavesNothingBehind) {
    EXPECT_EQ(growth([&] {
                  CLayeredWnd object(m_shadowed.get());
                  Rects rects;
                  EXPECT_EQ(object.paint({m_pRed.get()}, {255}, rects, nullptr, 0, 0), S_OK);
              }),
              0);
}

TEST_F(LayeredWndLeakTest, FramesLeaveNoMemoryBehind) {
    const auto frame = [&] { EXPECT_EQ(paint({m_pRed.get(), m_pGreen.get()}, {255, 220}), S_OK); };
    growth(frame);
    m_log.clear();
    const std::size_t before = testsupport::heapBytes();
    for (int i = 0; i < 100; ++i) {
        frame();
    }
    EXPECT_LT(testsupport::heapBytes(), before + 100 * 64);
}

}  // namespace
