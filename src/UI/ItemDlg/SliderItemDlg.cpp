#include "UI/ItemDlg/SliderItemDlg.h"

#include <algorithm>
#include <utility>

#include "Data/ZelConfig.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "UI/CardsInUse.h"
#include "UI/MouseSurface.h"
#include "ZelMain.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/StringIds.h"

namespace {

constexpr double kBaseWidth = 200.0;
constexpr double kHeightPerThumb = 1.2;
constexpr int kLowestLevel = 1;

constexpr Gdiplus::ARGB kGrey = 0xFF696969;
constexpr float kThumbPen = 2.0F;

Gdiplus::Rect toRect(const RECT& rect) {
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

// The face of the slider: a rounded rectangle, light in the middle, on black corners.
void drawBackground(Gdiplus::Graphics& graphics, const RECT& client) {
    const Gdiplus::Rect area = toRect(client);
    const Gdiplus::SolidBrush black(Gdiplus::Color{kBlack});
    graphics.FillRectangle(&black, area);

    const int corner = std::max(area.Height / 4, 1);
    const int right = area.GetRight() - corner - 1;
    const int bottom = area.GetBottom() - corner - 1;
    Gdiplus::GraphicsPath path;
    path.AddArc(right, bottom, corner, corner, 0.0F, 90.0F);
    path.AddArc(area.X, bottom, corner, corner, 90.0F, 90.0F);
    path.AddArc(area.X, area.Y, corner, corner, 180.0F, 90.0F);
    path.AddArc(right, area.Y, corner, corner, 270.0F, 90.0F);
    path.CloseFigure();

    Gdiplus::LinearGradientBrush gradient(area, Gdiplus::Color{kBlack}, Gdiplus::Color{kWhite},
                                          Gdiplus::LinearGradientModeHorizontal);
    constexpr float kFactors[] = {0.6F, 0.85F, 0.6F};
    constexpr float kPositions[] = {0.0F, 0.5F, 1.0F};
    gradient.SetBlend(kFactors, kPositions, static_cast<INT>(std::size(kFactors)));
    graphics.FillPath(&gradient, &path);
}

void drawChannel(Gdiplus::Graphics& graphics, const RECT& channel) {
    const Gdiplus::SolidBrush grey(Gdiplus::Color{kGrey});
    graphics.FillRectangle(&grey, toRect(channel));
}

void drawThumb(Gdiplus::Graphics& graphics, const RECT& thumb) {
    const Gdiplus::Rect area = toRect(thumb);
    const Gdiplus::SolidBrush white(Gdiplus::Color{kWhite});
    graphics.FillRectangle(&white, area.X, area.Y, area.Width - 1, area.Height - 1);
    const Gdiplus::Pen pen(Gdiplus::Color{kGrey}, kThumbPen);
    graphics.DrawRectangle(&pen, area.X + 1, area.Y + 1, area.Width - 3, area.Height - 3);
}

}  // namespace

const MessageMap& CQrdSliderCtrl::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onReflectedNotify<&CQrdSliderCtrl::OnCustomDraw>(NM_CUSTOMDRAW),
        onFocus<&CQrdSliderCtrl::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CQrdSliderCtrl::OnKillFocus>(WM_KILLFOCUS),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
    return kMap;
}

// The thumb comes last: everything is painted with it, and no part is left to the system.
LRESULT CQrdSliderCtrl::OnCustomDraw(NMHDR* pHeader) {
    const auto& draw = *reinterpret_cast<const NMCUSTOMDRAW*>(pHeader);
    if (draw.dwDrawStage == CDDS_PREPAINT) {
        return CDRF_NOTIFYITEMDRAW;
    }
    if (draw.dwDrawStage != CDDS_ITEMPREPAINT) {
        return CDRF_DODEFAULT;
    }
    if (draw.dwItemSpec == TBCD_THUMB) {
        Gdiplus::Graphics graphics(draw.hdc);
        graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        drawBackground(graphics, clientRect());
        drawChannel(graphics, GetChannelRect());
        drawThumb(graphics, draw.rc);
        // Nothing comes after the thumb but the dotted frame of a control that has the focus: not on this face.
        graphics.Flush(Gdiplus::FlushIntentionSync);
        ::IntersectClipRect(draw.hdc, 0, 0, 0, 0);
    }
    return CDRF_SKIPDEFAULT;
}

void CQrdSliderCtrl::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CQrdSliderCtrl::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    if (auto* item = dynamic_cast<CQrdItem*>(fromHandle(::GetParent(m_hWnd))); item != nullptr) {
        item->killFocus(hNewWnd);
    }
}

CSliderItemDlg::CSliderItemDlg(DWORD dwDecreaseCode, DWORD dwIncreaseCode, LONG lLevelCount, LONG lCurrentLevel)
    : CDialog(IDD_SLIDER_ITEM),
      m_dwDecreaseCode(dwDecreaseCode),
      m_dwIncreaseCode(dwIncreaseCode),
      m_lCurrentLevel(lCurrentLevel),
      m_lLevelCount(lLevelCount) {}

CSliderItemDlg::~CSliderItemDlg() {
    if (::IsWindow(m_hWnd)) {
        LOG_ASSERT(L"!::IsWindow(m_hWnd)");
    }
}

