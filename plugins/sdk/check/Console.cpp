#include "Console.h"

#include <thread>

#include "PluginLibrary.h"

namespace check {

namespace {

LONG WINAPI onCrash(EXCEPTION_POINTERS* exception) {
    const char* const name = exportInProgress();
    tell(L"ERROR    The plug-in crashed (" + hex(exception->ExceptionRecord->ExceptionCode) + L") in " +
         (name != nullptr ? wide(name) : std::wstring(L"a thread of its own, or while it was loaded")) + L".\n");
    TerminateProcess(GetCurrentProcess(), 1);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void tell(const std::wstring& text) {
    const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    const auto length = static_cast<DWORD>(text.size());
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(out, &mode) != FALSE && WriteConsoleW(out, text.data(), length, &written, nullptr) != FALSE) {
        return;
    }
    const std::string bytes = utf8(text);
    WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

void tellCrashes() {
    SetUnhandledExceptionFilter(onCrash);
}

void tellHangs(DWORD milliseconds) {
    std::thread([milliseconds] {
        Sleep(milliseconds);
        const char* const name = exportInProgress();
        tell(L"FAULT: " + (name != nullptr ? wide(name) : std::wstring(L"loading it")) + L" did not return within " +
             std::to_wstring(milliseconds / 1000) + L" seconds.\n");
        TerminateProcess(GetCurrentProcess(), 1);
    }).detach();
}

}  // namespace check
