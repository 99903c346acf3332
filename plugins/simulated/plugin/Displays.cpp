// The display source of the simulated notebook: what the display output has made of its two screens.
#define DISPLAY_SOURCE_LIBRARY
#include "DisplaySource.h"

#include <algorithm>

#include "CallRecord.h"
#include "OutputEntries.h"
#include "State.h"

using namespace sim;

namespace {

constexpr wchar_t kFunction[] = L"Output_2";

DisplaySourceDisplay written(const MachineDisplay& display) {
    DisplaySourceDisplay result{};
    display.name.copy(result.szName, DISPLAY_SOURCE_NAME_CHARS - 1);
    std::copy(std::begin(display.record.szConnector), std::end(display.record.szConnector), result.szConnector);
    result.bBuiltIn = display.builtIn ? 1 : 0;
    result.lLeft = display.place.x;
    result.lTop = display.place.y;
    result.lWidth = static_cast<LONG>(display.record.uWidth);
    result.lHeight = static_cast<LONG>(display.record.uHeight);
    return result;
}

}  // namespace

// The borders of the library: no exception leaves them.
LONG WINAPI DisplaySource_GetDisplays(DisplaySourceDisplay* pDisplays, ULONG uRoom, ULONG* puCount) {
    if (pDisplays == nullptr || puCount == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    try {
        ULONG count = 0;
        for (const MachineDisplay& display : presentDisplays()) {
            if (count < uRoom) {
                pDisplays[count++] = written(display);
            }
        }
        *puCount = count;
        return ERROR_SUCCESS;
    } catch (...) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

LONG WINAPI DisplaySource_SetArrangement(LONG lMode) {
    try {
        const LONG result = setArrangement(lMode) ? ERROR_SUCCESS : ERROR_NOT_SUPPORTED;
        recordCall({kFunction, L"DisplaySource_SetArrangement", std::to_wstring(lMode), result});
        writeText({}, kLastFunction, kFunction);
        writeNumber({}, kLastResult, static_cast<DWORD>(result));
        return result;
    } catch (...) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}
