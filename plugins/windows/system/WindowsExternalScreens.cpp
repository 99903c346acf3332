#include <windows.h>

#include <utility>

#include "ScreenBrightness.h"
#include "common/Handle.h"
#include "keyboard/OwnModule.h"
#include "system/ExternalScreens.h"

namespace win {

namespace {

constexpr DWORD kEndMs = 500;  // an ended process may take this long to disappear
constexpr DWORD kPathChars = 512;

std::wstring folderAbove(const std::wstring& path) {
    return path.substr(0, path.rfind(L'\\'));
}

class CWindowsExternalScreens final : public IExternalScreens {
 public:
    CWindowsExternalScreens(std::wstring program, DWORD dwPatienceMs)
        : m_strProgram(std::move(program)), m_dwPatienceMs(dwPatienceMs) {}

    std::vector<std::wstring> allowed() override {
        std::vector<std::wstring> paths;
        common::UniqueRegKey hKey;
        if (::RegOpenKeyExW(HKEY_CURRENT_USER, FENWYN_REG_ALLOWED_SCREENS, 0, KEY_QUERY_VALUE, hKey.put()) !=
            ERROR_SUCCESS) {
            return paths;
        }
        for (DWORD i = 0;; ++i) {
            wchar_t path[kPathChars];
            DWORD dwChars = kPathChars;
            DWORD dwType = REG_NONE;
            DWORD dwAllowed = 0;
            DWORD dwBytes = sizeof(dwAllowed);
            const LSTATUS error = ::RegEnumValueW(hKey.get(), i, path, &dwChars, nullptr, &dwType,
                                                  reinterpret_cast<BYTE*>(&dwAllowed), &dwBytes);
            if (error != ERROR_SUCCESS && error != ERROR_MORE_DATA) {
                return paths;
            }
            if (error == ERROR_SUCCESS && dwType == REG_DWORD && dwAllowed != 0) {
                paths.emplace_back(path, dwChars);
            }
        }
    }

    std::optional<BYTE> read(const std::wstring& path) override {
        const std::optional<DWORD> code = _run(L"\"" + path + L"\"");
        return code && *code <= fenwyn::kFullBrightness ? std::optional<BYTE>(static_cast<BYTE>(*code)) : std::nullopt;
    }

    bool set(const std::wstring& path, BYTE nPercent) override {
        return _run(L"\"" + path + L"\" " + std::to_wstring(nPercent)) == 0U;
    }

 private:
    // Its exit code; nothing if it could not be started or had to be ended.
    [[nodiscard]] std::optional<DWORD> _run(const std::wstring& arguments) const {
        std::wstring commandLine = L"\"" + m_strProgram + L"\" " + fenwyn::kScreenBrightness + L" " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_FORCEOFFFEEDBACK;
        PROCESS_INFORMATION process{};
        if (::CreateProcessW(m_strProgram.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                             nullptr, nullptr, &startup, &process) == FALSE) {
            return std::nullopt;
        }
        ::CloseHandle(process.hThread);
        const common::UniqueHandle hProcess(process.hProcess);
        if (::WaitForSingleObject(hProcess.get(), m_dwPatienceMs) != WAIT_OBJECT_0) {
            ::TerminateProcess(hProcess.get(), fenwyn::kScreenTookTooLong);
            // A call that hangs in a driver keeps its process even now; nobody waits for that.
            ::WaitForSingleObject(hProcess.get(), kEndMs);
            return std::nullopt;
        }
        DWORD dwCode = 0;
        return ::GetExitCodeProcess(hProcess.get(), &dwCode) != FALSE ? std::optional<DWORD>(dwCode) : std::nullopt;
    }

    const std::wstring m_strProgram;
    const DWORD m_dwPatienceMs;
};

}  // namespace

std::shared_ptr<IExternalScreens> makeWindowsExternalScreens(std::wstring program, DWORD dwPatienceMs) {
    return std::make_shared<CWindowsExternalScreens>(std::move(program), dwPatienceMs);
}

std::shared_ptr<IExternalScreens> makeWindowsExternalScreens() {
    wchar_t path[MAX_PATH];
    const std::wstring library(path, ::GetModuleFileNameW(keyboard::ownModule(), path, MAX_PATH));
    return makeWindowsExternalScreens(folderAbove(folderAbove(library)) + L"\\" + fenwyn::kBrightnessProgram,
                                      kScreenPatienceMs);
}

WakeTime wakeTime() {
    constexpr ULONGLONG kUnitsPerMs = 10000;
    ULONGLONG ullAwake = 0;
    const ULONGLONG ullNow = ::GetTickCount64();
    return {ullNow, ::QueryUnbiasedInterruptTime(&ullAwake) != FALSE ? ullNow - ullAwake / kUnitsPerMs : 0};
}

}  // namespace win
