// An item as a window: a card window that its card uses through the item interface.
#pragma once

#include "UI/CardWnd.h"
#include "UI/ItemDlg/QrdItem.h"

class CItemWnd : public CCardWnd, public CQrdItem {
 public:
    [[nodiscard]] HWND windowHandle() const override { return m_hWnd; }
    [[nodiscard]] HRESULT showItem(bool bShow) override {
        show(bShow);
        return S_OK;
    }

 protected:
    using CCardWnd::CCardWnd;
};
