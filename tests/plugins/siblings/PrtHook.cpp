#include "StandIn.h"

using namespace standin;

extern "C" BOOL WINAPI InstallHook(PrintScreenCallback callback);

extern "C" BOOL WINAPI InstallHook(PrintScreenCallback callback) {
    control().printScreenCallback = callback;
    return answer(control().installHook, L"InstallHook");
}
