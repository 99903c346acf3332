#include "common/RegConfig.h"

#include "common/RegValue.h"
#include "common/Status.h"

namespace {

using common::statusFromWin32;

[[nodiscard]] HRESULT checkRead(HKEY key, const wchar_t* name) {
    if (key == nullptr) {
        return E_HANDLE;
    }
    return name == nullptr ? E_POINTER : S_OK;
}

// The buffer has one unit more than the value, so that a value that grows a little between the two reads still fits.
template <typename Unit>
[[nodiscard]] HRESULT readUnits(HKEY key, const wchar_t* name, std::vector<Unit>& out) {
    return statusFromWin32(common::readWholeValue(key, name, 1, out));
}

}  // namespace

RegConfigAccess::~RegConfigAccess() {
    static_cast<void>(Close());  // nobody is left to report to
}

HRESULT RegConfigAccess::Open(HKEY hRoot, const wchar_t* pszSubKey, REGSAM access) {
    LOG_ENTER_LEAVE();
    if (m_hKey != nullptr) {
        RETURN_LOGGED(E_HANDLE);
    }
    if (pszSubKey == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    LOG_TRACE(L"%s = %s", L"pszSubKey", pszSubKey);
    HKEY key = nullptr;
    RETURN_IF_FAILED(statusFromWin32(::RegOpenKeyExW(hRoot, pszSubKey, 0, access, &key)));
    m_hKey = key;
    return S_OK;
}

HRESULT RegConfigAccess::Close() {
    LOG_ENTER_LEAVE();
    if (m_hKey == nullptr) {
        RETURN_LOGGED(E_HANDLE);
    }
    RETURN_IF_FAILED(statusFromWin32(::RegCloseKey(m_hKey)));
    m_hKey = nullptr;
    return S_OK;
}

HRESULT RegConfigAccess::GetValue(const wchar_t* pszName, std::vector<DWORD>& out) const {
    LOG_ENTER_LEAVE();
    RETURN_IF_FAILED(checkRead(m_hKey, pszName));
    LOG_TRACE(L"%s = %s", L"pszName", pszName);
    RETURN_IF_FAILED(readUnits(m_hKey, pszName, out));
    return S_OK;
}

HRESULT RegConfigAccess::GetValue(const wchar_t* pszName, DWORD& out) const {
    LOG_ENTER_LEAVE();
    std::vector<DWORD> values(1, out);
    RETURN_IF_FAILED(GetValue(pszName, values));
    if (!values.empty()) {
        out = values.front();
    }
    return S_OK;
}

HRESULT RegConfigAccess::GetValue(const wchar_t* pszName, std::vector<wchar_t>& out) const {
    LOG_ENTER_LEAVE();
    RETURN_IF_FAILED(checkRead(m_hKey, pszName));
    LOG_TRACE(L"%s = %s", L"pszName", pszName);
    RETURN_IF_FAILED(readUnits(m_hKey, pszName, out));
    return S_OK;
}
