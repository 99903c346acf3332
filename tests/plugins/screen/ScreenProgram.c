/* Stands in for the program that reads and sets the brightness of a screen; the screen's path says what happens:
 * "answers with 42" (and takes 70 percent only), "refuses", "crashes", "hangs". */
#include <stdlib.h>
#include <wchar.h>
#include <windows.h>

#define REFUSES 202

int wmain(int argc, wchar_t** argv) {
    if (argc < 3 || wcscmp(argv[1], L"--screen-brightness") != 0) {
        return REFUSES;
    }
    if (wcsstr(argv[2], L"hangs") != NULL) {
        CreateMutexW(NULL, FALSE, L"FenwynTestsHangingScreen");
        Sleep(30000); /* far longer than anybody waits, and not for ever if nobody ends it */
    }
    if (wcsstr(argv[2], L"crashes") != NULL) {
        volatile int* const nowhere = NULL;
        *nowhere = 1;
    }
    const wchar_t* const answer = wcsstr(argv[2], L"answers with ");
    if (answer == NULL) {
        return REFUSES;
    }
    if (argc == 4) {
        return _wtoi(argv[3]) == 70 ? 0 : REFUSES;
    }
    return _wtoi(answer + wcslen(L"answers with "));
}
