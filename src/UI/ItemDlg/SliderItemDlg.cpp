#include "UI/ItemDlg/SliderItemDlg.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "Data/ZelConfig.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "UI/CardsInUse.h"
#include "common/FrameBitmap.h"
#include "common/PictureStore.h"
#include "common/ResourceFunc.h"
#include "common/RoundedBox.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/StringIds.h"

namespace {

constexpr double kBaseWidth = 200.0;
constexpr double kHeightPerThumb = 1.2;
constexpr int kLowestLevel = 1;
// More than one for each pixel of the widest screen; and the messages of a trackbar have no room for a larger one.
constexpr LONG kMostLevels = 0x7FFF;
constexpr DWORD kOpaque = 255;

constexpr Gdiplus::ARGB kGrey = 0xFF696969;
constexpr int kThumbFrame = 2;  // pixels
constexpr double kThumbRadius = 3.0;

// A grey between black and white; the share is its brightness.
DWORD greyOf(double share) {
    const auto value = static_cast<DWORD>(std::lround(255.0 * share));
    return kBlack | value << 16U | value << 8U | value;
}

// The box of each of the face's four arcs.
int cornerSize(int height) {
    return height / 4;
}

// The face of the slider: a rounded rectangle, light in the middle. A pixel that its corner arcs cross is transparent
// accordingly, and nothing is outside them.
void drawFace(const FramePixels& frame) {
    constexpr double kEnd = 0.6;
    constexpr double kMiddle = 0.85;
    const RECT client{0, 0, frame.width, frame.height};
    const double half = frame.width / 2.0;
    if (contrast::used()) {
        const double radius = cornerSize(frame.height) / 2.0;
        fillRoundedBox(frame, client, radius, contrast::used()->plain.ink);
        fillRoundedBox(frame, {1, 1, client.right - 1, client.bottom - 1}, std::max(radius - 1.0, 0.0),
                       contrast::used()->plain.ground);
        return;
    }
    fillRoundedBox(frame, client, cornerSize(frame.height) / 2.0,
                   [half](int x) { return greyOf(kMiddle - (kMiddle - kEnd) * std::fabs(x + 0.5 - half) / half); });
}

bool isOpaque(DWORD pixel) {
    return pixel >> 24U == 0xFFU;
}

// Applies the function to every pixel.
template <typename Change>
void changePixels(const FramePixels& frame, Change change) {
    for (int y = 0; y < frame.height; ++y) {
        std::transform(frame.row(y), frame.row(y) + frame.width, frame.row(y), change);
    }
}

// The control's window has no transparency but the colour key: what its corner arcs cross is left to the picture.
void leaveCornersOut(const FramePixels& frame) {
    constexpr DWORD kSeenThrough = kBlack | kColourKey;  // the same in both orders of red and blue
    changePixels(frame, [](DWORD pixel) { return isOpaque(pixel) ? pixel : kSeenThrough; });
}

Picture cornersOfFace(int width, int height) {
    Picture corners{width, height,
                    std::vector<DWORD>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
    const FramePixels frame{corners.pixels.data(), width, width, height};
    drawFace(frame);
    changePixels(frame, [](DWORD pixel) { return isOpaque(pixel) ? 0 : pixel; });
    return corners;
}

void drawChannel(const FramePixels& frame, const RECT& channel) {
    const DWORD colour = contrast::used() ? contrast::used()->plain.ink : kGrey;
    fillRoundedBox(frame, channel, (channel.bottom - channel.top) / 2.0, colour);
}

// White, framed in grey. Its last row and column stay free.
void drawThumb(const FramePixels& frame, const RECT& thumb) {
    RECT box{thumb.left, thumb.top, thumb.right - 1, thumb.bottom - 1};
    const auto& palette = contrast::used();
    fillRoundedBox(frame, box, kThumbRadius, palette ? palette->plain.ink : kGrey);
    ::InflateRect(&box, -kThumbFrame, -kThumbFrame);
    fillRoundedBox(frame, box, 0.0, palette ? palette->chosen.ground : kWhite);
}

}  // namespace

const MessageMap& CQrdSliderCtrl::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onReflectedNotify<&CQrdSliderCtrl::OnCustomDraw>(NM_CUSTOMDRAW),
        onMessage<&CQrdSliderCtrl::OnGetObject>(WM_GETOBJECT),
        onFocus<&CQrdSliderCtrl::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CQrdSliderCtrl::OnKillFocus>(WM_KILLFOCUS),
    };
    static const MessageMap kMap{&CSliderCtrl::messageMap(), kEntries};
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
        const RECT client = clientRect();
        const common::FrameBuffer buffer(client.right, client.bottom);
        drawFace(buffer.pixels());
        leaveCornersOut(buffer.pixels());
        drawChannel(buffer.pixels(), GetChannelRect());
        drawThumb(buffer.pixels(), draw.rc);
        ::BitBlt(draw.hdc, 0, 0, client.right, client.bottom, buffer.dc(), 0, 0, SRCCOPY);
        // Only the dotted frame of a focused control follows the thumb; it must not appear on this face.
        ::IntersectClipRect(draw.hdc, 0, 0, 0, 0);
    }
    return CDRF_SKIPDEFAULT;
}

