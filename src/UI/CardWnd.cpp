#include "UI/CardWnd.h"

#include "UI/CardGeometry.h"
#include "UI/CardStyle.h"

namespace {

int firstRow(bool bBottom, int nRows) {
    return bBottom ? 0 : geometry::kPictureRows - nRows;
}

}  // namespace

CCardWnd::CCardWnd(const Pair& pair, IDrawTextOnLayeredWnd* pTextPainter)
    : CCardInput(pair.uTemplateId), m_pair(pair), m_pTextPainter(pTextPainter) {}

CCardWnd::~CCardWnd() {
    CCardWnd::DestroyWindow();
}

const MessageMap& CCardWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CCardWnd::OnPaint>(),
        onShowWindow<&CCardWnd::OnShowWindow>(),
    };
    static const MessageMap kMap{&CPopupDlg::messageMap(), kEntries};
    return kMap;
}

bool CCardWnd::OnInitDialog() {
    CPopupDlg::OnInitDialog();
    makeSurface();
    makePictures();
    return false;
}

bool CCardWnd::DestroyWindow() {
    dropPictures();
    return CPopupDlg::DestroyWindow();
}

void CCardWnd::makeSurface() const {
    addExStyle(WS_EX_LAYERED | m_pair.exStyle);
    const BYTE alpha = m_pair.takes == Takes::VisiblePixels ? 0 : 1;
    const DWORD withAlpha = m_pair.takes == Takes::VisiblePixels ? 0 : LWA_ALPHA;
    const DWORD withKey = m_pair.takes == Takes::Everything ? 0 : LWA_COLORKEY;
    ::SetLayeredWindowAttributes(m_hWnd, kColourKey, alpha, withKey | withAlpha);
}

void CCardWnd::makePictures() {
    while (m_vecPictures.size() < m_pair.pictures) {
        const bool last = m_vecPictures.size() + 1 == m_pair.pictures;
        m_vecPictures.push_back(
            std::make_unique<CLayeredWnd>(m_hWnd, m_pTextPainter, last ? m_pair.lastTone : contrast::Tone::Plain));
    }
}

CLayeredWnd* CCardWnd::picture(std::size_t uIndex) const {
    return uIndex < m_vecPictures.size() ? m_vecPictures[uIndex].get() : nullptr;
}

void CCardWnd::hidePictures() const {
    for (const auto& picture : m_vecPictures) {
        picture->hide();
    }
}

HRESULT CCardWnd::paintPicture(Gdiplus::Image* pImage) const {
    return picture() == nullptr ? S_FALSE : picture()->paint(pImage, kCardOpacity, nullptr, nullptr);
}

HRESULT CCardWnd::paintBand(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecOpacities,
                            std::vector<const RECT*>& vecPlaces, bool bBottom, int nRows) const {
    return picture() == nullptr
               ? S_FALSE
               : picture()->paint(vecImages, vecOpacities, vecPlaces, nullptr, firstRow(bBottom, nRows), nRows);
}

HRESULT CCardWnd::prepareBand(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecOpacities,
                              const std::vector<const RECT*>& vecPlaces, bool bBottom, int nRows) const {
    return picture() == nullptr
               ? S_FALSE
               : picture()->prepare(vecImages, vecOpacities, vecPlaces, firstRow(bBottom, nRows), nRows);
}

void CCardWnd::OnPaint() {
    Default();
}

void CCardWnd::OnShowWindow(bool bShow) {
    Default();
    if (!bShow) {
        hidePictures();
    }
}

void CCardWnd::trackMouse() {
    if (m_bTracking) {
        return;
    }
    TRACKMOUSEEVENT event{sizeof(event), TME_LEAVE, m_hWnd, 0};
    m_bTracking = ::TrackMouseEvent(&event) != FALSE;
}

bool CCardWnd::mouseIsOn() const {
    POINT cursor{};
    return ::GetCursorPos(&cursor) && ::WindowFromPoint(cursor) == m_hWnd;
}
