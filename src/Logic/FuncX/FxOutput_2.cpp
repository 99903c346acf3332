#include "Logic/FuncX/FxOutput_2.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwchar>

#include "Data/HotkeyConfig.h"
#include "Data/RegistryPaths.h"
#include "Logic/FuncX/OutputRules.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/ItemDlg/FxOutputItemDlg.h"
#include "common/RegConfig.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "common/TryMake.h"
#include "companions/OutputSetup/include/OutputSetup.h"

using functiontables::kOutputModes;

namespace {

constexpr std::size_t kSetupParameterChars = 30;

void CALLBACK _fnF5PanicTimerProc_2(HWND hWnd, UINT /*uMessage*/, UINT_PTR uTimerId, DWORD /*dwTime*/) noexcept {
    LOG_ENTER_LEAVE();
    CPanicThread::signalHeldKey(hWnd, uTimerId);
}

// The status of a missing export; always a failure, whatever the system's last error is.
[[nodiscard]] HRESULT missingExportStatus() {
    const HRESULT status = common::statusFromLastError();
    return FAILED(status) ? status : E_FAIL;
}

// The end of the readable pages that contain `address`; `address` if its page is not readable.
std::uintptr_t endOfReadable(std::uintptr_t address, std::uintptr_t farEnough) {
    MEMORY_BASIC_INFORMATION memory{};
    // One query covers pages of one kind; a library's data consists of two, written to and not yet written to.
    while (address < farEnough &&
           ::VirtualQuery(reinterpret_cast<const void*>(address), &memory, sizeof(memory)) != 0 &&
           memory.State == MEM_COMMIT && (memory.Protect & (PAGE_NOACCESS | PAGE_GUARD)) == 0) {
        address = reinterpret_cast<std::uintptr_t>(memory.BaseAddress) + memory.RegionSize;
    }
    return address;
}

// How many of the records are in readable memory: a plug-in's count is not trusted.
DWORD readableRecords(const FenwynDisplayRecord* pRecords, DWORD dwCount) {
    if (pRecords == nullptr) {
        return 0;
    }
    const auto first = reinterpret_cast<std::uintptr_t>(pRecords);
    const auto wanted = std::min<std::uintptr_t>(dwCount, (UINTPTR_MAX - first) / sizeof(FenwynDisplayRecord));
    const std::uintptr_t readable = endOfReadable(first, first + wanted * sizeof(FenwynDisplayRecord)) - first;
    return static_cast<DWORD>(std::min(wanted, readable / sizeof(FenwynDisplayRecord)));
}

}  // namespace

HRESULT CFxOutput_2::initHotkeyDll(const wchar_t* pszFuncDll) {
    RETURN_IF_FAILED(_readSetupPath());
    const std::wstring strPath = expandPath(pszFuncDll);
    LOG_INFO(L"Dll path:%s", strPath.c_str());
    RETURN_IF_FAILED(loadPlugin(strPath));
    const auto pfInitialize = getExport<FenwynFnF5InitializeHotkeyDll>(FENWYN_FNF5_INITIALIZE);
    if (pfInitialize == nullptr) {
        const HRESULT status = missingExportStatus();
        unloadPlugin();
        RETURN_LOGGED(status);
    }
    ULONG uReserved = 0;
    m_bFuncSupported = pfInitialize(0, &uReserved, &fnf5::allocate) == FENWYN_OK;
    if (!m_bFuncSupported) {
        logUnsupportedReason();
    }
    m_panicThread.start();
    return S_OK;
}

HRESULT CFxOutput_2::initItems(std::vector<CQrdItem*>& rVecItems) {
    LOG_ENTER_LEAVE();
    ItemGuard guard(rVecItems);
    LONG lCount = 0;
    bool bLimited = false;
    DWORD dwMaximum = 0;
    RETURN_IF_FAILED(getItemCount(lCount, bLimited, dwMaximum));
    RETURN_IF_FAILED(getCurrentItem());
    m_lCurrentItemFiltered = m_lCurrentItem;
    RETURN_IF_FAILED(getAvailableItems(lCount));
    if (bLimited) {
        RETURN_IF_FAILED(filterFavItems(dwMaximum));
    }
    for (const auto& pInfo : m_vecAvailableItems) {
        if (pInfo != nullptr) {
            RETURN_IF_FAILED(_addOutputItem(*pInfo, rVecItems));
        }
    }
    guard.keep();
    return S_OK;
}

