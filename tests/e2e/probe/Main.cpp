// Reads commands from standard input until it ends, answers each with a line on standard output.
#include <windows.h>

#include <cstdio>
#include <string>

#include "Commands.h"

namespace {

constexpr UINT kRunCommand = WM_APP + 1;  // wParam: const std::string*, the line; sent, so it outlives the message

LRESULT CALLBACK commandProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kRunCommand) {
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    const std::string reply = probe::answer(*reinterpret_cast<const std::string*>(wParam)) + "\n";
    std::fwrite(reply.data(), 1, reply.size(), stdout);
    std::fflush(stdout);
    return 0;
}

HWND makeCommandWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = commandProc;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"FenwynProbeCommands";
    ::RegisterClassW(&windowClass);
    return ::CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                             windowClass.hInstance, nullptr);
}

// Passes each line to the window thread and waits for its answer, so that answers have the order of the commands.
DWORD WINAPI readCommands(void* parameter) {
    const HWND target = static_cast<HWND>(parameter);
    std::string line;
    for (int c = std::getchar(); c != EOF; c = std::getchar()) {
        if (c == '\r') {
            continue;
        }
        if (c != '\n') {
            line += static_cast<char>(c);
            continue;
        }
        ::SendMessageW(target, kRunCommand, reinterpret_cast<WPARAM>(&line), 0);
        line.clear();
    }
    ::PostMessageW(target, WM_QUIT, 0, 0);
    return 0;
}

}  // namespace

int wmain() {
    const HWND commands = makeCommandWindow();
    const HANDLE reader = ::CreateThread(nullptr, 0, readCommands, commands, 0, nullptr);
    if (reader == nullptr) {
        return 1;
    }
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    ::CloseHandle(reader);
    return 0;
}
