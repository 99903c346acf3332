// FenwynSettings.exe: the window in which Fenwyn is set up, and the icon in the notification area.
#include <cwchar>

#include "SettingsApp.h"
#include "Tray.h"
#include "common/LibrarySearch.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
    prepareLibraryLoading();
    if (std::wcscmp(commandLine, L"/tray") == 0) {
        return settings::runTray(instance);
    }
    settings::CSettingsApp app(settings::realSurroundings());
    return app.Main(instance, commandLine);
}
