#include "UI/ZelHideDlg.h"

#include <new>
#include <utility>

#include "Data/ZelConfig.h"
#include "Logic/Placement.h"
#include "Messages.h"
#include "UI/CardGeometry.h"
#include "UI/CardStyle.h"
#include "ZelMain.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/Pictures.h"

CZelHideDlg::CZelHideDlg(int nCardCount)
    : CCardWnd({IDD_HOVER_STRIP, Takes::AllButColourKey, 0, 1}), m_nCardCount(nCardCount) {}

const MessageMap& CZelHideDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMouse<&CZelHideDlg::OnMouseMove>(WM_MOUSEMOVE),
        onMouseLeave<&CZelHideDlg::OnMouseLeave>(),
        onTimer<&CZelHideDlg::OnTimer>(),
        onMessage<&CZelHideDlg::OnMouseActivate>(WM_MOUSEACTIVATE),
    };
    static const MessageMap kMap{&CCardWnd::messageMap(), kEntries};
    return kMap;
}

bool CZelHideDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    CCardWnd::OnInitDialog();
    static_cast<void>(_setDlgPos());
    const HRESULT status = getImageFromRes(theApp.getPngDll(), kHoverBorderImageId, kPngResourceType, m_borderImage);
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
    return true;
}

HRESULT CZelHideDlg::refresh(int nCardCount) {
    LOG_ENTER_LEAVE();
    m_nCardCount = nCardCount;
    dropPictures();
    RETURN_IF_FAILED(_setDlgPos());
    makePictures();
    invalidate();
    return S_OK;
}

HRESULT CZelHideDlg::_setDlgPos() {
    LOG_ENTER_LEAVE();
    m_vecSegments.clear();
    const Placement& placement = theApp.placement();
    const RECT& workArea = placement.workArea;
    if (!placement.known()) {
        RETURN_LOGGED(E_FAIL);
    }
    LOG_TRACE(L"%s = (%d, %d) - (%d, %d), %d * %d", L"rectWorkArea", static_cast<int>(workArea.left),
              static_cast<int>(workArea.top), static_cast<int>(workArea.right), static_cast<int>(workArea.bottom),
              static_cast<int>(workArea.right - workArea.left), static_cast<int>(workArea.bottom - workArea.top));

    const geometry::Strip strip = geometry::hoverStrip(workArea, m_nCardCount, placement.ratio, placement.bottom);
    place(strip.place, CZelConfig::getQrdConfig().bTopmost ? HWND_TOPMOST : HWND_NOTOPMOST);
    try {
        for (int card = 0; card < m_nCardCount; ++card) {
            m_vecSegments.push_back(geometry::cardRect(strip, card));
        }
    } catch (const std::bad_alloc&) {
        RETURN_LOGGED(E_POINTER);
    }
    return S_OK;
}

void CZelHideDlg::OnPaint() {
    Default();
    static_cast<void>(_showBlackCardsBoder());
}

HRESULT CZelHideDlg::_showBlackCardsBoder() {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(picture() != nullptr, L"m_pLyrWndBlkCards", E_POINTER);
    if (!isVisible() || m_vecSegments.empty()) {
        return S_FALSE;
    }
    const std::vector<Gdiplus::Image*> images(m_vecSegments.size(), m_borderImage.get());
    const std::vector<DWORD> opacities(m_vecSegments.size(), kCardOpacity);
    std::vector<const RECT*> places;
    for (const RECT& segment : m_vecSegments) {
        places.push_back(&segment);
    }
    RETURN_IF_FAILED(paintBand(images, opacities, places, theApp.placement().bottom, geometry::kHoverStripHeight));
    return S_OK;
}

void CZelHideDlg::OnMouseMove(POINT /*point*/) {
    const QrdConfig& config = CZelConfig::getQrdConfig();
    if (config.bDisable) {
        return;
    }
    trackMouse();
    if (!m_bTimerRunning) {
        m_bTimerRunning = ::SetTimer(m_hWnd, kTimerIdle, config.uMouseEnterIdle, nullptr) != 0;
    }
}

void CZelHideDlg::OnTimer(UINT_PTR uId) {
    if (uId != kTimerIdle) {
        Default();
        return;
    }
    LOG_ENTER_LEAVE();
    ::KillTimer(m_hWnd, kTimerIdle);
    // A mouse that only crossed the strip may have left already: some systems report this late.
    if (!std::exchange(m_bTimerRunning, false) || !mouseIsOn()) {
        return;
    }
    _showCards();
}

void CZelHideDlg::_showCards() {
    static_cast<void>(theApp.showMainDlg(TRUE, TRUE));
    theApp.mouseOperating() = TRUE;
}

accessible::Facts CZelHideDlg::accessibleFacts(LONG /*nPart*/) const {
    return {kProductName, {}, {}, CZelConfig::getQrdConfig().bDisable ? STATE_SYSTEM_UNAVAILABLE : 0};
}

void CZelHideDlg::accessiblePress(LONG /*nPart*/) {
    _showCards();
}

// A click on the edge of the screen does not move the focus.
LRESULT CZelHideDlg::OnMouseActivate(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return MA_NOACTIVATE;
}

void CZelHideDlg::OnMouseLeave() {
    m_bTracking = false;
    m_bTimerRunning = false;
    ::KillTimer(m_hWnd, kTimerIdle);
}
