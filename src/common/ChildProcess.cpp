#include "common/ChildProcess.h"

#include <algorithm>

#include "common/Handle.h"

namespace common {

namespace {

// More than any child writes: it must never wait for somebody to read.
constexpr DWORD kPipeBytes = 1024 * 1024;

struct Pipe {
    UniqueHandle read;
    UniqueHandle write;  // inheritable
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

UniqueHandle start(const std::wstring& program, const std::wstring& arguments, HANDLE output) {
    std::wstring commandLine = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                       &startup, &process) == FALSE) {
        return {};
    }
    CloseHandle(process.hThread);
    return UniqueHandle(process.hProcess);
}

}  // namespace

ChildResult runChild(const std::wstring& program, const std::wstring& arguments, DWORD patience) {
    ChildResult result;
    Pipe pipe;
    if (!open(pipe)) {
        return result;
    }
    const UniqueHandle process = start(program, arguments, pipe.write.get());
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

std::wstring quotedArgument(const std::wstring& argument) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        result.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        result += c;
    }
    return result.append(2 * backslashes, L'\\') + L'"';
}

}  // namespace common
