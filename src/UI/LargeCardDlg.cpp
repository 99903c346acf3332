#include "UI/LargeCardDlg.h"

#include <utility>

#include "Logic/Placement.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "UI/MouseSurface.h"
#include "ZelMain.h"
#include "common/GdiPlusFunc.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"

CLargeCardDlg::CLargeCardDlg(UINT uImageId, std::wstring strCaption, std::wstring strDesc, CBlackCard* pBlackCard,
                             const Placement& placement)
    : CDialog(IDD_LARGE_CARD),
      m_strCaption(std::move(strCaption)),
      m_strDesc(std::move(strDesc)),
      m_uImageId(uImageId),
      m_pBlackCard(pBlackCard),
      m_placement(placement) {}

CLargeCardDlg::~CLargeCardDlg() {
    CLargeCardDlg::DestroyWindow();
}

HRESULT CLargeCardDlg::initialize() {
    RETURN_IF_FAILED(getImageFromRes(theApp.getPngDll(), static_cast<WORD>(m_uImageId), kPngResourceType, m_pImage));
    return S_OK;
}

const MessageMap& CLargeCardDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onSize<&CLargeCardDlg::OnSize>(),
        onPaint<&CLargeCardDlg::OnPaint>(),
        onShowWindow<&CLargeCardDlg::OnShowWindow>(),
        onFocus<&CLargeCardDlg::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CLargeCardDlg::OnKillFocus>(WM_KILLFOCUS),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
    return kMap;
}

bool CLargeCardDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    m_pLayeredWnd = std::make_unique<CLayeredWnd>(m_hWnd, this);
    if (SUCCEEDED(m_pLayeredWnd->createWnd())) {
        makeMouseSurface(*this, WS_EX_TOOLWINDOW, SurfaceKey::None);
    } else {
        LOG_STATUS(0);
    }
    return false;
}

bool CLargeCardDlg::DestroyWindow() {
    m_pLayeredWnd.reset();
    return CDialog::DestroyWindow();
}

void CLargeCardDlg::setText(std::wstring strText) {
    m_strText = std::move(strText);
    // A line ends with its line feed; not every text output skips the carriage return before it.
    std::erase(m_strText, L'\r');
    ::InvalidateRect(m_hWnd, &m_rects.text, TRUE);
}

void CLargeCardDlg::OnSize() {
    Default();
    m_rects = geometry::largeCardTexts(clientRect(), m_placement.ratio);
}

void CLargeCardDlg::OnPaint() {
    Default();
    if (m_pLayeredWnd != nullptr) {
        m_pLayeredWnd->paint(m_pImage.get(), kCardOpacity, nullptr, nullptr);
    }
}

void CLargeCardDlg::OnShowWindow(bool bShow) {
    Default();
    if (!bShow && m_pLayeredWnd != nullptr) {
        m_pLayeredWnd->hide();
    }
}

void CLargeCardDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CLargeCardDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    if (m_pBlackCard != nullptr) {
        CBlackCard::onFocusLost(hNewWnd);
    }
}

HRESULT CLargeCardDlg::drawText(Gdiplus::Graphics& graphics) {
    DescFormat format;
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));

    const CaptionFormat captionFormat;
    m_captionText.draw(graphics, toRectF(m_rects.caption), m_strCaption.c_str(), *font, &captionFormat, 0.0, kWhite,
                       kWhite);

    // Without a caption above it the description moves to the top of its place.
    format.SetLineAlignment(m_strCaption.c_str()[0] == L'\0' ? Gdiplus::StringAlignmentNear
                                                             : Gdiplus::StringAlignmentCenter);
    m_descText.draw(graphics, toRectF(m_rects.desc), m_strDesc.c_str(), *font, &format, 0.0, kWhite, kWhite);

    format.SetLineAlignment(Gdiplus::StringAlignmentNear);
    const Gdiplus::RectF textRect = toRectF(m_rects.text);
    RETURN_IF_FAILED(measureTextFont(graphics, m_strText.c_str(), textRect, &font));
    m_statusText.draw(graphics, textRect, m_strText.c_str(), *font, &format, 0.0, kWhite, kWhite);
    return S_OK;
}
