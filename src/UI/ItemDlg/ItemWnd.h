// An item as a window: a card window that its card uses through the item interface.
#pragma once

#include "UI/BlackCard.h"
#include "UI/CardWnd.h"
#include "UI/ItemDlg/QrdItem.h"

class CItemWnd : public CCardWnd, public CQrdItem {
 public:
    [[nodiscard]] HWND windowHandle() const override { return m_hWnd; }
    [[nodiscard]] HRESULT showItem(bool bShow) override {
        show(bShow);
        return S_OK;
    }
    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kItem; }
    [[nodiscard]] accessible::ITarget* accessibleParent() const override {
        return m_pBlackCard == nullptr ? nullptr : m_pBlackCard->accessibleCard();
    }

 protected:
    using CCardWnd::CCardWnd;
};