HRESULT CFxOutput_2::getDefaultSelectItem(LONG& rlItem) {
    RETURN_UNLESS(m_lCurrentItemFiltered != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItemFiltered",
                  E_FAIL);
    rlItem = m_lCurrentItemFiltered;
    return S_OK;
}

std::wstring CFxOutput_2::getCurrentStatus() {
    RETURN_UNLESS(m_lCurrentItem != INVALID_CURRENT_ITEM, L"INVALID_CURRENT_ITEM != m_lCurrentItem", std::wstring());
    return m_strCurrentItemText;
}

HRESULT CFxOutput_2::selectItem(LONG lItem, bool* pbHideCard, LONG lParam) {
    if (!indexInContainer(lItem, m_vecAvailableItems) || !m_vecAvailableItems[static_cast<std::size_t>(lItem)]) {
        RETURN_LOGGED(E_FAIL);
    }
    RETURN_UNLESS(pbHideCard != nullptr, L"(NULL != pbHideCard)", E_POINTER);
    const FnF5ItemInfo& info = *m_vecAvailableItems[static_cast<std::size_t>(lItem)];
    *pbHideCard = true;
    if (info.dwNeedsSetup != 0) {
        RETURN_IF_FAILED(showOutputConfDlg(info.lMode));
        *pbHideCard = false;
        return S_OK;
    }
    if (info.lMode == FENWYN_MODE_CONFIGURE) {
        _startOutputSetup(OUTPUT_SETUP_VERB_CONFIG);
        return S_OK;
    }
    if (info.lMode == FENWYN_MODE_SAVE) {
        *pbHideCard = false;
        _startOutputSetup(OUTPUT_SETUP_VERB_SAVE);
        return S_OK;
    }
    return CFuncX::selectItem(static_cast<LONG>(info.dwIndex), lParam);
}

void CFxOutput_2::armPanicTimer(HWND hWnd, UINT_PTR uTimerId) {
    m_panicThread.arm(hWnd, uTimerId, &_fnF5PanicTimerProc_2);
}

void CFxOutput_2::finalize() {
    m_vecAvailableItems.clear();
    if (!m_panicThread.end().bEventFound) {
        LOG_ASSERT(L"hevtFnF5Panic");
    }
    CFuncX::finalize();
}

void CFxOutput_2::_startOutputSetup(const wchar_t* pszParameters) {
    if (m_strOutputSetupPath.empty()) {
        LOG_STATUS(E_FAIL);
        return;
    }
    startOutputSetup(m_strOutputSetupPath, pszParameters);
}

void CFxOutput_2::startOutputSetup(const std::wstring& strProgram, const wchar_t* pszParameters) {
    ::ShellExecuteW(nullptr, nullptr, strProgram.c_str(), pszParameters, nullptr, SW_SHOWNORMAL);
}

HRESULT CFxOutput_2::_readSetupPath() {
    RegConfigAccess config;
    std::vector<wchar_t> path;
    HRESULT status = config.Open(CHotkeyConfig::listRoot(), regpath::kProgramKey, KEY_READ);
    if (SUCCEEDED(status)) {
        status = config.GetValue(regpath::kInstallPath, path);
    }
    if (SUCCEEDED(status)) {
        path.push_back(L'\0');
        const std::wstring folder = expandPath(path.data());
        // Without a folder the program would be searched for in the root of some drive.
        m_strOutputSetupPath = folder.empty() ? std::wstring() : folder + L"\\" OUTPUT_SETUP_PROGRAM;
    }
    return status;
}

