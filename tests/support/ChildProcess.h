// A child process with a command line, ended at the latest with its owner.
#pragma once

#include <windows.h>

#include <string>

#include "common/Handle.h"

namespace support {

class ChildProcess {
 public:
    ChildProcess() = default;
    ~ChildProcess() {
        if (m_hProcess && ::WaitForSingleObject(m_hProcess.get(), 0) == WAIT_TIMEOUT) {
            ::TerminateProcess(m_hProcess.get(), 99);
            ::WaitForSingleObject(m_hProcess.get(), 10000);
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // `standardError`, if given, is an inheritable handle. `flags` as in CreateProcess.
    bool start(const std::wstring& program, const std::wstring& arguments, HANDLE standardError = nullptr,
               DWORD flags = 0) {
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        if (standardError != nullptr) {
            startup.dwFlags = STARTF_USESTDHANDLES;
            startup.hStdError = standardError;
        }
        std::wstring commandLine = L"\"" + program + L"\" " + arguments;
        PROCESS_INFORMATION process{};
        if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, standardError != nullptr, flags,
                              nullptr, nullptr, &startup, &process)) {
            return false;
        }
        ::CloseHandle(process.hThread);
        m_hProcess.reset(process.hProcess);
        m_dwId = process.dwProcessId;
        return true;
    }

    // The exit code, or 0xFFFFFFFF if the process still runs at the deadline.
    DWORD exitCode(DWORD milliseconds = 20000) const {
        DWORD code = 0xFFFFFFFFU;
        if (::WaitForSingleObject(m_hProcess.get(), milliseconds) == WAIT_OBJECT_0) {
            ::GetExitCodeProcess(m_hProcess.get(), &code);
        }
        return code;
    }

    [[nodiscard]] DWORD id() const noexcept { return m_dwId; }
    [[nodiscard]] HANDLE handle() const noexcept { return m_hProcess.get(); }

 private:
    common::UniqueHandle m_hProcess;
    DWORD m_dwId = 0;
};

}  // namespace support
