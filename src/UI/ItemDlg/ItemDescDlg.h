// The caption box that an item shows under itself.
#pragma once

#include <string>

#include "common/GdiPlus.h"
#include "framework/Dialog.h"

class CItemDescDlg : public CDialog {
 public:
    explicit CItemDescDlg(std::wstring strDesc);

    // Places the box under a part of the item, given in screen coordinates, as wide as its text needs. E_POINTER: null.
    HRESULT setWndPos(const RECT* pItemRect);

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    friend struct ItemDescSeam;
    void OnPaint();
    void OnSetFocus(HWND hOldWnd);
    HRESULT measureDescRect(Gdiplus::RectF& outRect) const;
    HRESULT drawDescString(HDC hDc) const;

    std::wstring m_strDesc;
};
