#include "UI/ItemDlg/QrdItem.h"

#include "UI/BlackCard.h"
#include "common/Status.h"

HRESULT CQrdItem::setBlackCardInfo(CBlackCard* pBlackCard) {
    if (pBlackCard == nullptr) {
        LOG_ASSERT(L"pBlackCardInfo");
    }
    m_pBlackCard = pBlackCard;
    return S_OK;
}

HRESULT CQrdItem::killFocus(HWND hNewWnd) const {
    if (m_pBlackCard == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    CBlackCard::onFocusLost(hNewWnd);
    return S_OK;
}
