#include "UI/ZelHideDlg.h"

#include <new>
#include <utility>

#include "Data/ZelConfig.h"
#include "Logic/Placement.h"
#include "Messages.h"
#include "UI/CardGeometry.h"
#include "UI/CardStyle.h"
#include "UI/MouseSurface.h"
#include "ZelMain.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/Pictures.h"

namespace {

// The rows of the border image that the strip shows: its last four at the top edge, its first four at the bottom.
constexpr int kTopSourceRow = geometry::kPictureRows - geometry::kHoverStripHeight;

}  // namespace

CZelHideDlg::CZelHideDlg(int nCardCount) : CCardInput(IDD_HOVER_STRIP), m_nCardCount(nCardCount) {}

CZelHideDlg::~CZelHideDlg() {
    CZelHideDlg::DestroyWindow();
}

const MessageMap& CZelHideDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CZelHideDlg::OnPaint>(),
        onShowWindow<&CZelHideDlg::OnShowWindow>(),
        onMouse<&CZelHideDlg::OnMouseMove>(WM_MOUSEMOVE),
        onMouseLeave<&CZelHideDlg::OnMouseLeave>(),
        onTimer<&CZelHideDlg::OnTimer>(),
        onMessage<&CZelHideDlg::OnMouseActivate>(WM_MOUSEACTIVATE),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
    return kMap;
}

bool CZelHideDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    CDialog::OnInitDialog();
    makeMouseSurface(*this, 0, SurfaceKey::Magenta);
    _setDlgPos();
    m_pLyrWndBlkCards = std::make_unique<CLayeredWnd>(m_hWnd);
    const HRESULT status = getImageFromRes(theApp.getPngDll(), kHoverBorderImageId, kPngResourceType, m_pBorderImage);
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
    return true;
}

bool CZelHideDlg::DestroyWindow() {
    m_pLyrWndBlkCards.reset();
    return CDialog::DestroyWindow();
}

HRESULT CZelHideDlg::refresh(int nCardCount) {
    LOG_ENTER_LEAVE();
    m_nCardCount = nCardCount;
    m_pLyrWndBlkCards.reset();
    RETURN_IF_FAILED(_setDlgPos());
    m_pLyrWndBlkCards = std::make_unique<CLayeredWnd>(m_hWnd);
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
    const HWND order = CZelConfig::getQrdConfig().bTopmost ? HWND_TOPMOST : HWND_NOTOPMOST;
    // Not activated: the keyboard stays with the program that the user works in.
    ::SetWindowPos(m_hWnd, order, strip.place.left, strip.place.top, strip.place.right - strip.place.left,
                   strip.place.bottom - strip.place.top, SWP_NOACTIVATE);
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
    _showBlackCardsBoder();
}

HRESULT CZelHideDlg::_showBlackCardsBoder() {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(m_pLyrWndBlkCards != nullptr, L"m_pLyrWndBlkCards", E_POINTER);
    if (!isVisible() || m_vecSegments.empty()) {
        return S_FALSE;
    }
    const std::vector<Gdiplus::Image*> images(m_vecSegments.size(), m_pBorderImage.get());
    const std::vector<DWORD> opacities(m_vecSegments.size(), kCardOpacity);
    std::vector<const RECT*> places;
    for (const RECT& segment : m_vecSegments) {
        places.push_back(&segment);
    }
    const int sourceTop = theApp.placement().bottom ? 0 : kTopSourceRow;
    RETURN_IF_FAILED(
        m_pLyrWndBlkCards->paint(images, opacities, places, nullptr, sourceTop, geometry::kHoverStripHeight));
    return S_OK;
}

void CZelHideDlg::OnShowWindow(bool bShow) {
    Default();
    if (!bShow && m_pLyrWndBlkCards != nullptr) {
        m_pLyrWndBlkCards->hide();
    }
}

void CZelHideDlg::OnMouseMove(POINT /*point*/) {
    const QrdConfig& config = CZelConfig::getQrdConfig();
    if (config.bDisable) {
        return;
    }
    trackMouseLeave(m_hWnd, m_bTracking);
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
    // A mouse that only crossed the strip may be gone already: not every system says so at once.
    if (!std::exchange(m_bTimerRunning, false) || !mouseIsOn(m_hWnd)) {
        return;
    }
    theApp.showMainDlg(TRUE, TRUE);
    theApp.mouseOperating() = TRUE;
}

// A click on the edge of the screen leaves the keyboard where it is.
LRESULT CZelHideDlg::OnMouseActivate(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return MA_NOACTIVATE;
}

void CZelHideDlg::OnMouseLeave() {
    m_bTracking = false;
    m_bTimerRunning = false;
    ::KillTimer(m_hWnd, kTimerIdle);
}