HRESULT CFxOutput_2::getItemCount(LONG& rlCount, bool& rbLimited, DWORD& rdwMaximum) const {
    const auto pfGetCount = getExport<FenwynFnF5GetDisplayItemCount>(FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT);
    if (pfGetCount == nullptr) {
        RETURN_LOGGED(missingExportStatus());
    }
    ULONG uReserved = 0;
    if (pfGetCount(&rlCount, &uReserved) != FENWYN_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    LOG_INFO(L"Available items count is:%d.", rlCount);
    if (!placement().known()) {
        RETURN_LOGGED(E_FAIL);
    }
    const auto limit = outputrules::entryLimit(rlCount, placement().ratio, placement().workWidth());
    rbLimited = limit.has_value();
    if (limit) {
        rdwMaximum = *limit;
        LOG_INFO(L"Maximal items count is %d:", rdwMaximum);
    }
    return S_OK;
}

HRESULT CFxOutput_2::getAvailableItems(LONG lCount) {
    m_vecAvailableItems.clear();
    m_strCurrentItemText.clear();
    if (getExport<FARPROC>(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO) == nullptr) {
        RETURN_LOGGED(missingExportStatus());
    }
    for (LONG lIndex = 0; lIndex < lCount; ++lIndex) {
        std::unique_ptr<FnF5ItemInfo> pInfo;
        fnf5::UniqueText text;
        const HRESULT status = _askForItem(static_cast<DWORD>(lIndex), pInfo, text);
        const bool bText = static_cast<bool>(text);
        common::ShownText shown;
        asPartOfCall(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, [&]() noexcept {
            shown = fnf5::textOf(text);
            text.reset();
        });
        if (FAILED(status)) {
            m_vecAvailableItems.clear();
            RETURN_LOGGED(status);
        }
        if (pInfo->dwCustom != 0 && !bText) {
            LOG_ASSERT(L"NULL != pszItemText");
        }
        pInfo->strText = pInfo->dwCustom != 0 ? shown.str() : getDefaultItemName(pInfo->lMode);
        if (lIndex == m_lCurrentItem) {
            m_strCurrentItemText = pInfo->strText;
        }
        m_vecAvailableItems.push_back(std::move(pInfo));
    }
    return S_OK;
}

HRESULT CFxOutput_2::_askForItem(DWORD dwIndex, std::unique_ptr<FnF5ItemInfo>& rpInfo, fnf5::UniqueText& rText) const {
    const auto pfGetInfo = getExport<FenwynFnF5GetDisplayItemInfo>(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO);
    LONG lMode = -1;
    ULONG uRecordCount = 0;
    ULONGLONG ullRecords = 0;
    ULONG uFlags = 0;
    ULONG uReserved = 0;
    if (pfGetInfo(dwIndex, &lMode, rText.put(), &uRecordCount, &ullRecords, &uFlags, &uReserved) != FENWYN_OK) {
        return E_FAIL;
    }
    // Each entry becomes four windows, so more than a process could ever show is not read.
    rpInfo = dwIndex < FENWYN_MAX_ENTRIES ? common::tryMake<FnF5ItemInfo>() : nullptr;
    if (rpInfo == nullptr) {
        return E_POINTER;
    }
    *rpInfo = {.dwIndex = dwIndex,
               .lMode = lMode,
               .dwCustom = uFlags & FENWYN_ENTRY_CUSTOM,
               .dwShowResolution = uFlags & FENWYN_ENTRY_SHOW_RESOLUTION,
               .dwNeedsSetup = uFlags & FENWYN_ENTRY_NEEDS_SETUP,
               .strText = {},
               .dwRecordCount = uRecordCount,
               .ullRecords = ullRecords};
    return S_OK;
}

HRESULT CFxOutput_2::filterFavItems(DWORD uMaxItemCnt) {
    LOG_ENTER_LEAVE();
    if (m_lCurrentItemFiltered != m_lCurrentItem) {
        LOG_ASSERT(L"m_lCurrentItemFiltered == m_lCurrentItem");
    }
    if (m_vecAvailableItems.empty()) {
        RETURN_LOGGED(E_FAIL);
    }
    std::vector<bool> keep;
    for (const auto& pInfo : m_vecAvailableItems) {
        keep.push_back(pInfo == nullptr || pInfo->dwCustom == 0 || static_cast<LONG>(keep.size()) == m_lCurrentItem);
    }
    for (const std::size_t position : outputrules::entriesToDrop(keep, uMaxItemCnt)) {
        m_vecAvailableItems.erase(m_vecAvailableItems.begin() + static_cast<std::ptrdiff_t>(position));
        m_lCurrentItemFiltered -= m_lCurrentItemFiltered > static_cast<LONG>(position) ? 1 : 0;
    }
    if (m_vecAvailableItems.size() > uMaxItemCnt) {
        LOG_ASSERT(L"m_vecAvailableItems.size() <= uMaxItemCnt");
    }
    return S_OK;
}

HRESULT CFxOutput_2::_addOutputItem(const FnF5ItemInfo& rInfo, std::vector<CQrdItem*>& rVecItems) const {
    UINT uIdSmallIcon = 0;
    UINT uIdLargeIcon = 0;
    const HRESULT status =
        getImageIDInRes(rInfo.lMode, rInfo.dwCustom, rInfo.dwNeedsSetup, &uIdSmallIcon, &uIdLargeIcon);
    if (FAILED(status)) {
        return status;
    }
    const auto* const pRecords =
        reinterpret_cast<const FenwynDisplayRecord*>(static_cast<std::uintptr_t>(rInfo.ullRecords));
    std::array<FenwynDisplayRecord, FENWYN_MAX_RECORDS> records;
    const DWORD dwCount = readableRecords(pRecords, std::min<DWORD>(rInfo.dwRecordCount, FENWYN_MAX_RECORDS));
    asPartOfCall(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO,
                 [&]() noexcept { std::copy_n(pRecords, dwCount, records.begin()); });
    auto pItem = common::tryMake<CFxOutputItemDlg>(rInfo.lMode, rInfo.dwNeedsSetup, rInfo.dwShowResolution,
                                                   uIdSmallIcon, uIdLargeIcon, rInfo.strText, dwCount, records.data());
    CDialog* const pWindow = pItem.get();
    return appendItem(std::move(pItem), pWindow, ItemOrder::InitializeThenWindow, rVecItems);
}

std::wstring CFxOutput_2::getDefaultItemName(LONG lMode) {
    RETURN_UNLESS(indexInContainer(lMode, kOutputModes), L"!\"Wrong icon type!\"", std::wstring());
    return loadResString(kOutputModes[static_cast<std::size_t>(lMode)].uNameId);
}

HRESULT CFxOutput_2::getImageIDInRes(LONG lMode, DWORD dwCustom, DWORD dwNeedsSetup, UINT* puIdSmallIcon,
                                     UINT* puIdLargeIcon) {
    RETURN_UNLESS(puIdSmallIcon != nullptr && puIdLargeIcon != nullptr, L"puIdSmallIcon && puIdLargeIcon", E_POINTER);
    if (!indexInContainer(lMode, kOutputModes)) {
        return S_OK;
    }
    const functiontables::OutputMode& mode = kOutputModes[static_cast<std::size_t>(lMode)];
    const functiontables::ImagePair& builtIn = dwNeedsSetup != 0 ? mode.needsSetup : mode.builtIn;
    const functiontables::ImagePair& images = dwCustom != 0 ? mode.custom : builtIn;
    *puIdSmallIcon = images.uSmallId;
    *puIdLargeIcon = images.uLargeId;
    return S_OK;
}

HRESULT CFxOutput_2::showOutputConfDlg(LONG lMode) {
    DWORD nSupportedModes = 0;
    for (const auto& pInfo : m_vecAvailableItems) {
        if (pInfo != nullptr && pInfo->dwNeedsSetup != 0) {
            nSupportedModes |= outputrules::setupModeBit(pInfo->lMode);
        }
    }
    RETURN_UNLESS(nSupportedModes != 0, L"nSupportedModes != 0", E_FAIL);
    std::array<wchar_t, kSetupParameterChars> parameter{};
    ::_snwprintf(parameter.data(), parameter.size() - 1, OUTPUT_SETUP_VERB_OUTPUT L" %d",
                 outputrules::setupNumber(lMode, nSupportedModes));
    LOG_INFO(L"Parameter for calling OutputSetup.exe: %s.", parameter.data());
    _startOutputSetup(parameter.data());
    return S_OK;
}

HRESULT CFxOutput_2::preparePanic() {
    return getExport<FARPROC>(FENWYN_FNF5_SET_CURRENT_FOR_PANIC) != nullptr ? S_OK : E_POINTER;
}

HRESULT CFxOutput_2::panic() {
    const common::UniqueModule hKeepLoaded = pluginReference();
    const auto pfSetCurrent = getExport<FenwynFnF5SetCurrentForPanic>(FENWYN_FNF5_SET_CURRENT_FOR_PANIC);
    if (pfSetCurrent == nullptr) {
        return E_FAIL;
    }
    const CPanicThread::PluginCall call;
    return pfSetCurrent() == FENWYN_OK ? S_OK : E_FAIL;
}
