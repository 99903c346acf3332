#include "Logic/FuncX/FxODD.h"

#include <algorithm>

#include "Logic/ZelCommonFunc.h"
#include "common/Status.h"

HRESULT CFxODD::selectItem(LONG lItem, LONG /*lParam*/) {
    if (!indexInContainer(lItem, m_vecItemValues)) {
        RETURN_LOGGED(E_FAIL);
    }
    return CFuncX::selectItem(static_cast<LONG>(m_vecItemValues[static_cast<std::size_t>(lItem)]), -1);
}

HRESULT CFxODD::getDefaultSelectItem(LONG& rlItem) {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", E_FAIL);
    const auto found = std::find(m_vecItemValues.begin(), m_vecItemValues.end(), static_cast<DWORD>(m_lCurrentItem));
    if (found == m_vecItemValues.end()) {
        RETURN_LOGGED(E_FAIL);
    }
    const bool bCancel = m_lCurrentItem == functiontables::kOddCancel;
    rlItem = bCancel ? 0 : static_cast<LONG>(found - m_vecItemValues.begin());
    return S_OK;
}
