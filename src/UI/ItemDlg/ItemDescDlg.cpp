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
    // The maximum width first: the text is measured in it.
    ::SetWindowPos(m_hWnd, nullptr, centre - maxWidth / 2, y, maxWidth, kMeasureHeight, SWP_NOZORDER | SWP_NOACTIVATE);

    Gdiplus::RectF measured;
    RETURN_IF_FAILED(measureDescRect(measured));
    const int width = truncToInt(measured.Width) + 6;
    const int height = truncToInt(measured.Height) + 2;
    const int left = centre - width / 2;
    place({left, y, left + width, y + height});
    return S_OK;
}

HRESULT CItemDescDlg::measureDescRect(Gdiplus::RectF& outRect) const {
    const common::WindowDc dc(m_hWnd);
    Gdiplus::Graphics graphics(dc.get());
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));
    const CDescFormat format;
    if (graphics.MeasureString(m_strDesc.c_str(), -1, font.get(), toRectF(clientRect()), &format, &outRect) !=
        Gdiplus::Ok) {
        RETURN_LOGGED(E_FAIL);
    }
    coverOtherFonts(graphics, m_strDesc.c_str(), *font, toRectF(clientRect()).Width, outRect);
    return S_OK;
}

HRESULT CItemDescDlg::drawDescString(HDC hDc) const {
    Gdiplus::Graphics graphics(hDc);
    RECT layout = clientRect();
    layout.top += 1;
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));
    const CDescFormat format;
    OutlineText().draw(graphics, toRectF(layout), m_strDesc.c_str(), *font, &format, 0.0, kBlack, kBlack);
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
