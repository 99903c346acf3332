#include "StandIn.h"

using namespace standin;

extern "C" LONG WINAPI CancelQueryEvent();

extern "C" LONG WINAPI CancelQueryEvent() {
    return answer(control().cancelQueryEvent, L"CancelQueryEvent");
}
