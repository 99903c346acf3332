#include "Logic/FuncX/FxPowerPlan.h"

#include <algorithm>

#include "Logic/ZelCommonFunc.h"
#include "common/Status.h"

HRESULT CFxPowerPlan::initItems(std::vector<CQrdItem*>& rVecItems) {
    ItemGuard guard(rVecItems);
    DWORD dwPlans = 0;
    DWORD dwIgnored = 0;
    RETURN_IF_FAILED(getDisplayItemInfo(&dwPlans, &dwIgnored));
    m_vecUsedPowerPlans.clear();
    for (const functiontables::Item& plan : functiontables::kPowerPlans) {
        if ((dwPlans & plan.dwBit) != 0) {
            RETURN_IF_FAILED(addItem(plan.dwValue, plan.uImageId1, plan.uImageId2, rVecItems));
            m_vecUsedPowerPlans.push_back(plan.dwValue);
        }
    }
    RETURN_IF_FAILED(getCurrentItem());
    guard.keep();
    return S_OK;
}

HRESULT CFxPowerPlan::selectItem(LONG lItem, LONG /*lParam*/) {
    RETURN_UNLESS(indexInContainer(lItem, m_vecUsedPowerPlans), L"indexInContainer(nItem, m_vecUsedPowerPlans)",
                  E_FAIL);
    return CFuncX::selectItem(static_cast<LONG>(m_vecUsedPowerPlans[static_cast<std::size_t>(lItem)]), -1);
}

std::wstring CFxPowerPlan::getCurrentStatus() {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", std::wstring());
    std::wstring strName;
    const HRESULT status = getPowerPlanItemName(static_cast<DWORD>(m_lCurrentItem), &strName);
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
    return strName;
}

HRESULT CFxPowerPlan::getDefaultSelectItem(LONG& rlItem) {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", E_FAIL);
    const auto found =
        std::find(m_vecUsedPowerPlans.begin(), m_vecUsedPowerPlans.end(), static_cast<DWORD>(m_lCurrentItem));
    if (found == m_vecUsedPowerPlans.end()) {
        RETURN_LOGGED(E_FAIL);
    }
    rlItem = static_cast<LONG>(found - m_vecUsedPowerPlans.begin());
    return S_OK;
}

HRESULT CFxPowerPlan::addItem(DWORD dwPlan, UINT uImageId1, UINT uImageId2, std::vector<CQrdItem*>& rVecItems) {
    std::wstring strName;
    RETURN_IF_FAILED(getPowerPlanItemName(dwPlan, &strName));
    RETURN_IF_FAILED(addCircleItem(strName, uImageId1, uImageId2, rVecItems));
    return S_OK;
}

HRESULT CFxPowerPlan::getPowerPlanItemName(DWORD dwPlan, std::wstring* pstrName) const {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(m_hFuncDll, L"m_hFuncDll", E_HANDLE);
    const auto pfGetCustomItemText = getExport<FenwynGetCustomItemText>(FENWYN_GET_CUSTOM_ITEM_TEXT);
    if (pfGetCustomItemText == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    BSTR bstrName = nullptr;
    ULONGLONG ullScratch = 0;
    const LONG lResult = pfGetCustomItemText(dwPlan, &bstrName, &ullScratch);
    const common::ShownText name = takeText(FENWYN_GET_CUSTOM_ITEM_TEXT, bstrName);
    if (lResult != FENWYN_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    if (pstrName == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    *pstrName = name.str();
    return S_OK;
}
