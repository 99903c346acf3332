#include "UI/ItemDlg/FxOutputItemDlg.h"

#include <utility>

#include "UI/BlackCard.h"
#include "ZelMain.h"
#include "common/Status.h"
#include "companions/OutputSetup/include/OutputSetup.h"

namespace {

constexpr DWORD kPreviewWidth = 120;  // pixels; the preview sticks out further than a caption
constexpr DWORD kOverhangMargin = 5;

}  // namespace

CFxOutputItemDlg::CFxOutputItemDlg(LONG lMode, DWORD uNeedsSetup, DWORD uShowResolution, UINT uSmallImageId,
                                   UINT uLargeImageId, std::wstring strText, DWORD dwRecordCount,
                                   const FenwynDisplayRecord* pRecords)
    : CCircleItemDlg(uSmallImageId, uLargeImageId, std::move(strText)), m_lMode(lMode), m_uNeedsSetup(uNeedsSetup) {
    if (dwRecordCount != 0) {
        m_pPreviewWnd = std::make_unique<COutputPreviewWnd>(pRecords, dwRecordCount, uShowResolution != 0);
    }
}

bool CFxOutputItemDlg::OnInitDialog() {
    const bool result = CCircleItemDlg::OnInitDialog();
    if (m_pPreviewWnd != nullptr) {
        m_pPreviewWnd->Create(nullptr);
    }
    return result;
}

bool CFxOutputItemDlg::DestroyWindow() {
    if (m_hWnd == nullptr) {
        return false;
    }
    if (m_pPreviewWnd != nullptr) {
        m_pPreviewWnd->DestroyWindow();
    }
    if (enlarged()) {
        _closeSetupWindow();
    }
    return CCircleItemDlg::DestroyWindow();
}

HRESULT CFxOutputItemDlg::showItem(bool bShow) {
    const HRESULT status = CCircleItemDlg::showItem(bShow);
    if (!bShow) {
        if (m_pPreviewWnd != nullptr) {
            m_pPreviewWnd->show(false);
        }
        _closeSetupWindow();
    }
    return status;
}

// The display-configuration program opens a window for some entries; it closes when the entry disappears.
void CFxOutputItemDlg::_closeSetupWindow() const {
    const wchar_t* windowClass = m_uNeedsSetup != 0            ? OUTPUT_SETUP_CLASS_OUTPUT
                                 : m_lMode == FENWYN_MODE_SAVE ? OUTPUT_SETUP_CLASS_SAVE
                                                               : nullptr;
    const HWND window = windowClass == nullptr ? nullptr : ::FindWindowW(windowClass, nullptr);
    if (window != nullptr) {
        ::PostMessageW(window, OUTPUT_SETUP_MESSAGE_CLOSE, 0, 0);
    }
}

int CFxOutputItemDlg::descOverhang() const {
    return static_cast<int>((kPreviewWidth - static_cast<DWORD>(width())) / 2 + kOverhangMargin);
}

void CFxOutputItemDlg::OnPaint() {
    CCircleItemDlg::OnPaint();
    if (m_pPreviewWnd != nullptr) {
        static_cast<void>(showPreviewWnd());
    }
}

HRESULT CFxOutputItemDlg::showPreviewWnd() {
    RETURN_UNLESS(m_pPreviewWnd != nullptr, L"m_pPreviewWnd", E_POINTER);
    if (!enlarged()) {
        m_pPreviewWnd->show(false);
        return S_OK;
    }
    const RECT place = windowRect();
    RETURN_IF_FAILED(m_pPreviewWnd->setWndPos(&place, placement()));
    m_pPreviewWnd->show(true);
    raiseCaption();  // both are directly under the item, and the name must stay readable
    return S_OK;
}

accessible::Facts CFxOutputItemDlg::accessibleFacts(LONG nPart) const {
    accessible::Facts facts = CCircleItemDlg::accessibleFacts(nPart);
    if (m_pPreviewWnd != nullptr) {
        facts.description = m_pPreviewWnd->text();
    }
    return facts;
}

void CFxOutputItemDlg::OnLButtonDown(POINT /*point*/) {
    if (theApp.mouseOperating() && m_pBlackCard != nullptr) {
        static_cast<void>(m_pBlackCard->selectItem(this, -1, true));
        theApp.mouseOperating() = FALSE;
    }
}
