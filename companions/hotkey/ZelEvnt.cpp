// The export of ZelEvnt.dll.
#include <windows.h>

#include "common/Handle.h"
#include "include/ZelHotkey.h"

extern "C" __declspec(dllexport) LONG WINAPI CancelQueryEvent() noexcept {
    const common::UniqueHandle event(::OpenEventW(EVENT_MODIFY_STATE, FALSE, ZEL_CANCEL_QUERY_EVENT));
    if (!event) {
        const DWORD error = ::GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(error);
    }
    return ::SetEvent(event.get()) ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
}
