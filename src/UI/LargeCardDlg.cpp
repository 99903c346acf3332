#include "UI/LargeCardDlg.h"

#include <functional>
#include <utility>

#include "Logic/Placement.h"
#include "Logic/ZelCommonFunc.h"
#include "Messages.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "ZelMain.h"
#include "common/GdiPlusFunc.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"

CLargeCardDlg::CLargeCardDlg(UINT uImageId, std::wstring strCaption, std::wstring strDesc, CBlackCard* pBlackCard,
                             const Placement& placement)
    : CCardWnd({IDD_LARGE_CARD, Takes::Everything, WS_EX_TOOLWINDOW, 1}, this),
      m_strCaption(std::move(strCaption)),
      m_strDesc(std::move(strDesc)),
      m_uImageId(uImageId),
      m_pBlackCard(pBlackCard),
      m_placement(placement) {}

HRESULT CLargeCardDlg::initialize() {
    RETURN_IF_FAILED(getImageFromRes(theApp.getPngDll(), static_cast<WORD>(m_uImageId), kPngResourceType, m_pImage));
    return S_OK;
}

const MessageMap& CLargeCardDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onSize<&CLargeCardDlg::OnSize>(),
        onFocus<&CLargeCardDlg::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CLargeCardDlg::OnKillFocus>(WM_KILLFOCUS),
        onTimer<&CLargeCardDlg::OnTimer>(),
        onMessage<&CLargeCardDlg::OnTakeFocusBack>(kMsgTakeFocusBack),
    };
    static const MessageMap kMap{&CCardWnd::messageMap(), kEntries};
    return kMap;
}

// Replaces the base class's order: the picture's window is created first; without it the card stays an ordinary window,
// so that something is visible.
bool CLargeCardDlg::OnInitDialog() {
    makePictures();
    if (SUCCEEDED(picture()->createWnd())) {
        makeSurface();
    } else {
        LOG_STATUS(0);
    }
    return false;
}

void CLargeCardDlg::setText(std::wstring strText) {
    m_strText = std::move(strText);
    // A line ends with its line feed; some text outputs do not skip the carriage return before it.
    std::erase(m_strText, L'\r');
    ::InvalidateRect(m_hWnd, &m_rects.text, TRUE);
    accessible::announce(m_hWnd, EVENT_OBJECT_VALUECHANGE);
}

accessible::Facts CLargeCardDlg::accessibleFacts(LONG /*nPart*/) const {
    return m_strCaption.empty() ? accessible::Facts{m_strDesc, m_strText, {}, 0}
                                : accessible::Facts{m_strCaption, m_strText, m_strDesc, 0};
}

std::vector<accessible::ITarget*> CLargeCardDlg::accessibleChildren() const {
    return m_pBlackCard == nullptr ? std::vector<accessible::ITarget*>{} : m_pBlackCard->accessibleItems();
}

void CLargeCardDlg::OnSize() {
    Default();
    m_rects = geometry::largeCardTexts(clientRect(), m_placement.ratio);
}

void CLargeCardDlg::OnPaint() {
    Default();
    static_cast<void>(paintPicture(m_pImage.get()));  // it has logged why, and the next paint tries again
}

void CLargeCardDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CLargeCardDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    if (m_pBlackCard == nullptr) {
        return;
    }
    if (_isLateFocusLoss(hNewWnd)) {
        ::PostMessageW(m_hWnd, kMsgTakeFocusBack, 0, 0);  // not during the change of focus itself
        return;
    }
    CBlackCard::onFocusLost(hNewWnd);
}

void CLargeCardDlg::expectLateFocusLoss() {
    m_bFocusSettles = ::SetTimer(m_hWnd, kTimerFocusSettled, kFocusSettlesMs, nullptr) != 0;
}

// Answers true only once.
bool CLargeCardDlg::_isLateFocusLoss(HWND hNewWnd) {
    if (!m_bFocusSettles || isOwnWindow(hNewWnd)) {
        return false;
    }
    OnTimer(kTimerFocusSettled);
    return true;
}

void CLargeCardDlg::OnTimer(UINT_PTR uId) {
    if (uId != kTimerFocusSettled) {
        Default();
        return;
    }
    ::KillTimer(m_hWnd, uId);
    m_bFocusSettles = false;
}

LRESULT CLargeCardDlg::OnTakeFocusBack(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (isVisible() && ::SetForegroundWindow(m_hWnd) == FALSE) {
        CBlackCard::onFocusLost(nullptr);
    }
    return 0;
}

// The places of the texts follow from the frame's size and the ratio.
std::optional<std::size_t> CLargeCardDlg::textState() const {
    return std::hash<std::wstring>()(std::to_wstring(m_placement.ratio) + L'\n' + m_strCaption + L'\n' + m_strDesc +
                                     L'\n' + m_strText);
}

HRESULT CLargeCardDlg::drawText(Gdiplus::Graphics& graphics) {
    CDescFormat format;
    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(this, graphics, font));

    const CCaptionFormat captionFormat;
    m_captionText.draw(graphics, toRectF(m_rects.caption), m_strCaption.c_str(), *font, &captionFormat, 0.0, kWhite,
                       kWhite);

    // Without a caption above it the description moves to the top of its rectangle.
    format.SetLineAlignment(m_strCaption.c_str()[0] == L'\0' ? Gdiplus::StringAlignmentNear
                                                             : Gdiplus::StringAlignmentCenter);
    m_descText.draw(graphics, toRectF(m_rects.desc), m_strDesc.c_str(), *font, &format, 0.0, kWhite, kWhite);

    format.SetLineAlignment(Gdiplus::StringAlignmentNear);
    const Gdiplus::RectF textRect = toRectF(m_rects.text);
    RETURN_IF_FAILED(measureTextFont(graphics, m_strText.c_str(), textRect, &font));
    m_statusText.draw(graphics, textRect, m_strText.c_str(), *font, &format, 0.0, kWhite, kWhite);
    return m_captionText.complete() && m_descText.complete() && m_statusText.complete() ? S_OK : E_OUTOFMEMORY;
}
