// NotebookSim.exe: without arguments the window of the simulated notebook, with arguments a command.
#include <windows.h>

#include <shellapi.h>

#include "Commands.h"
#include "NotebookWnd.h"
#include "framework/WinApp.h"

namespace {

class CNotebookApp : public CWinApp {
 protected:
    bool InitInstance() override {
        m_pMainWnd = &m_wnd;
        return m_wnd.create();
    }

 private:
    sim::CNotebookWnd m_wnd;
};

// To the caller's pipe or file, otherwise to its console. There may be neither.
void tell(const std::wstring& text) {
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    if (out == nullptr && AttachConsole(ATTACH_PARENT_PROCESS) != FALSE) {
        out = GetStdHandle(STD_OUTPUT_HANDLE);
    }
    char bytes[8192];
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), bytes,
                                           static_cast<int>(sizeof bytes), nullptr, nullptr);
    DWORD written = 0;
    if (out != nullptr && length > 0) {
        WriteFile(out, bytes, static_cast<DWORD>(length), &written, nullptr);
    }
}

std::vector<std::wstring> commandLineArguments() {
    int count = 0;
    LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> arguments;
    for (int i = 1; words != nullptr && i < count; ++i) {
        arguments.emplace_back(words[i]);
    }
    LocalFree(words);
    return arguments;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int) {
    const std::vector<std::wstring> arguments = commandLineArguments();
    if (arguments.empty()) {
        CNotebookApp app;
        return app.Main(instance, commandLine);
    }
    std::wstring answer;
    const sim::ExitCode code = sim::runCommand(arguments, answer);
    tell(answer);
    return code;
}
