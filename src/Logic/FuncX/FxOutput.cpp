#include "Logic/FuncX/FxOutput.h"

#include <algorithm>

#include "Logic/FuncX/OutputRules.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/ItemDlg/CircleItemDlg.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"

namespace {

void CALLBACK _fnF5PanicTimerProc(HWND hWnd, UINT /*uMessage*/, UINT_PTR uTimerId, DWORD /*dwTime*/) noexcept {
    LOG_ENTER_LEAVE();
    CPanicThread::signalHeldKey(hWnd, uTimerId);
}

}  // namespace

HRESULT CFxOutput::initHotkeyDll(const wchar_t* pszFuncDll) {
    m_panicThread.start();
    return CFuncX::initHotkeyDll(pszFuncDll);
}

HRESULT CFxOutput::initItems(std::vector<CQrdItem*>& rVecItems) {
    ItemGuard guard(rVecItems);
    DWORD dwFirst = 0;
    DWORD dwSecond = 0;
    RETURN_IF_FAILED(getDisplayItemInfo(&dwFirst, &dwSecond));
    {
        const std::lock_guard lock(m_monitorLock);
        m_vecAvailableMonitors.clear();
    }
    for (const functiontables::Item* pRow : outputrules::offeredOutputs(dwFirst, dwSecond)) {
        RETURN_IF_FAILED(addCircleItem(pRow->uTextId, pRow->uImageId1, pRow->uImageId2, rVecItems));
        const std::lock_guard lock(m_monitorLock);
        m_vecAvailableMonitors.push_back({pRow->dwValue, pRow->uTextId});
    }
    RETURN_IF_FAILED(getCurrentItem());
    RETURN_UNLESS(!rVecItems.empty(), L"!rVecItems.empty()", E_FAIL);
    RETURN_IF_FAILED(_shrinkToFit(rVecItems));
    guard.keep();
    return S_OK;
}

HRESULT CFxOutput::getDefaultSelectItem(LONG& rlItem) {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", E_FAIL);
    const Monitor* const pMonitor = _currentMonitor();
    if (pMonitor == nullptr) {
        return E_FAIL;
    }
    rlItem = static_cast<LONG>(pMonitor - m_vecAvailableMonitors.data());
    return S_OK;
}

std::wstring CFxOutput::getCurrentStatus() {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", std::wstring());
    const Monitor* const pMonitor = _currentMonitor();
    if (pMonitor == nullptr) {
        LOG_INFO(L"Current status of Output cannot be found.");
        return {};
    }
    return loadResString(pMonitor->uTextId);
}

HRESULT CFxOutput::selectItem(LONG lItem, LONG lParam) {
    std::unique_lock lock(m_monitorLock);
    const bool bKnown = indexInContainer(lItem, m_vecAvailableMonitors);
    const DWORD dwValue = bKnown ? m_vecAvailableMonitors[static_cast<std::size_t>(lItem)].dwValue : 0;
    lock.unlock();
    RETURN_UNLESS(bKnown, L"::indexInContainer(nItem, m_vecAvailableMonitors)", E_FAIL);
    return CFuncX::selectItem(static_cast<LONG>(dwValue), lParam);
}

void CFxOutput::armPanicTimer(HWND hWnd, UINT_PTR uTimerId) {
    m_panicThread.arm(hWnd, uTimerId, &_fnF5PanicTimerProc);
}

void CFxOutput::finalize() {
    LOG_ENTER_LEAVE();
    const CPanicThread::EndResult result = m_panicThread.end();
    if (!result.bEventFound) {
        LOG_ASSERT(L"hevtFnF5Panic");
    }
    if (!result.bInTime) {
        LOG_INFO(L"Wait for FnF5 panic thread time out.");
    }
    CFuncX::finalize();
}

HRESULT CFxOutput::getCircleItemRatio(int extraWidth, double* pRatio, bool* pbShrink) const {
    if (pRatio == nullptr || pbShrink == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!placement().known()) {
        RETURN_LOGGED(E_FAIL);
    }
    const int nTotalItemWidth =
        outputrules::totalItemWidth(m_vecAvailableMonitors.size(), placement().ratio, extraWidth);
    LOG_TRACE(L"%s = %d", L"nTotalItemWidth", nTotalItemWidth);
    const auto ratio = outputrules::shrinkRatio(nTotalItemWidth, placement().workWidth());
    *pbShrink = ratio.has_value();
    *pRatio = ratio.value_or(*pRatio);
    return S_OK;
}

HRESULT CFxOutput::_shrinkToFit(const std::vector<CQrdItem*>& rVecItems) const {
    double ratio = 1.0;
    bool bShrink = false;
    const CQrdItem* const pFirst = rVecItems.front();
    const HRESULT status = getCircleItemRatio(pFirst != nullptr ? pFirst->descOverhang() : 0, &ratio, &bShrink);
    if (FAILED(status) || !bShrink) {
        return status;
    }
    for (CQrdItem* const pItem : rVecItems) {
        if (auto* const pCircle = dynamic_cast<CCircleItemDlg*>(pItem)) {
            pCircle->setScale(ratio);
        }
    }
    return S_OK;
}

const CFxOutput::Monitor* CFxOutput::_currentMonitor() const {
    const auto found =
        std::find_if(m_vecAvailableMonitors.begin(), m_vecAvailableMonitors.end(),
                     [this](const Monitor& monitor) { return monitor.dwValue == static_cast<DWORD>(m_lCurrentItem); });
    return found != m_vecAvailableMonitors.end() ? &*found : nullptr;
}

HRESULT CFxOutput::panic() {
    const common::UniqueModule hKeepLoaded = pluginReference();
    return selectItem(0, -1);
}
