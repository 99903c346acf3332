#include <windows.h>

#include "system/Lock.h"

namespace win {

namespace {

constexpr wchar_t kPolicyKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
constexpr wchar_t kPolicyValue[] = L"DisableLockWorkstation";

bool policySet(HKEY hRoot) {
    DWORD dwValue = 0;
    DWORD dwBytes = sizeof(dwValue);
    return ::RegGetValueW(hRoot, kPolicyKey, kPolicyValue, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &dwValue,
                          &dwBytes) == ERROR_SUCCESS &&
           dwValue != 0;
}

class CWindowsLock final : public ILock {
 public:
    bool forbidden() override { return policySet(HKEY_CURRENT_USER) || policySet(HKEY_LOCAL_MACHINE); }
    bool lock() override { return ::LockWorkStation() != FALSE; }
};

}  // namespace

std::unique_ptr<ILock> makeWindowsLock() {
    return std::make_unique<CWindowsLock>();
}

}  // namespace win
