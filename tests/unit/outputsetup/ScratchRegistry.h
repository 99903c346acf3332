// While it lives, the user's registry of this process is an empty key of its own; afterwards nothing of it is left.
#pragma once

#include <windows.h>

#include <string>

#include "common/Handle.h"

namespace test {

class ScratchRegistry {
 public:
    ScratchRegistry() : m_strName(L"OutputSetupTest " + std::to_wstring(::GetCurrentProcessId())) {
        ::RegCreateKeyExW(HKEY_CURRENT_USER, m_strName.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, m_key.put(),
                          nullptr);
        ::RegOverridePredefKey(HKEY_CURRENT_USER, m_key.get());
    }
    ~ScratchRegistry() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, m_strName.c_str());
    }
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    // From here on nothing can be written: a deleted key takes no more values.
    void refuseWrites() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, m_strName.c_str());
        ::RegOverridePredefKey(HKEY_CURRENT_USER, m_key.get());
    }

 private:
    std::wstring m_strName;
    common::UniqueRegKey m_key;
};

}  // namespace test
