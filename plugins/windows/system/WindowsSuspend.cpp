#include <windows.h>

#include <powrprof.h>

#include "common/Handle.h"
#include "system/Suspend.h"

namespace win {

namespace {

// Every user who may shut down the machine holds the privilege, but disabled.
void enableShutdownPrivilege() {
    common::UniqueHandle hToken;
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, hToken.put()) &&
        ::LookupPrivilegeValueW(nullptr, SE_SHUTDOWN_NAME, &privileges.Privileges[0].Luid)) {
        ::AdjustTokenPrivileges(hToken.get(), FALSE, &privileges, 0, nullptr, nullptr);
    }
}

void suspend(bool bHibernate) {
    enableShutdownPrivilege();
    // Programs are asked, and wake-up events stay enabled.
    ::SetSuspendState(bHibernate ? TRUE : FALSE, FALSE, FALSE);
}

class CWindowsSuspend final : public ISuspend {
 public:
    std::optional<SleepAbilities> abilities() override {
        SYSTEM_POWER_CAPABILITIES power{};
        if (!::GetPwrCapabilities(&power)) {
            return std::nullopt;
        }
        // Newer systems store the flag of modern standby in what Windows 7 calls its third spare byte.
        constexpr std::size_t kModernStandby = 2;
        return SleepAbilities{power.SystemS1 || power.SystemS2 || power.SystemS3, power.spare2[kModernStandby] != 0,
                              power.SystemS4 != FALSE, power.HiberFilePresent != FALSE};
    }

    void sleep() override { suspend(false); }
    void hibernate() override { suspend(true); }

    // The command goes to a window of our own: broadcast, it would wait for every window of the session.
    void displayOff() override {
        constexpr LPARAM kOff = 2;
        const common::UniqueWindow hWnd(::CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0,
                                                          nullptr, nullptr, nullptr, nullptr));
        ::DefWindowProcW(hWnd.get(), WM_SYSCOMMAND, SC_MONITORPOWER, kOff);
    }
};

}  // namespace

std::shared_ptr<ISuspend> makeWindowsSuspend() {
    return std::make_shared<CWindowsSuspend>();
}

}  // namespace win
