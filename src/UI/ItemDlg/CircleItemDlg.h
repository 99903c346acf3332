// A round item: a small picture while it is not selected, a large one with a caption box while it is.
#pragma once

#include <memory>
#include <string>

#include "UI/CardInput.h"
#include "UI/ItemDlg/ItemDescDlg.h"
#include "UI/ItemDlg/QrdItem.h"
#include "common/GdiPlus.h"
#include "common/LayeredWnd.h"

class CCircleItemDlg : public CCardInput<CDialog>, public CQrdItem {
 public:
    // The ids name PNG images of the image library.
    CCircleItemDlg(UINT uSmallImageId, UINT uLargeImageId, std::wstring strDesc);
    ~CCircleItemDlg() override;

    [[nodiscard]] HRESULT initialize() override;
    HRESULT destroyItem() override;
    [[nodiscard]] int width() const override;
    [[nodiscard]] int height() const override { return width(); }
    [[nodiscard]] HWND windowHandle() const override { return m_hWnd; }
    HRESULT showItem(bool bShow) override;
    HRESULT setItemText(const wchar_t* pszText) override;
    [[nodiscard]] int descOverhang() const override;
    HRESULT switchItem(DWORD dwHotkey, bool bFirstTime, bool bSelected) override;
    void setPlacement(const Placement& placement) override;

    bool DestroyWindow() override;

    // Shrinks the item when a row would not fit the screen; 1.0 is the full size.
    void setScale(double scale) { m_scale = scale; }

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    [[nodiscard]] bool enlarged() const { return m_bEnlarged; }
    // Puts the caption box above whatever else the item shows under itself.
    void raiseCaption() const;
    virtual void OnPaint();
    virtual void OnLButtonDown(POINT point);

    static const MessageMap kCircleMap;

 private:
    friend struct CircleEntries;
    friend struct CircleItemSeam;

    void OnSize();
    void OnMouseMove(POINT point);
    void OnMouseLeave();
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
    HRESULT showFakeWnd();
    void _showDesc(const RECT& part);

    CItemDescDlg m_descDlg;
    UINT m_uSmallImageId;
    UINT m_uLargeImageId;
    std::wstring m_strItemText;
    bool m_bEnlarged = false;
    bool m_bTracking = false;
    std::unique_ptr<CLayeredWnd> m_pSmallWnd;
    std::unique_ptr<CLayeredWnd> m_pLargeWnd;
    std::unique_ptr<Gdiplus::Image> m_pImageSmall;
    std::unique_ptr<Gdiplus::Image> m_pImageLarge;
    double m_scale = 1.0;
    RECT m_outerRect{};
    RECT m_innerRect{};
};
