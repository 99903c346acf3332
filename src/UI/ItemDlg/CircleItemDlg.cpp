#include "UI/ItemDlg/CircleItemDlg.h"

#include <utility>
#include <vector>

#include "Data/ZelConfig.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "ZelMain.h"
#include "common/Handle.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/Pictures.h"

namespace {

constexpr int kInnerMargin = 11;  // pixels, not scaled: the hysteresis between growing and shrinking

}  // namespace

CCircleItemDlg::CCircleItemDlg(UINT uSmallImageId, UINT uLargeImageId, std::wstring strDesc)
    : CItemWnd(
          {IDD_CIRCLE_ITEM, Takes::AllButColourKey, WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, 2, contrast::Tone::Chosen}),
      m_descDlg(std::move(strDesc)),
      m_uSmallImageId(uSmallImageId),
      m_uLargeImageId(uLargeImageId) {}

const MessageMap& CCircleItemDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onSize<&CCircleItemDlg::OnSize>(),
        onMouse<&CCircleItemDlg::OnMouseMove>(WM_MOUSEMOVE),
        onMouse<&CCircleItemDlg::OnLButtonDown>(WM_LBUTTONDOWN),
        onMouseLeave<&CCircleItemDlg::OnMouseLeave>(),
        onFocus<&CCircleItemDlg::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CCircleItemDlg::OnKillFocus>(WM_KILLFOCUS),
    };
    static const MessageMap kMap{&CItemWnd::messageMap(), kEntries};
    return kMap;
}

HRESULT CCircleItemDlg::initialize() {
    LOG_ENTER_LEAVE();
    HRESULT status =
        getImageFromRes(theApp.getPngDll(), static_cast<WORD>(m_uSmallImageId), kPngResourceType, m_pImageSmall);
    if (SUCCEEDED(status)) {
        status =
            getImageFromRes(theApp.getPngDll(), static_cast<WORD>(m_uLargeImageId), kPngResourceType, m_pImageLarge);
    }
    if (FAILED(status)) {
        const HRESULT systemStatus = common::statusFromLastError();
        status = FAILED(systemStatus) ? systemStatus : status;
        LOG_STATUS(status);
        m_pImageSmall.reset();
        m_pImageLarge.reset();
    }
    return status;
}

// The pictures are destroyed before the window that they shadow.
struct CCircleItemDlg::CHandOver::Windows {
    CWnd item;
    CItemDescDlg box{std::wstring()};
    std::vector<std::unique_ptr<CLayeredWnd>> vecPictures;
};

CCircleItemDlg::CHandOver* CCircleItemDlg::CHandOver::s_pCurrent = nullptr;

CCircleItemDlg::CHandOver::CHandOver() noexcept : m_pOuter(std::exchange(s_pCurrent, this)) {}

CCircleItemDlg::CHandOver::~CHandOver() {
    s_pCurrent = m_pOuter;
}

// Without memory the windows end with their item.
bool CCircleItemDlg::CHandOver::_take(CCircleItemDlg& item) {
    if (FAILED(common::statusOf([this] {
            m_kept.push_back(std::make_unique<Windows>());
            return S_OK;
        }))) {
        return false;
    }
    Windows& windows = *m_kept.back();
    windows.vecPictures = item.takePictures();
    windows.item.takeWindow(item);
    windows.box.takeOver(item.m_descDlg);
    return true;
}

bool CCircleItemDlg::CHandOver::_give(CCircleItemDlg& item) {
    if (m_kept.empty()) {
        return false;
    }
    const std::unique_ptr<Windows> windows = std::move(m_kept.front());
    m_kept.erase(m_kept.begin());
    item.takeWindow(windows->item);
    item.m_descDlg.takeOver(windows->box);
    item.setPictures(std::move(windows->vecPictures));
    return true;
}

bool CCircleItemDlg::_handWindowsOn() {
    CHandOver* const handOver = CHandOver::s_pCurrent;
    if (handOver == nullptr || !hasCommonWindows() || !isWindow() || !m_descDlg.isWindow()) {
        return false;
    }
    static_cast<void>(showItem(false));
    return handOver->_take(*this);
}

bool CCircleItemDlg::Create(HWND hParent) {
    CHandOver* const handOver = CHandOver::s_pCurrent;
    if (m_hWnd != nullptr || hParent != nullptr || handOver == nullptr || !handOver->_give(*this)) {
        return CItemWnd::Create(hParent);
    }
    OnInitDialog();
    _layOut();  // no message says so if the size stays
    return true;
}

HRESULT CCircleItemDlg::destroyItem() {
    LOG_ENTER_LEAVE();
    if (!_handWindowsOn()) {
        DestroyWindow();
    }
    m_pImageSmall.reset();
    m_pImageLarge.reset();
    return S_OK;
}

bool CCircleItemDlg::DestroyWindow() {
    dropPictures();
    m_descDlg.DestroyWindow();
    return CItemWnd::DestroyWindow();
}

bool CCircleItemDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    if (!m_descDlg.isWindow()) {  // otherwise all windows are those of an earlier item
        CItemWnd::OnInitDialog();
        m_descDlg.Create(nullptr);
    }
    return false;
}

int CCircleItemDlg::width() const {
    return truncToInt(placement().ratio * kItemSize * m_scale);
}

// Deliberately unsigned: a maximum width below the item's wraps around to a very large overhang, which the layout of
// the row undoes by wrapping once more.
int CCircleItemDlg::descOverhang() const {
    const DWORD maxWidth = CZelConfig::getQrdConfig().uItemDescMaxWidth;
    return static_cast<int>((maxWidth - static_cast<DWORD>(width())) / 2);
}

