// OutputSetup.exe, the display-configuration program that the display-output function starts.
#include "SetupApp.h"
#include "common/LibrarySearch.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
    prepareLibraryLoading();
    setup::CSetupApp app(setup::realSurroundings());
    return app.Main(instance, commandLine);
}
