// The entry point; everything else is behind the application object.
#include "ZelMain.h"
#include "common/LibrarySearch.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
    prepareLibraryLoading();
    return theApp.Main(instance, commandLine);
}
