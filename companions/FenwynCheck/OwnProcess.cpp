#include "OwnProcess.h"

#include <algorithm>

#include "common/Handle.h"

namespace machine {

namespace {

// More than any child writes: it must never wait for somebody to read.
constexpr DWORD kPipeBytes = 1024 * 1024;

struct Pipe {
    common::UniqueHandle read;
    common::UniqueHandle write;  // inheritable
};

bool open(Pipe& pipe) {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    return CreatePipe(pipe.read.put(), pipe.write.put(), &inheritable, kPipeBytes) != FALSE &&
           SetHandleInformation(pipe.read.get(), HANDLE_FLAG_INHERIT, 0) != FALSE;
}

// What is in the pipe by now; a grandchild that still holds its other end does not matter.
std::wstring contentOf(const Pipe& pipe) {
    std::string bytes(kPipeBytes, '\0');
    DWORD available = 0;
    DWORD length = 0;
    if (PeekNamedPipe(pipe.read.get(), nullptr, 0, nullptr, &available, nullptr) == FALSE || available == 0 ||
        ReadFile(pipe.read.get(), bytes.data(), std::min(available, kPipeBytes), &length, nullptr) == FALSE) {
        return {};
    }
    const int chars = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(length), nullptr, 0);
    std::wstring text(static_cast<std::size_t>(chars), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(length), text.data(), chars);
    return text;
}

common::UniqueHandle start(std::wstring commandLine, HANDLE output) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(programPath().c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                       nullptr, &startup, &process) == FALSE) {
        return {};
    }
    CloseHandle(process.hThread);
    return common::UniqueHandle(process.hProcess);
}

}  // namespace

ChildResult runSelf(const std::wstring& arguments, DWORD patience) {
    ChildResult result;
    Pipe pipe;
    if (!open(pipe)) {
        return result;
    }
    const common::UniqueHandle process = start(L"\"" + programPath() + L"\" " + arguments, pipe.write.get());
    pipe.write.reset();
    if (!process) {
        return result;
    }
    result.ended = WaitForSingleObject(process.get(), patience) == WAIT_OBJECT_0;
    if (!result.ended) {
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), INFINITE);
    }
    GetExitCodeProcess(process.get(), &result.exitCode);
    result.text = contentOf(pipe);
    return result;
}

}  // namespace machine
