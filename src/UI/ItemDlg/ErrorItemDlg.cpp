#include "UI/ItemDlg/ErrorItemDlg.h"

#include <utility>

#include "Logic/ZelCommonFunc.h"
#include "UI/CardStyle.h"
#include "common/GdiPlusFunc.h"
#include "common/Handle.h"
#include "common/Status.h"
#include "res/DialogIds.h"

namespace {
constexpr float kTextWidth = 288.0F;  // the text wraps here, at ratio 1.0
}

CErrorItemDlg::CErrorItemDlg(std::wstring strError)
    : CItemWnd({IDD_ERROR_ITEM, Takes::Everything, WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, 1}, this),
      m_strError(std::move(strError)) {}

const MessageMap& CErrorItemDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onFocus<&CErrorItemDlg::OnKillFocus>(WM_KILLFOCUS),
    };
    static const MessageMap kMap{&CItemWnd::messageMap(), kEntries};
    return kMap;
}

HRESULT CErrorItemDlg::initialize() {
    LOG_ENTER_LEAVE();
    RETURN_IF_FAILED(getErrStringRect());
    return S_OK;
}

HRESULT CErrorItemDlg::getErrStringRect() {
    const common::WindowDc dc(m_hWnd);
    Gdiplus::Graphics graphics(dc.get());
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));

    const CCentredFormat format;
    const Gdiplus::RectF layout(0.0F, 0.0F, static_cast<float>(placement().ratio) * kTextWidth, 0.0F);
    if (graphics.MeasureString(m_strError.c_str(), -1, font.get(), layout, &format, &m_textRect) != Gdiplus::Ok) {
        RETURN_LOGGED(E_FAIL);
    }
    coverOtherFonts(graphics, m_strError.c_str(), *font, layout.Width, m_textRect);
    m_textRect.Inflate(1.0F, 1.0F);
    return S_OK;
}

HRESULT CErrorItemDlg::destroyItem() {
    LOG_ENTER_LEAVE();
    DestroyWindow();
    return S_OK;
}

bool CErrorItemDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    return CItemWnd::OnInitDialog();
}

HRESULT CErrorItemDlg::showItem(bool bShow) {
    const HRESULT status = CItemWnd::showItem(bShow);
    if (bShow) {
        accessible::announce(m_hWnd, EVENT_SYSTEM_ALERT);  // it is read wherever the focus is
    }
    return status;
}

void CErrorItemDlg::OnPaint() {
    Default();
    static_cast<void>(paintPicture(nullptr));  // it has logged why, and the next paint tries again
}

HRESULT CErrorItemDlg::drawText(Gdiplus::Graphics& graphics) {
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));
    CCentredFormat format;
    if (m_textRect.Height < 1.5F * font->GetHeight(&graphics)) {
        // It was measured as one line. A little too long for it, it is condensed: there is no room for a second one.
        format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    Gdiplus::RectF layout = toRectF(clientRect());
    if (contrast::used()) {
        drawPlate(graphics, layout);
    }
    // The window is measured without an outline, and letters exceed their place by less than a pixel.
    layout.Inflate(-static_cast<float>(kOutlineWidth / 2 + 1.0), 0.0F);
    m_errorText.draw(graphics, layout, m_strError.c_str(), *font, &format, kOutlineWidth, kWhite, kBlack);
    return S_OK;
}

HRESULT CErrorItemDlg::setItemText(const wchar_t* pszText) {
    if (pszText == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    m_strError = pszText;
    accessible::announce(m_hWnd, EVENT_OBJECT_NAMECHANGE);
    return S_OK;
}

void CErrorItemDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    static_cast<void>(killFocus(hNewWnd));
}