// It is one slider for assistive programs, whichever of its two windows they ask.
LRESULT CQrdSliderCtrl::OnGetObject(WPARAM wParam, LPARAM lParam) {
    return static_cast<LONG>(lParam) == OBJID_CLIENT ? ::SendMessageW(::GetParent(m_hWnd), WM_GETOBJECT, wParam, lParam)
                                                     : Default();
}

void CQrdSliderCtrl::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CQrdSliderCtrl::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    if (auto* item = dynamic_cast<CQrdItem*>(fromHandle(::GetParent(m_hWnd))); item != nullptr) {
        static_cast<void>(item->killFocus(hNewWnd));
    }
}

CSliderItemDlg::CSliderItemDlg(DWORD dwDecreaseCode, DWORD dwIncreaseCode, LONG lLevelCount, LONG lCurrentLevel)
    : CItemWnd({IDD_SLIDER_ITEM, Takes::VisiblePixels, WS_EX_TOOLWINDOW, 1, contrast::Tone::AsDrawn}),
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
    static const MessageMap kMap{&CItemWnd::messageMap(), kEntries};
    return kMap;
}

// A level of 0 is valid although the track begins at 1: a plug-in may report it, and the slider shows its minimum.
HRESULT CSliderItemDlg::initialize() {
    if (m_lLevelCount > kMostLevels) {
        LOG_ASSERT(L"m_lLevelCount <= kMostLevels");
        m_lLevelCount = kMostLevels;
    }
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
    return truncToInt(placement().ratio * kBaseWidth);
}

int CSliderItemDlg::height() const {
    return truncToInt(placement().ratio * kHeightPerThumb * CZelConfig::getQrdConfig().uSliderThumbSize);
}

bool CSliderItemDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    CItemWnd::OnInitDialog();
    m_slider.SubclassDlgItem(IDC_SLIDER, *this);
    // The template's second trackbar is unused.
    ::ShowWindow(::GetDlgItem(m_hWnd, IDC_SLIDER_UNUSED), SW_HIDE);
    ::SetWindowLongPtrW(m_slider.m_hWnd, GWL_STYLE, ::GetWindowLongPtrW(m_slider.m_hWnd, GWL_STYLE) | TBS_FIXEDLENGTH);
    m_slider.SetThumbLength(truncToInt(placement().ratio * CZelConfig::getQrdConfig().uSliderThumbSize));
    m_slider.SetRangeMin(kLowestLevel);
    m_slider.SetRangeMax(m_lLevelCount);
    m_slider.SetPos(m_lCurrentLevel);
    ::MoveWindow(m_slider.m_hWnd, 0, 0, width(), height(), TRUE);
    return false;  // the keyboard stays with the program that the user works in
}

// The control paints the rest. Its window is opaque, and so are the corners as far as the face covers them.
void CSliderItemDlg::OnPaint() {
    CItemWnd::OnPaint();
    const RECT client = clientRect();
    if (picture() == nullptr || ::IsRectEmpty(&client) != FALSE) {
        return;
    }
    if (m_pCorners == nullptr || m_uCornersState != contrast::state() ||
        m_pCorners->GetWidth() != static_cast<UINT>(client.right) ||
        m_pCorners->GetHeight() != static_cast<UINT>(client.bottom)) {
        m_pCorners =
            std::make_unique<StoredImage>(std::make_shared<MasterPicture>(cornersOfFace(client.right, client.bottom)));
        m_uCornersState = contrast::state();
    }
    // It has logged why, and the next paint tries again.
    static_cast<void>(picture()->paint(m_pCorners.get(), kOpaque, nullptr, nullptr));
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

accessible::Facts CSliderItemDlg::accessibleFacts(LONG /*nPart*/) const {
    const bool bFocused =
        ::GetFocus() == m_slider.m_hWnd || (m_pBlackCard != nullptr && m_pBlackCard->isSelected(this));
    return {loadResString(IDS_BRIGHTNESS_LEVEL),
            std::to_wstring(m_slider.GetPos()),
            {},
            bFocused && isVisible() ? STATE_SYSTEM_FOCUSED : 0};
}

// As if the user had dragged it there.
void CSliderItemDlg::accessibleSetValue(LONG nValue) {
    m_slider.SetPos(nValue);  // the nearest level
    static_cast<void>(updateBrightness());
}

// Lets the card pass the level to the plug-in; the strip does not hide. Fails also if the function refuses.
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
    const CCardsInUse inUse;  // the slider is handling its own message
    Default();
    // The end of a movement is no movement: every level reaches the plug-in once. A thumb position that ends no drag
    // comes from the mouse wheel.
    const WORD code = LOWORD(wParam);
    const bool bDragged = std::exchange(m_bDragged, code == TB_THUMBTRACK);
    if (code != TB_ENDTRACK && !(code == TB_THUMBPOSITION && bDragged)) {
        static_cast<void>(updateBrightness());
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
    accessible::announce(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    return m_pBlackCard->updateStatus(loadResString(IDS_BRIGHTNESS_LEVEL) + L" " + std::to_wstring(m_slider.GetPos()));
}

void CSliderItemDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CSliderItemDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    Default();
    static_cast<void>(killFocus(hNewWnd));
}
