#include "Logic/FuncX/FxWireless.h"

#include "Logic/ZelCommonFunc.h"
#include "UI/ItemDlg/ErrorItemDlg.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "common/TryMake.h"

using functiontables::kWirelessStates;

namespace {

std::wstring stateText(DWORD dwState) {
    std::wstring strText;
    if (dwState < kWirelessStates.size()) {
        for (const UINT uTextId : kWirelessStates[dwState].textIds) {
            strText += uTextId != 0 ? loadResString(uTextId) : std::wstring();
        }
    }
    return strText;
}

constexpr bool switchesOneDeviceOff(DWORD dwState) {
    return dwState < functiontables::kLastSingleDeviceState && dwState % 2 == 0;
}

}  // namespace

HRESULT CFxWireless::initItems(std::vector<CQrdItem*>& rVecItems) {
    ItemGuard guard(rVecItems);
    m_bEvenStatePresent = false;
    DWORD dwStates = 0;
    DWORD dwIgnored = 0;
    const bool bErrorMode = FAILED(getDisplayItemInfo(&dwStates, &dwIgnored));
    const HRESULT status = bErrorMode ? addErrorItem(rVecItems) : _addStates(dwStates, rVecItems);
    if (FAILED(status)) {
        m_vecWirelessItems.clear();
        RETURN_LOGGED(status);
    }
    m_bErrorMode = bErrorMode;
    guard.keep();
    return S_OK;
}

HRESULT CFxWireless::getDefaultSelectItem(LONG& rlItem) {
    rlItem = m_bErrorMode ? 0 : static_cast<LONG>(m_vecWirelessItems.size()) - 1;
    return S_OK;
}

std::wstring CFxWireless::getCurrentStatus() {
    return loadResString(m_bEvenStatePresent ? IDS_WIRELESS_ON : IDS_WIRELESS_OFF);
}

HRESULT CFxWireless::selectItem(LONG lItem, LONG /*lParam*/) {
    if (m_bErrorMode) {
        return S_OK;
    }
    RETURN_UNLESS(indexInContainer(lItem, m_vecWirelessItems), L"indexInContainer(nItem, m_vecWirelessItems)", E_FAIL);
    return CFuncX::selectItem(static_cast<LONG>(m_vecWirelessItems[static_cast<std::size_t>(lItem)]), -1);
}

HRESULT CFxWireless::_addStates(DWORD dwStates, std::vector<CQrdItem*>& rVecItems) {
    m_vecWirelessItems.clear();
    for (const functiontables::WirelessState& state : kWirelessStates) {
        if ((dwStates & state.dwBit) == 0) {
            continue;
        }
        const HRESULT status = addItem(state.dwState, state.uImageId1, state.uImageId2, rVecItems);
        if (FAILED(status)) {
            return status;
        }
        m_vecWirelessItems.push_back(state.dwState);
    }
    return S_OK;
}

HRESULT CFxWireless::addItem(DWORD dwState, UINT uImageId1, UINT uImageId2, std::vector<CQrdItem*>& rVecItems) {
    m_bEvenStatePresent = m_bEvenStatePresent || switchesOneDeviceOff(dwState);
    RETURN_IF_FAILED(addCircleItem(stateText(dwState), uImageId1, uImageId2, rVecItems));
    return S_OK;
}

HRESULT CFxWireless::addErrorItem(std::vector<CQrdItem*>& rVecItems) const {
    auto pItem = common::tryMake<CErrorItemDlg>(loadResString(IDS_WIRELESS_NO_DEVICE));
    CDialog* const pWindow = pItem.get();
    RETURN_IF_FAILED(appendItem(std::move(pItem), pWindow, ItemOrder::WindowThenInitialize, rVecItems));
    return S_OK;
}