void CCircleItemDlg::OnSize() {
    Default();
    _layOut();
}

void CCircleItemDlg::_layOut() {
    m_outerRect = clientRect();
    m_outerRect.bottom = m_outerRect.top + (m_outerRect.right - m_outerRect.left);
    m_innerRect = m_outerRect;
    ::InflateRect(&m_innerRect, -kInnerMargin, -kInnerMargin);
}

void CCircleItemDlg::OnPaint() {
    {
        // The disc is the area that takes the mouse, invisible with an alpha of 1.
        const common::PaintDc paint(m_hWnd);
        const common::UniqueBrush key(::CreateSolidBrush(kColourKey));
        const RECT client = clientRect();
        ::FillRect(paint.get(), &client, key.get());
        const common::UniquePen pen(::CreatePen(PS_SOLID, 1, RGB(0xFF, 0xFF, 0xFF)));
        const common::SelectScope withPen(paint.get(), pen.get());
        const common::SelectScope withBrush(paint.get(), ::GetStockObject(WHITE_BRUSH));
        RECT disc = m_bEnlarged ? m_outerRect : m_innerRect;
        ::InflateRect(&disc, -1, -1);
        ::Ellipse(paint.get(), disc.left, disc.top, disc.right, disc.bottom);
    }
    static_cast<void>(showFakeWnd());
}

HRESULT CCircleItemDlg::showFakeWnd() {
    RETURN_UNLESS(m_pImageSmall != nullptr && m_pImageLarge != nullptr, L"(m_pImageSmall && m_pImageLarge)", E_POINTER);
    if (_smallPicture() == nullptr || _largePicture() == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    m_descDlg.show(false);

    RECT part = m_bEnlarged ? m_outerRect : m_innerRect;
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(&part), 2);
    const POINT position{part.left, part.top};
    if (m_bEnlarged) {
        _smallPicture()->hide();
        static_cast<void>(_largePicture()->paint(m_pImageLarge.get(), kCardOpacity, &position, nullptr));
        _showDesc(part);
        return S_OK;
    }
    _largePicture()->hide();
    const RECT size{0, 0, part.right - part.left, part.bottom - part.top};
    static_cast<void>(_smallPicture()->paint(m_pImageSmall.get(), kCardOpacity, &position, &size));
    if (CZelConfig::getQrdConfig().bAlwaysShowItemsCaption) {
        _showDesc(part);
    }
    return S_OK;
}

// The caption box under a part of the item, given in screen coordinates.
void CCircleItemDlg::_showDesc(const RECT& part) {
    if (::IsWindowVisible(m_hWnd)) {
        static_cast<void>(m_descDlg.setWndPos(&part));
        m_descDlg.show(true);
    }
}

void CCircleItemDlg::raiseCaption() const {
    ::SetWindowPos(m_descDlg.m_hWnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CCircleItemDlg::setPlacement(const Placement& placement) {
    CQrdItem::setPlacement(placement);
    m_descDlg.setPlacement(placement);
}

HRESULT CCircleItemDlg::switchItem(DWORD /*dwHotkey*/, bool /*bFirstTime*/, bool bSelected) {
    if (m_bEnlarged == bSelected) {
        return S_FALSE;
    }
    m_bEnlarged = bSelected;
    invalidate();
    return S_OK;
}

HRESULT CCircleItemDlg::showItem(bool bShow) {
    if (!bShow) {
        m_descDlg.show(false);
    }
    const HRESULT status = CItemWnd::showItem(bShow);
    if (bShow) {
        invalidate();  // a window of an earlier item may still show that one's picture
    }
    return status;
}

HRESULT CCircleItemDlg::setItemText(const wchar_t* pszText) {
    if (pszText == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    m_strItemText = pszText;
    return S_OK;
}

// The enlarged item is the one that would be applied.
accessible::Facts CCircleItemDlg::accessibleFacts(LONG /*nPart*/) const {
    constexpr LONG kChosen = STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED;
    return {m_descDlg.text(), {}, {}, m_bEnlarged && isVisible() ? kChosen : 0};
}

// From now on the user works with these cards as with the mouse.
void CCircleItemDlg::accessiblePress(LONG /*nPart*/) {
    theApp.mouseOperating() = TRUE;
    OnLButtonDown({});
}

void CCircleItemDlg::OnMouseMove(POINT point) {
    if (!theApp.mouseOperating()) {
        return;
    }
    trackMouse();
    // Growing requires the inner part, shrinking the outside of the outer part, so that nothing flickers in between.
    const bool grow = !m_bEnlarged && ::PtInRect(&m_innerRect, point);
    const bool shrink = m_bEnlarged && !::PtInRect(&m_outerRect, point);
    if (grow || shrink) {
        m_bEnlarged = grow;
        invalidate();
    }
}

void CCircleItemDlg::OnMouseLeave() {
    m_bTracking = false;
    m_bEnlarged = false;
    invalidate();
}

void CCircleItemDlg::OnLButtonDown(POINT /*point*/) {
    if (theApp.mouseOperating() && m_pBlackCard != nullptr) {
        static_cast<void>(m_pBlackCard->selectItem(this, -1, true));
    }
}

void CCircleItemDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CCircleItemDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    if (!m_bEnlarged) {
        static_cast<void>(killFocus(hNewWnd));
    }
}
