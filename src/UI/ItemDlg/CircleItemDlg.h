// A round item: a small picture while it is not selected, a large one with a caption box while it is.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "UI/ItemDlg/ItemDescDlg.h"
#include "UI/ItemDlg/ItemWnd.h"
#include "common/GdiPlus.h"

class CCircleItemDlg : public CItemWnd {
 public:
    // The ids name PNG images of the image library.
    CCircleItemDlg(UINT uSmallImageId, UINT uLargeImageId, std::wstring strDesc);

    [[nodiscard]] HRESULT initialize() override;
    [[nodiscard]] HRESULT destroyItem() override;
    [[nodiscard]] int width() const override;
    [[nodiscard]] int height() const override { return width(); }
    [[nodiscard]] HRESULT showItem(bool bShow) override;
    [[nodiscard]] HRESULT setItemText(const wchar_t* pszText) override;
    [[nodiscard]] int descOverhang() const override;
    [[nodiscard]] HRESULT switchItem(DWORD dwHotkey, bool bFirstTime, bool bSelected) override;
    void setPlacement(const Placement& placement) override;

    // With the windows of an earlier item, if one hands them over.
    bool Create(HWND hParent) override;
    bool DestroyWindow() override;

    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;

    // Creating windows takes longer than anything else when a card is opened. While one of these exists, the windows of
    // items that end stay, hidden, and the next items take them over in the same order. What is left ends with it.
    class CHandOver {
     public:
        CHandOver() noexcept;
        ~CHandOver();
        CHandOver(const CHandOver&) = delete;
        CHandOver& operator=(const CHandOver&) = delete;

     private:
        friend class CCircleItemDlg;
        struct Windows;

        [[nodiscard]] bool _take(CCircleItemDlg& item);
        [[nodiscard]] bool _give(CCircleItemDlg& item);

        static CHandOver* s_pCurrent;

        CHandOver* const m_pOuter;
        std::vector<std::unique_ptr<Windows>> m_kept;
    };

    // Shrinks the item if a row would not fit the screen; 1.0 is the full size.
    void setScale(double scale) { m_scale = scale; }

 protected:
    bool OnInitDialog() override;
    // Whether another item may have its windows: not if it has more of them than every round item.
    [[nodiscard]] virtual bool hasCommonWindows() const { return true; }
    [[nodiscard]] const MessageMap& messageMap() const override;
    [[nodiscard]] bool enlarged() const { return m_bEnlarged; }
    // Puts the caption box above anything else that the item shows below itself.
    void raiseCaption() const;
    void OnPaint() override;
    void accessiblePress(LONG nPart) override;
    virtual void OnLButtonDown(POINT point);

 private:
    friend struct CircleItemSeam;

    void OnSize();
    void _layOut();
    [[nodiscard]] bool _handWindowsOn();
    void OnMouseMove(POINT point);
    void OnMouseLeave();
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
    [[nodiscard]] HRESULT showFakeWnd();
    [[nodiscard]] CLayeredWnd* _smallPicture() const { return picture(0); }
    [[nodiscard]] CLayeredWnd* _largePicture() const { return picture(1); }
    void _showDesc(const RECT& part);

    CItemDescDlg m_descDlg;
    UINT m_uSmallImageId;
    UINT m_uLargeImageId;
    std::wstring m_strItemText;
    bool m_bEnlarged = false;
    std::unique_ptr<Gdiplus::Image> m_pImageSmall;
    std::unique_ptr<Gdiplus::Image> m_pImageLarge;
    double m_scale = 1.0;
    RECT m_outerRect{};
    RECT m_innerRect{};
};
