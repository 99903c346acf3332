#include "Logic/FuncX/FxBrightness.h"

#include "UI/ItemDlg/SliderItemDlg.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "common/TryMake.h"

HRESULT CFxBrightness::initItems(std::vector<CQrdItem*>& rVecItems) {
    LOG_ENTER_LEAVE();
    DWORD dwSteps = 0;
    DWORD dwIgnored = 0;
    bool bDual = false;
    RETURN_IF_FAILED(getDisplayItemInfo(&dwSteps, &dwIgnored));
    RETURN_IF_FAILED(getCurrentItem());
    RETURN_IF_FAILED(isDualBrtCtrl(bDual));
    RETURN_UNLESS(m_vecHotkeyCodes.size() == 2, L"m_vecHotkeyCodes.size() == 2", E_FAIL);
    if (bDual) {
        LOG_INFO(L"Individual brightness adjust for dual-screen");
        RETURN_LOGGED(E_OUTOFMEMORY);
    }
    auto pItem = common::tryMake<CSliderItemDlg>(m_vecHotkeyCodes[0], m_vecHotkeyCodes[1], static_cast<LONG>(dwSteps),
                                                 m_lCurrentItem);
    CDialog* const pWindow = pItem.get();
    RETURN_IF_FAILED(appendItem(std::move(pItem), pWindow, ItemOrder::InitializeThenWindow, rVecItems));
    return S_OK;
}

HRESULT CFxBrightness::getDefaultSelectItem(LONG& rlItem) {
    rlItem = 0;
    return S_OK;
}

std::wstring CFxBrightness::getCurrentStatus() {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", std::wstring());
    const std::wstring strLabel = loadResString(IDS_BRIGHTNESS_LEVEL) + L" ";
    bool bDual = false;
    const HRESULT status = isDualBrtCtrl(bDual);
    if (FAILED(status)) {
        LOG_STATUS(status);
        return {};
    }
    if (!bDual) {
        return strLabel + std::to_wstring(m_lCurrentItem);
    }
    const DWORD dwLevels = static_cast<DWORD>(m_lCurrentItem);
    return strLabel + std::to_wstring(dwLevels & 0xFF) + L"\n" + strLabel + std::to_wstring(dwLevels >> 8 & 0xFF);
}

HRESULT CFxBrightness::selectItem(LONG /*lItem*/, LONG lParam) {
    RETURN_UNLESS(m_hFuncDll, L"m_hFuncDll", E_HANDLE);
    const auto pfFocusItem = getExport<FenwynFocusItem>(FENWYN_FOCUS_ITEM);
    if (pfFocusItem == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    ULONG uReserved = 0;
    return pfFocusItem(lParam, &uReserved) == FENWYN_OK ? S_OK : E_FAIL;
}

HRESULT CFxBrightness::isDualBrtCtrl(bool& rbDual) const {
    const auto pfIsDualBrtCtrl = getExport<FenwynIsDualBrtCtrl>(FENWYN_IS_DUAL_BRT_CTRL);
    if (pfIsDualBrtCtrl == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    BYTE bAnswer = 0;
    if (pfIsDualBrtCtrl(&bAnswer) != FENWYN_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    rbDual = bAnswer != 0;
    return S_OK;
}
