#include "Logic/FuncX/FuncXUseCircleItem.h"

#include "UI/ItemDlg/CircleItemDlg.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "common/TryMake.h"

HRESULT CFuncXUseCircleItem::addCircleItem(UINT uTextId, UINT uImageId1, UINT uImageId2,
                                           std::vector<CQrdItem*>& rVecItems) {
    return addCircleItem(loadResString(uTextId), uImageId1, uImageId2, rVecItems);
}

HRESULT CFuncXUseCircleItem::addCircleItem(const std::wstring& strText, UINT uImageId1, UINT uImageId2,
                                           std::vector<CQrdItem*>& rVecItems) {
    auto pItem = common::tryMake<CCircleItemDlg>(uImageId1, uImageId2, strText);
    CDialog* const pWindow = pItem.get();
    RETURN_IF_FAILED(appendItem(std::move(pItem), pWindow, ItemOrder::InitializeThenWindow, rVecItems));
    return S_OK;
}