const MessageMap& CSliderItemDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CSliderItemDlg::OnHScroll>(WM_HSCROLL),
        onFocus<&CSliderItemDlg::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CSliderItemDlg::OnKillFocus>(WM_KILLFOCUS),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
    return kMap;
}

// A level of 0 is fine here although the track begins at 1: a plug-in may report it, and the slider shows its minimum.
HRESULT CSliderItemDlg::initialize() {
    if (m_lCurrentLevel < 0 || m_lCurrentLevel > m_lLevelCount) {
        RETURN_LOGGED(E_FAIL);
    }
    return S_OK;
}

HRESULT CSliderItemDlg::destroyItem() {
    if (isWindow()) {
        DestroyWindow();
    }
    return S_OK;
}

int CSliderItemDlg::width() const {
    return truncToInt(theApp.getPngRatio() * kBaseWidth);
}

int CSliderItemDlg::height() const {
    return truncToInt(theApp.getPngRatio() * kHeightPerThumb * CZelConfig::getQrdConfig().uSliderThumbSize);
}

HRESULT CSliderItemDlg::showItem(bool bShow) {
    ::ShowWindow(m_hWnd, bShow ? SW_SHOWNOACTIVATE : SW_HIDE);
    return S_OK;
}

bool CSliderItemDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    CDialog::OnInitDialog();
    addExStyle(WS_EX_LAYERED | WS_EX_TOOLWINDOW);
    ::SetLayeredWindowAttributes(m_hWnd, kColourKey, 0, LWA_COLORKEY);

    m_slider.SubclassDlgItem(IDC_SLIDER, *this);
    // The template's second trackbar has no use.
    ::ShowWindow(::GetDlgItem(m_hWnd, IDC_SLIDER_UNUSED), SW_HIDE);
    ::SetWindowLongPtrW(m_slider.m_hWnd, GWL_STYLE, ::GetWindowLongPtrW(m_slider.m_hWnd, GWL_STYLE) | TBS_FIXEDLENGTH);
    m_slider.SetThumbLength(truncToInt(theApp.getPngRatio() * CZelConfig::getQrdConfig().uSliderThumbSize));
    m_slider.SetRangeMin(kLowestLevel);
    m_slider.SetRangeMax(m_lLevelCount);
    m_slider.SetPos(m_lCurrentLevel);
    ::MoveWindow(m_slider.m_hWnd, 0, 0, width(), height(), TRUE);
    return true;
}

HRESULT CSliderItemDlg::switchItem(DWORD dwHotkey, bool bFirstTime, bool /*bSelected*/) {
    LOG_ENTER_LEAVE();
    if (m_pBlackCard == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (bFirstTime) {
        return S_OK;
    }
    const LONG position = m_slider.GetPos();
    LONG level = position;
    if (dwHotkey == m_dwDecreaseCode && position > kLowestLevel) {
        level = position - 1;
        LOG_INFO(L"Decrease brightness level to %d.", static_cast<int>(level));
    } else if (dwHotkey == m_dwIncreaseCode && position < m_lLevelCount) {
        level = position + 1;
        LOG_INFO(L"Increase brightness level to %d.", static_cast<int>(level));
    } else {
        return S_FALSE;
    }
    RETURN_IF_FAILED(_applyLevel(level));
    m_slider.SetPos(level);
    RETURN_IF_FAILED(updateStatus());
    return S_OK;
}

// Has the card hand the level to the plug-in; the strip stays as it is. A failure also when the function refuses.
HRESULT CSliderItemDlg::_applyLevel(LONG lLevel) {
    HRESULT functionStatus = S_OK;
    const HRESULT status = m_pBlackCard->selectItem(this, lLevel, false, &functionStatus);
    if (FAILED(status) || FAILED(functionStatus)) {
        return FAILED(status) ? status : functionStatus;
    }
    m_lCurrentLevel = lLevel;
    return S_OK;
}

LRESULT CSliderItemDlg::OnHScroll(WPARAM wParam, LPARAM /*lParam*/) {
    const CardsInUse inUse;  // the slider is in the middle of its own message
    Default();
    // The end of a movement is none itself: every level reaches the plug-in once. A thumb position that ends no drag is
    // a turn of the mouse wheel.
    const WORD code = LOWORD(wParam);
    const bool bDragged = std::exchange(m_bDragged, code == TB_THUMBTRACK);
    if (code != TB_ENDTRACK && !(code == TB_THUMBPOSITION && bDragged)) {
        updateBrightness();
    }
    return 0;
}

HRESULT CSliderItemDlg::updateBrightness() {
    LOG_ENTER_LEAVE();
    if (m_pBlackCard == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const HRESULT status = _applyLevel(m_slider.GetPos());
    if (FAILED(status)) {
        m_slider.SetPos(m_lCurrentLevel);  // the mouse has moved it already
        RETURN_LOGGED(status);
    }
    RETURN_IF_FAILED(updateStatus());
    return S_OK;
}

HRESULT CSliderItemDlg::updateStatus() {
    if (m_pBlackCard == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    return m_pBlackCard->updateStatus(loadResString(IDS_BRIGHTNESS_LEVEL) + L" " + std::to_wstring(m_slider.GetPos()));
}

void CSliderItemDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CSliderItemDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    killFocus(hNewWnd);
}
