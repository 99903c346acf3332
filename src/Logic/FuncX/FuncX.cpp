#include "Logic/FuncX/FuncX.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/PluginGate.h"
#include "Logic/FuncX/PanicThread.h"
#include "UI/ItemDlg/QrdItem.h"
#include "common/LibrarySearch.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "framework/Dialog.h"
#include "plugins/sdk/FenwynPlugin.h"

CFuncX::CFuncX(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption)
    : m_vecHotkeyCodes(std::move(vecHotkeyCodes)), m_strCaption(std::move(strCaption)) {
    if (m_vecHotkeyCodes.empty()) {
        LOG_ASSERT(L"!vecHotkeyCodes.empty()");
    }
}

HRESULT CFuncX::initHotkeyDll(const wchar_t* pszFuncDll) {
    const std::wstring strPath = expandPath(pszFuncDll);
    LOG_INFO(L"Dll path:%s", strPath.c_str());
    RETURN_IF_FAILED(loadPlugin(strPath));
    const auto pfInitialize = getExport<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE);
    if (pfInitialize == nullptr) {
        unloadPlugin();
        RETURN_LOGGED(E_POINTER);
    }
    ULONG uReserved = 0;
    m_bFuncSupported = pfInitialize(0, &uReserved) == FENWYN_OK;
    if (!m_bFuncSupported) {
        logUnsupportedReason();
    }
    return S_OK;
}

bool CFuncX::containsHotkeyCode(DWORD dwCode) const {
    return std::find(m_vecHotkeyCodes.begin(), m_vecHotkeyCodes.end(), dwCode) != m_vecHotkeyCodes.end();
}

HRESULT CFuncX::selectItem(LONG lItem, bool* /*pbHideCard*/, LONG lParam) {
    return selectItem(lItem, lParam);
}

HRESULT CFuncX::selectItem(LONG lItem, LONG /*lParam*/) {
    RETURN_UNLESS(m_hFuncDll, L"NULL != m_hFuncDll", E_FAIL);
    LOG_INFO(L"Select item:%d.", lItem);
    const auto pfSelectItem = getExport<FenwynSelectItem>(FENWYN_SELECT_ITEM);
    if (pfSelectItem == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    ULONG uReserved = 0;
    const CPanicThread::PluginCall call;
    return pfSelectItem(lItem, &uReserved) == FENWYN_OK ? S_OK : E_FAIL;
}

void CFuncX::finalize() {
    LOG_ENTER_LEAVE();
    if (!m_hFuncDll) {
        return;
    }
    if (const auto pfFinalize = getExport<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE)) {
        pfFinalize();
    } else {
        LOG_ASSERT(L"NULL != pfFinalize");
    }
    unloadPlugin();
}

bool CFuncX::isFuncSupported() const {
    LOG_INFO(L"Hotkey %s is%s supported.", m_strCaption.c_str(), m_bFuncSupported ? L"" : L" not");
    return m_bFuncSupported;
}

HRESULT CFuncX::getDisplayItemInfo(DWORD* puInfo, DWORD* puInfo2) const {
    LOG_ENTER_LEAVE();
    RETURN_UNLESS(m_hFuncDll, L"m_hFuncDll", E_HANDLE);
    const auto pfGetDisplayItemInfo = getExport<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO);
    if (pfGetDisplayItemInfo == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    for (DWORD* puOut : {puInfo, puInfo2}) {
        if (puOut != nullptr) {
            *puOut = 0;
        }
    }
    ULONG uReserved = 0;
    const LONG lResult = pfGetDisplayItemInfo(puInfo, puInfo2, &uReserved);
    const DWORD uInfo = puInfo != nullptr ? *puInfo : 0;
    const DWORD uInfo2 = puInfo2 != nullptr ? *puInfo2 : 0;
    LOG_INFO(L"GetDisplayItemInfo returns %d(0x%08x), %d(0x%08x).", uInfo, uInfo, uInfo2, uInfo2);
    return lResult < 0 ? E_FAIL : S_OK;
}

