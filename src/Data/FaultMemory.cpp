#include "Data/FaultMemory.h"

#include "common/DebugLog.h"
#include "common/Handle.h"

namespace {

// Local time as people write it; empty if it is no time.
std::wstring localTime(ULONGLONG ullTime) {
    const FILETIME time{static_cast<DWORD>(ullTime), static_cast<DWORD>(ullTime >> 32)};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    if (!::FileTimeToSystemTime(&time, &utc) || !::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local)) {
        return {};
    }
    wchar_t text[32];
    ::_snwprintf(text, ARRAYSIZE(text), L"%04d-%02d-%02d %02d:%02d:%02d", local.wYear, local.wMonth, local.wDay,
                 local.wHour, local.wMinute, local.wSecond);
    return text;
}

LSTATUS setText(HKEY hKey, const wchar_t* pszName, const std::wstring& strText) {
    return ::RegSetValueExW(hKey, pszName, 0, REG_SZ, reinterpret_cast<const BYTE*>(strText.c_str()),
                            static_cast<DWORD>((strText.size() + 1) * sizeof(wchar_t)));
}

template <typename Number>
LSTATUS setNumber(HKEY hKey, const wchar_t* pszName, DWORD dwType, Number number) {
    return ::RegSetValueExW(hKey, pszName, 0, dwType, reinterpret_cast<const BYTE*>(&number), sizeof(number));
}

LSTATUS write(const fenwyn::PluginFault& fault) {
    common::UniqueRegKey key;
    LSTATUS error = ::RegCreateKeyExW(HKEY_CURRENT_USER, fenwyn::faultKeyOf(fault.plugin).c_str(), 0, nullptr, 0,
                                      KEY_WRITE, nullptr, key.put(), nullptr);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    struct Text {
        const wchar_t* name;
        const std::wstring& text;
    };
    for (const Text& row :
         {Text{FENWYN_VALUE_FAULT_FUNCTION, fault.function}, Text{FENWYN_VALUE_FAULT_EXPORT, fault.exportName},
          Text{FENWYN_VALUE_FAULT_REASON, fault.reason}, Text{FENWYN_VALUE_FAULT_WHEN, fault.when}}) {
        if (error == ERROR_SUCCESS) {
            error = setText(key.get(), row.name, row.text);
        }
    }
    if (error == ERROR_SUCCESS) {
        error = setNumber(key.get(), FENWYN_VALUE_FAULT_TIME, REG_QWORD, fault.time);
    }
    // This value comes last, because a key without it does not count.
    return error == ERROR_SUCCESS
               ? setNumber(key.get(), FENWYN_VALUE_SET_ASIDE, REG_DWORD, DWORD{fault.setAside ? 1U : 0U})
               : error;
}

}  // namespace

void CFaultMemory::remember(fenwyn::PluginFault& rFault) {
    fenwyn::PluginFault previous;
    if (fenwyn::readFault(rFault.plugin, previous)) {
        const bool bRecent = rFault.time - previous.time < kFaultMemory;
        rFault.setAside = rFault.setAside || previous.setAside || bRecent;
    }
    rFault.when = localTime(rFault.time);
    if (const LSTATUS error = write(rFault); error != ERROR_SUCCESS) {
        LOG_LINE(::dbglog::Level::Error, L"The fault of plug-in %s could not be noted, error %u.",
                 rFault.plugin.c_str(), static_cast<unsigned>(error));
    }
}

bool CFaultMemory::isSetAside(const std::wstring& strPath, fenwyn::PluginFault& rFault) {
    return fenwyn::readFault(strPath, rFault) && rFault.setAside;
}
