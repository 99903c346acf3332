// FenwynSettings.exe: the window in which Fenwyn is set up, and the icon in the notification area.
#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "Elevation.h"
#include "SettingsApp.h"
#include "Tray.h"
#include "common/LibrarySearch.h"
#include "common/LogSettings.h"

namespace {

std::vector<std::wstring> wordsOfCommandLine() {
    int count = 0;
    wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::wstring> list(words, words + count);
    ::LocalFree(static_cast<void*>(words));
    return list;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
    prepareLibraryLoading();
    const std::vector<std::wstring> words = wordsOfCommandLine();
    if (words.size() == 2 && words[1] == L"/tray") {
        return settings::runTray(instance);
    }
    if (words.size() == 4 && words[1] == settings::kWriteArgument) {
        settings::CSystemStore store(dbglog::settingsPath().data());
        return static_cast<int>(settings::carryOut(store, words[2], words[3]));
    }
    settings::CSettingsApp app(settings::realSurroundings());
    return app.Main(instance, commandLine);
}
