// A round item of the display-output function with favourites, with a preview of the displays that it would use.
#pragma once

#include "UI/ItemDlg/CircleItemDlg.h"
#include "UI/ItemDlg/OutputPreviewWnd.h"

class CFxOutputItemDlg : public CCircleItemDlg {
 public:
    // uNeedsSetup: non-zero if choosing the item opens the display-configuration program; uShowResolution: non-zero
    // shows resolutions in the preview; the records must be valid during the call only.
    CFxOutputItemDlg(LONG lMode, DWORD uNeedsSetup, DWORD uShowResolution, UINT uSmallImageId, UINT uLargeImageId,
                     std::wstring strText, DWORD dwRecordCount, const FenwynDisplayRecord* pRecords);

    [[nodiscard]] HRESULT showItem(bool bShow) override;
    [[nodiscard]] int descOverhang() const override;
    bool DestroyWindow() override;

    // With what the preview shows.
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] bool hasCommonWindows() const override { return false; }
    void OnPaint() override;
    void OnLButtonDown(POINT point) override;

 private:
    friend struct FxOutputItemSeam;
    [[nodiscard]] HRESULT showPreviewWnd();
    void _closeSetupWindow() const;

    LONG m_lMode;
    DWORD m_uNeedsSetup;
    std::unique_ptr<COutputPreviewWnd> m_pPreviewWnd;
};