HRESULT CFuncX::getCurrentItem() {
    LOG_ENTER_LEAVE();
    const auto pfGetCurrentItem = getExport<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM);
    if (pfGetCurrentItem == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    ULONG uReserved = 0;
    if (pfGetCurrentItem(&m_lCurrentItem, &uReserved) != FENWYN_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    LOG_INFO(L"Current item: %d.", m_lCurrentItem);
    return S_OK;
}

FARPROC CFuncX::_findExport(const char* pszName) const {
    // A null module would name the program itself.
    if (!m_hFuncDll) {
        ::SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return ::GetProcAddress(m_hFuncDll.get(), pszName);
}

void CFuncX::logUnsupportedReason() const {
    const auto pfGetReason = getExport<FenwynGetUnsupportedReason>(FENWYN_GET_UNSUPPORTED_REASON);
    if (pfGetReason == nullptr) {
        return;
    }
    BSTR bstrReason = nullptr;
    ULONG uReserved = 0;
    const bool bSaid = pfGetReason(&bstrReason, &uReserved) == FENWYN_OK && bstrReason != nullptr;
    const common::ShownText reason = takeText(FENWYN_GET_UNSUPPORTED_REASON, bstrReason);
    if (bSaid) {
        LOG_INFO(L"Hotkey %s has no card: %s", m_strCaption.c_str(), reason.str().c_str());
    }
}

common::ShownText CFuncX::takeText(const char* pszExport, BSTR bstrText) const noexcept {
    common::ShownText text;
    asPartOfCall(pszExport, [&]() noexcept {
        if (bstrText != nullptr) {
            text = {bstrText, ::SysStringLen(bstrText)};
            ::SysFreeString(bstrText);
        }
    });
    return text;
}

HRESULT CFuncX::loadPlugin(const std::wstring& strPath) {
    if (!faults::mayLoad(strPath)) {
        return E_ACCESSDENIED;
    }
    m_plugin = faults::knowPlugin(strPath.c_str(), m_strName.c_str(), m_strCaption.c_str());
    ::SetLastError(ERROR_MOD_NOT_FOUND);
    if (!strPath.empty()) {
        const faults::CPluginCall call(m_plugin, "DllMain", faults::Phase::Initialising);
        const faults::CKeepCallerState keep(m_plugin, "DllMain", faults::Phase::Initialising);
        m_hFuncDll = loadLibraryByPath(strPath);
    }
    if (!m_hFuncDll) {
        return common::statusFromLastError();
    }
    faults::placePlugin(m_plugin, m_hFuncDll.get());
    faults::renewFaultHandlers();
    return S_OK;
}

void CFuncX::unloadPlugin() {
    faults::placePlugin(m_plugin, nullptr);
    const faults::CPluginCall call(m_plugin, "DllMain", faults::Phase::Ending);
    const faults::CKeepCallerState keep(m_plugin, "DllMain", faults::Phase::Ending);
    m_hFuncDll.reset();
}

common::UniqueModule CFuncX::pluginReference() const {
    common::UniqueModule hReference;
    if (m_hFuncDll) {
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const wchar_t*>(m_hFuncDll.get()),
                             hReference.put());
    }
    return hReference;
}

std::wstring CFuncX::expandPath(const wchar_t* pszPath) {
    std::array<wchar_t, MAX_PATH> buffer{};
    if (pszPath == nullptr) {
        return {};
    }
    const DWORD dwChars = ::ExpandEnvironmentStringsW(pszPath, buffer.data(), static_cast<DWORD>(buffer.size()));
    // A truncated path could name another library.
    return dwChars <= buffer.size() ? std::wstring(buffer.data()) : std::wstring();
}

std::wstring CFuncX::textOnce(UINT uTextId) {
    static std::map<UINT, std::wstring> texts;
    const auto found = texts.find(uTextId);
    return found != texts.end() ? found->second : texts.emplace(uTextId, loadResString(uTextId)).first->second;
}

HRESULT CFuncX::appendItem(std::unique_ptr<CQrdItem> pItem, CDialog* pWindow, ItemOrder order,
                           std::vector<CQrdItem*>& rVecItems) const {
    if (pItem == nullptr) {
        return E_OUTOFMEMORY;
    }
    pItem->setPlacement(placement());
    const bool bWindowFirst = order == ItemOrder::WindowThenInitialize;
    HRESULT status = bWindowFirst && !pWindow->Create(nullptr) ? E_FAIL : pItem->initialize();
    if (SUCCEEDED(status) && !bWindowFirst && !pWindow->Create(nullptr)) {
        status = E_FAIL;
    }
    if (FAILED(status)) {
        static_cast<void>(pItem->destroyItem());
        return status;
    }
    rVecItems.push_back(pItem.get());
    static_cast<void>(pItem.release());
    return S_OK;
}

void CFuncX::cleanItems(std::vector<CQrdItem*>& rVecItems) {
    for (CQrdItem*& rpItem : rVecItems) {
        const std::unique_ptr<CQrdItem> pItem(std::exchange(rpItem, nullptr));
        if (pItem != nullptr) {
            static_cast<void>(pItem->destroyItem());
        }
    }
}
