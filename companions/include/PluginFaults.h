/* What the program remembers of plug-ins that ended it, for C++: each has a key of its own below FENWYN_REG_FAULTS in
 * HKEY_CURRENT_USER, whose name is the path of its library with '/' in place of '\'. Whoever removes the key has
 * forgiven the plug-in: it is loaded again at the next start. */
#ifndef FENWYN_PLUGIN_FAULTS_H
#define FENWYN_PLUGIN_FAULTS_H

#include <windows.h>

#include <string>
#include <vector>

#include "FenwynRegistry.h"

#define FENWYN_REG_FAULTS FENWYN_REG_PRODUCT L"\\PluginFaults"

/* REG_SZ: the function's name in the function list; the export; what happened, in English. */
#define FENWYN_VALUE_FAULT_FUNCTION L"Function"
#define FENWYN_VALUE_FAULT_EXPORT L"Export"
#define FENWYN_VALUE_FAULT_REASON L"Reason"
/* REG_SZ: when, as in "2024-05-31 14:03:07", local time, for people; REG_QWORD: the same as a FILETIME in UTC. */
#define FENWYN_VALUE_FAULT_WHEN L"When"
#define FENWYN_VALUE_FAULT_TIME L"Time"
/* REG_DWORD: 1: the plug-in is set aside; it is not loaded, and its functions have no card. */
#define FENWYN_VALUE_SET_ASIDE L"SetAside"

namespace fenwyn {

struct PluginFault {
    std::wstring plugin;  // the path of its library
    std::wstring function;
    std::wstring exportName;
    std::wstring reason;
    std::wstring when;
    ULONGLONG time = 0;
    bool setAside = false;
};

// All functions here: any thread; std::bad_alloc.

[[nodiscard]] inline std::wstring faultKeyOf(std::wstring path) {
    constexpr std::size_t kLongestName = 255;  // of a registry key
    for (wchar_t& c : path) {
        c = c == L'\\' ? L'/' : c;
    }
    // The end of a path tells libraries apart better than its beginning.
    path.erase(0, path.size() > kLongestName ? path.size() - kLongestName : 0);
    return FENWYN_REG_FAULTS L"\\" + path;
}

[[nodiscard]] inline std::wstring faultText(const std::wstring& key, const wchar_t* name) {
    wchar_t text[512] = L"";
    DWORD size = sizeof text;
    const LSTATUS error =
        RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, text, &size);
    return error == ERROR_SUCCESS ? text : L"";
}

// False: nothing is remembered of it.
[[nodiscard]] inline bool readFault(const std::wstring& path, PluginFault& rFault) {
    const std::wstring key = faultKeyOf(path);
    DWORD aside = 0;
    DWORD size = sizeof aside;
    if (RegGetValueW(HKEY_CURRENT_USER, key.c_str(), FENWYN_VALUE_SET_ASIDE, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr,
                     &aside, &size) != ERROR_SUCCESS) {
        return false;
    }
    size = sizeof rFault.time;
    RegGetValueW(HKEY_CURRENT_USER, key.c_str(), FENWYN_VALUE_FAULT_TIME, RRF_RT_REG_QWORD | RRF_NOEXPAND, nullptr,
                 &rFault.time, &size);
    rFault.plugin = path;
    rFault.function = faultText(key, FENWYN_VALUE_FAULT_FUNCTION);
    rFault.exportName = faultText(key, FENWYN_VALUE_FAULT_EXPORT);
    rFault.reason = faultText(key, FENWYN_VALUE_FAULT_REASON);
    rFault.when = faultText(key, FENWYN_VALUE_FAULT_WHEN);
    rFault.setAside = aside != 0;
    return true;
}

[[nodiscard]] inline std::vector<PluginFault> readFaults() {
    std::vector<PluginFault> faults;
    HKEY root = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, FENWYN_REG_FAULTS, 0, KEY_READ, &root) != ERROR_SUCCESS) {
        return faults;
    }
    wchar_t name[256];
    DWORD length = 256;
    for (DWORD i = 0; RegEnumKeyExW(root, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS; ++i) {
        std::wstring path(name, length);
        for (wchar_t& c : path) {
            c = c == L'/' ? L'\\' : c;
        }
        PluginFault fault;
        if (readFault(path, fault)) {
            faults.push_back(fault);
        }
        length = 256;
    }
    RegCloseKey(root);
    return faults;
}

// An error of the system; there is none if nothing was remembered.
[[nodiscard]] inline LSTATUS forgiveFaults() {
    for (const PluginFault& fault : readFaults()) {
        if (const LSTATUS error = RegDeleteKeyW(HKEY_CURRENT_USER, faultKeyOf(fault.plugin).c_str());
            error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

}  // namespace fenwyn

#endif
