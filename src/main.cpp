// The entry point: the care for faults of plug-ins first, then the application object.
#include "FaultCare.h"
#include "ZelMain.h"
#include "common/LibrarySearch.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
    prepareLibraryLoading();
    if (!faultcare::start(commandLine)) {
        return 0;
    }
    const int exitCode = theApp.Main(instance, commandLine);
    faultcare::end();
    return exitCode;
}
