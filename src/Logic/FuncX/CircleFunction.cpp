#include "Logic/FuncX/CircleFunction.h"

#include <bit>
#include <utility>

#include "Logic/ZelCommonFunc.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"

using functiontables::CircleDescription;
using functiontables::DefaultRule;
using functiontables::Item;
using functiontables::ItemRule;
using functiontables::UnknownDefault;

CCircleFunction::CCircleFunction(const CircleDescription& rDescription, std::vector<DWORD> vecHotkeyCodes,
                                 std::wstring strCaption)
    : CFuncXUseCircleItem(std::move(vecHotkeyCodes), std::move(strCaption)), m_rDescription(rDescription) {}

HRESULT CCircleFunction::initItems(std::vector<CQrdItem*>& rVecItems) {
    ItemGuard guard(rVecItems);
    DWORD dwInfo = 0;
    DWORD dwInfo2 = 0;
    RETURN_DESCRIBED_IF_FAILED(getDisplayItemInfo(&dwInfo, &dwInfo2));
    onItemsReported();
    m_dwItemBits = 0;
    const bool bMask = m_rDescription.itemRule == ItemRule::Mask;
    RETURN_DESCRIBED_IF_FAILED(bMask || dwInfo == FENWYN_TWO_ITEMS ? S_OK : E_FAIL);
    for (const Item& item : m_rDescription.items) {
        if ((dwInfo & item.dwBit) != 0) {
            RETURN_DESCRIBED_IF_FAILED(addCircleItem(item.uTextId, item.uImageId1, item.uImageId2, rVecItems));
            m_dwItemBits |= item.dwBit;
            onItemAdded(item);
        }
    }
    if (m_rDescription.hasState()) {
        RETURN_DESCRIBED_IF_FAILED(getCurrentItem());
    }
    guard.keep();
    return S_OK;
}

HRESULT CCircleFunction::getDefaultSelectItem(LONG& rlItem) {
    if (m_rDescription.defaultRule == DefaultRule::First) {
        rlItem = 0;
        return S_OK;
    }
    if (m_lCurrentItem == INVALID_CURRENT_ITEM) {
        LOG_DESCRIBED_ASSERT(L"INVALID_CURRENT_ITEM != m_lCurrentItem");
        return E_FAIL;
    }
    if (m_rDescription.defaultRule == DefaultRule::Current) {
        rlItem = state();
        return S_OK;
    }
    if (indexInContainer(state(), m_rDescription.defaults)) {
        rlItem = m_rDescription.defaults[static_cast<std::size_t>(state())];
        return S_OK;
    }
    LOG_DESCRIBED_ASSERT(m_rDescription.pszWrongItem);
    if (m_rDescription.unknownDefault == UnknownDefault::TakeCurrent) {
        rlItem = state();
    }
    return m_rDescription.unknownDefault == UnknownDefault::Fail ? E_FAIL : S_OK;
}

// A default item is a value of the function, and a partial mask may have no item of that number.
LONG CCircleFunction::getSubstituteItem() const {
    if (m_rDescription.itemRule != ItemRule::Mask) {
        return INVALID_CURRENT_ITEM;
    }
    const bool bKnown = indexInContainer(state(), m_rDescription.items);
    const DWORD dwBit = bKnown ? m_rDescription.items[static_cast<std::size_t>(state())].dwBit : 0;
    // The items are in the order of their bits.
    return (m_dwItemBits & dwBit) != 0 ? std::popcount(m_dwItemBits & (dwBit - 1)) : 0;
}

std::wstring CCircleFunction::getCurrentStatus() {
    if (!m_rDescription.hasState()) {
        return {};
    }
    if (m_lCurrentItem == INVALID_CURRENT_ITEM) {
        LOG_DESCRIBED_ASSERT(L"INVALID_CURRENT_ITEM != m_lCurrentItem");
        return {};
    }
    if (!indexInContainer(state(), m_rDescription.statusTexts)) {
        LOG_DESCRIBED_ASSERT(m_rDescription.pszWrongItem);
        return {};
    }
    const UINT uTextId = m_rDescription.statusTexts[static_cast<std::size_t>(state())];
    return uTextId != 0 ? loadResString(uTextId) : std::wstring();
}

std::wstring CCircleFunction::logTag(const char* pszMethod) const {
    const std::string_view method(pszMethod);
    return std::wstring(L" (") + m_rDescription.pszClass + L"::" + std::wstring(method.begin(), method.end()) + L")";
}
