// The brightness slider: a trackbar that the program paints completely.
#pragma once

#include <memory>

#include "UI/CardInput.h"
#include "UI/ItemDlg/ItemWnd.h"
#include "common/GdiPlus.h"
#include "framework/SliderCtrl.h"

class CQrdSliderCtrl : public CCardInput<CSliderCtrl> {
 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    LRESULT OnCustomDraw(NMHDR* pHeader);
    LRESULT OnGetObject(WPARAM wParam, LPARAM lParam);
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
};

class CSliderItemDlg : public CItemWnd {
 public:
    // Levels run from 1 to lLevelCount; a current level of 0 is accepted and shown at 1.
    CSliderItemDlg(DWORD dwDecreaseCode, DWORD dwIncreaseCode, LONG lLevelCount, LONG lCurrentLevel);
    ~CSliderItemDlg() override;

    [[nodiscard]] HRESULT initialize() override;
    [[nodiscard]] HRESULT destroyItem() override;
    [[nodiscard]] int width() const override;
    [[nodiscard]] int height() const override;
    // Steps the level by one if the code is one of the function's two, except on the first press.
    [[nodiscard]] HRESULT switchItem(DWORD dwHotkey, bool bFirstTime, bool bSelected) override;

    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kSlider; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    void OnPaint() override;
    void accessibleSetValue(LONG nValue) override;

 private:
    friend struct SliderItemSeam;
    LRESULT OnHScroll(WPARAM wParam, LPARAM lParam);
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
    [[nodiscard]] HRESULT _applyLevel(LONG lLevel);
    [[nodiscard]] HRESULT updateBrightness();
    [[nodiscard]] HRESULT updateStatus();

    CQrdSliderCtrl m_slider;
    DWORD m_dwDecreaseCode;
    DWORD m_dwIncreaseCode;
    LONG m_lCurrentLevel;  // the last one that the function accepted, at first the one that it reported
    LONG m_lLevelCount;
    std::size_t m_uCornersState = 0;             // the contrast of m_pCorners
    std::unique_ptr<Gdiplus::Image> m_pCorners;  // what the opaque window cannot show: the smooth edges of its corners
    bool m_bDragged = false;                     // the last movement was part of a drag
};
