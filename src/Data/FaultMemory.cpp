#include "Data/FaultMemory.h"

#include <array>

#include "common/DebugLog.h"
#include "common/SettingsRecipe.h"

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

LSTATUS write(const fenwyn::PluginFault& fault) {
    const std::wstring strKey = fenwyn::faultKeyOf(fault.plugin);
    const std::array settings{
        common::textSetting(strKey, FENWYN_VALUE_FAULT_FUNCTION, fault.function),
        common::textSetting(strKey, FENWYN_VALUE_FAULT_EXPORT, fault.exportName),
        common::textSetting(strKey, FENWYN_VALUE_FAULT_REASON, fault.reason),
        common::textSetting(strKey, FENWYN_VALUE_FAULT_WHEN, fault.when),
        common::longNumberSetting(strKey, FENWYN_VALUE_FAULT_TIME, fault.time),
        // This value comes last, because a key without it does not count.
        common::numberSetting(strKey, FENWYN_VALUE_SET_ASIDE, fault.setAside ? 1 : 0),
    };
    return common::writeSettings(HKEY_CURRENT_USER, settings);
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
