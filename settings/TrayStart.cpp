#include "TrayStart.h"

#include <windows.h>

#include <string>

#include "FenwynRegistry.h"
#include "RunKey.h"
#include "Tray.h"
#include "common/Handle.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

void startIconWithWindows() {
    if (!startsWithWindows(HKEY_LOCAL_MACHINE, kStartedIcon) && !startsWithWindows(HKEY_CURRENT_USER, kStartedIcon)) {
        // The icon is shown now even if it will not be after the next sign-in.
        static_cast<void>(setStartWithWindows(HKEY_CURRENT_USER, kStartedIcon, true));
    }
}

void start(std::wstring command) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (::CreateProcessW(common::programPath().c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                         &startup, &process) != FALSE) {
        ::CloseHandle(process.hThread);
        ::CloseHandle(process.hProcess);
    }
}

void end() {
    const common::UniqueHandle event(::OpenEventW(EVENT_MODIFY_STATE, FALSE, kTrayEndEvent));
    if (event) {
        ::SetEvent(event.get());
    }
}

}  // namespace

bool isIconWanted() noexcept {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        DWORD wanted = 0;
        DWORD size = sizeof wanted;
        if (::RegGetValueW(root, FENWYN_REG_PRODUCT, FENWYN_VALUE_TRAY_ICON, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &wanted,
                           &size) == ERROR_SUCCESS) {
            return wanted != 0;
        }
    }
    return true;
}

void followIconSetting() {
    if (!isIconWanted()) {
        end();
        return;
    }
    startIconWithWindows();
    start(commandOf(kStartedIcon));
}

}  // namespace settings
