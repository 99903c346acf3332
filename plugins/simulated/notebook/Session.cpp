#include "Session.h"

#include "ZelHotkey.h"
#include "common/Handle.h"

namespace sim {

namespace {

constexpr wchar_t kMainWindowClass[] = L"ZelMainCls";
constexpr DWORD kPollInterval = 20;  // ms

}  // namespace

void askFenwynToEnd() {
    const common::UniqueHandle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, ZEL_END_EVENT));
    if (event) {
        SetEvent(event.get());
    }
}

bool endFenwyn(unsigned long patience) {
    askFenwynToEnd();
    const ULONGLONG deadline = GetTickCount64() + patience;
    while (FindWindowW(kMainWindowClass, nullptr) != nullptr) {
        if (GetTickCount64() >= deadline) {
            return false;
        }
        Sleep(kPollInterval);
    }
    return true;
}

}  // namespace sim
