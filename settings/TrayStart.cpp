#include "TrayStart.h"

#include <windows.h>

#include <string>

#include "FenwynRegistry.h"
#include "Tray.h"
#include "common/Handle.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

// As the installer writes it, which removes it too.
constexpr wchar_t kRunKey[] = FENWYN_REG_SOFTWARE L"\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kRunValue[] = L"FenwynTray";

bool startsWithWindows(HKEY root) {
    return ::RegGetValueW(root, kRunKey, kRunValue, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void startWithWindows(const std::wstring& command) {
    if (!startsWithWindows(HKEY_LOCAL_MACHINE) && !startsWithWindows(HKEY_CURRENT_USER)) {
        ::RegSetKeyValueW(HKEY_CURRENT_USER, kRunKey, kRunValue, REG_SZ, command.c_str(),
                          static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
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
        if (::RegGetValueW(root, FENWYN_REG_PRODUCT, FENWYN_VALUE_TRAY_ICON, RRF_RT_REG_DWORD, nullptr, &wanted,
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
    const std::wstring command = L'"' + common::programPath() + L"\" /tray";
    startWithWindows(command);
    start(command);
}

}  // namespace settings
