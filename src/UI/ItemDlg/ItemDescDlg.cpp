#include "UI/ItemDlg/ItemDescDlg.h"

#include <memory>
#include <utility>

#include "Data/ZelConfig.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/BufferedPaint.h"
#include "UI/CardStyle.h"
#include "common/GdiPlusFunc.h"
#include "common/Handle.h"
#include "common/Status.h"
#include "res/DialogIds.h"

namespace {

constexpr int kGapBelowItem = 5;    // pixels, not scaled
constexpr int kMeasureHeight = 42;  // enough for three lines while the text is measured
constexpr COLORREF kBoxFace = RGB(0xF4, 0xF4, 0xF4);
constexpr COLORREF kBoxFrame = RGB(0x8C, 0x8C, 0x8C);

}  // namespace

CItemDescDlg::CItemDescDlg(std::wstring strDesc) : CNoteWnd(IDD_ITEM_DESC), m_strDesc(std::move(strDesc)) {}

HRESULT CItemDescDlg::setWndPos(const RECT* pItemRect) {
    if (pItemRect == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const int centre = pItemRect->right - (pItemRect->right - pItemRect->left) / 2;
    const int maxWidth = truncToInt(m_pPlacement->ratio * CZelConfig::getQrdConfig().uItemDescMaxWidth);
    const int y = pItemRect->bottom + kGapBelowItem;
    RETURN_IF_FAILED(_measure(maxWidth));
    const SIZE size = m_measured->size;
    const int left = centre - static_cast<int>(size.cx) / 2;
    place({left, y, left + size.cx, y + size.cy});
    return S_OK;
}

// Once for each text, width and ratio.
HRESULT CItemDescDlg::_measure(int nMaxWidth) {
    const double ratio = m_pPlacement->ratio;
    if (m_measured && m_measured->strText == m_strDesc && m_measured->ratio == ratio &&
        m_measured->nMaxWidth == nMaxWidth) {
        return S_OK;
    }
    Gdiplus::RectF measured;
    RETURN_IF_FAILED(measureDescRect({0, 0, nMaxWidth, kMeasureHeight}, measured));
    m_measured = {m_strDesc, ratio, nMaxWidth, {truncToInt(measured.Width) + 6, truncToInt(measured.Height) + 2}};
    return S_OK;
}

void CItemDescDlg::takeOver(CItemDescDlg& other) noexcept {
    takeWindow(other);
    m_measured = std::move(other.m_measured);
    m_text = std::move(other.m_text);
}

HRESULT CItemDescDlg::measureDescRect(const RECT& layout, Gdiplus::RectF& outRect) const {
    const common::WindowDc dc(m_hWnd);
    Gdiplus::Graphics graphics(dc.get());
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));
    const CDescFormat format;
    if (graphics.MeasureString(m_strDesc.c_str(), -1, font.get(), toRectF(layout), &format, &outRect) != Gdiplus::Ok) {
        RETURN_LOGGED(E_FAIL);
    }
    coverOtherFonts(graphics, m_strDesc.c_str(), *font, toRectF(layout).Width, outRect);
    return S_OK;
}

HRESULT CItemDescDlg::drawDescString(HDC hDc) const {
    Gdiplus::Graphics graphics(hDc);
    RECT layout = clientRect();
    layout.top += 1;
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));
    const CDescFormat format;
    m_text.draw(graphics, toRectF(layout), m_strDesc.c_str(), *font, &format, 0.0, kBlack, kBlack);
    return S_OK;
}

void CItemDescDlg::OnPaint() {
    const RECT box = clientRect();
    const CBufferedPaint paint(m_hWnd, box);
    const common::UniqueBrush face(::CreateSolidBrush(kBoxFace));
    const common::UniqueBrush frame(::CreateSolidBrush(kBoxFrame));
    ::FillRect(paint.get(), &box, face.get());
    static_cast<void>(drawDescString(paint.get()));
    // Covers the remains of a cut text at the edge.
    ::FrameRect(paint.get(), &box, frame.get());
}
