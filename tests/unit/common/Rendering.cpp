#include "Rendering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "common/LayeredWnd.h"

namespace rendering {

namespace {

std::wstring& firstName() {
    static std::wstring name;
    return name;
}

class Environment final : public testing::Environment {
 public:
    void SetUp() override {
        ASSERT_EQ(m_session.start(), S_OK);
        const CLayeredWnd first(::GetDesktopWindow());
        firstName() = first.className();
    }
    void TearDown() override { m_session.stop(); }

 private:
    GdiplusSession m_session;
};

testing::Environment* const kEnvironment = testing::AddGlobalTestEnvironment(new Environment);

HBITMAP createPixels(int width, int height, DWORD** bits) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(bits), nullptr, 0);
}

}  // namespace

Canvas::Canvas(int width, int height)
    : m_nWidth(width),
      m_nHeight(height),
      m_hDc(::CreateCompatibleDC(nullptr)),
      m_hBitmap(createPixels(width, height, &m_pBits)),
      m_selected(m_hDc.get(), m_hBitmap.get()) {}

DWORD Canvas::at(int x, int y) const {
    ::GdiFlush();
    return m_pBits[static_cast<std::ptrdiff_t>(y) * m_nWidth + x];
}

RECT Canvas::ink(DWORD mask) const {
    RECT bounds{m_nWidth, m_nHeight, 0, 0};
    for (int y = 0; y < m_nHeight; ++y) {
        for (int x = 0; x < m_nWidth; ++x) {
            if ((at(x, y) & mask) != 0) {
                bounds = {std::min<LONG>(bounds.left, x), std::min<LONG>(bounds.top, y),
                          std::max<LONG>(bounds.right, x + 1), std::max<LONG>(bounds.bottom, y + 1)};
            }
        }
    }
    return bounds;
}

std::vector<DWORD> Canvas::pixels() const {
    ::GdiFlush();
    return {m_pBits, m_pBits + static_cast<std::ptrdiff_t>(m_nWidth) * m_nHeight};
}

void Canvas::clear() {
    ::GdiFlush();
    std::fill_n(m_pBits, static_cast<std::ptrdiff_t>(m_nWidth) * m_nHeight, 0U);
}

std::unique_ptr<Gdiplus::Bitmap> plainImage(int width, int height, Gdiplus::ARGB colour) {
    return stripedImage(width, std::vector<Gdiplus::ARGB>(static_cast<std::size_t>(height), colour));
}

std::unique_ptr<Gdiplus::Bitmap> stripedImage(int width, const std::vector<Gdiplus::ARGB>& rows) {
    auto image = std::make_unique<Gdiplus::Bitmap>(width, static_cast<int>(rows.size()), PixelFormat32bppARGB);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (int x = 0; x < width; ++x) {
            image->SetPixel(x, static_cast<int>(y), Gdiplus::Color(rows[y]));
        }
    }
    return image;
}

std::unique_ptr<Gdiplus::Image> brokenImage() {
    return std::make_unique<Gdiplus::Image>(L"Z:\\no\\such\\picture.png");
}

const std::wstring& firstClassName() {
    return firstName();
}

}  // namespace rendering
