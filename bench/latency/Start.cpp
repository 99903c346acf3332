// Starts a program, prints the milliseconds until a window of it answers, and leaves it running; with "/end" as the
// first word it ends the program then.
//
//   LatencyStart.exe [/end] WINDOW-CLASS PROGRAM
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

constexpr UINT kLongest = 60000;  // milliseconds

double milliseconds() {
    LARGE_INTEGER now{};
    LARGE_INTEGER frequency{};
    ::QueryPerformanceCounter(&now);
    ::QueryPerformanceFrequency(&frequency);
    return 1000.0 * static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// The window of that class, once it is there and its thread answers it; false after the longest time.
bool answers(const wchar_t* pszClass, DWORD dwProcess) {
    const double end = milliseconds() + kLongest;
    while (milliseconds() < end) {
        HWND hWnd = ::FindWindowW(pszClass, nullptr);
        DWORD dwOwner = 0;
        ::GetWindowThreadProcessId(hWnd, &dwOwner);
        DWORD_PTR result = 0;
        if (hWnd != nullptr && dwOwner == dwProcess &&
            ::SendMessageTimeoutW(hWnd, WM_NULL, 0, 0, SMTO_NORMAL, kLongest, &result) != 0) {
            return true;
        }
        ::Sleep(1);
    }
    return false;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const bool bEnd = argc > 1 && std::wcscmp(argv[1], L"/end") == 0;
    wchar_t** words = argv + (bEnd ? 2 : 1);
    if (words + 2 != argv + argc) {
        return 2;
    }
    std::wstring command = L"\"" + std::wstring(words[1]) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    const double before = milliseconds();
    if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        std::printf("error %lu\n", ::GetLastError());
        return 1;
    }
    const bool bReady = answers(words[0], process.dwProcessId);
    const double passed = milliseconds() - before;
    if (bEnd) {
        ::TerminateProcess(process.hProcess, 0);
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    if (!bReady) {
        std::printf("not ready\n");
        return 1;
    }
    std::printf("%.3f\n", passed);
    return 0;
}
