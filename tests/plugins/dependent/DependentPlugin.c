/* A plug-in that is loaded only where NeededLibrary.dll is found as well. */
#include <windows.h>

__declspec(dllimport) long neededAnswer(void);

__declspec(dllexport) LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved);
__declspec(dllexport) LONG WINAPI FinalizeHotkeyDll(void);

__declspec(dllexport) LONG WINAPI InitializeHotkeyDll(LONG lZero, ULONG* pReserved) {
    (void)lZero;
    (void)pReserved;
    return neededAnswer();
}

__declspec(dllexport) LONG WINAPI FinalizeHotkeyDll(void) {
    return 0;
}
