// The exports of PrtHook.dll.
#include <windows.h>

#include <memory>
#include <new>

#include "PrintScreenHook.h"
#include "include/PrtHook.h"
#include "keyboard/Lock.h"

namespace {

SRWLOCK s_lock = SRWLOCK_INIT;

// Never destroyed: the hook usually runs until the process ends, and then its threads may be anywhere.
std::shared_ptr<prtscreen::CPrintScreenHook>& installed() noexcept {
    static auto& hook = *new std::shared_ptr<prtscreen::CPrintScreenHook>();
    return hook;
}

}  // namespace

extern "C" __declspec(dllexport) BOOL WINAPI InstallHook(PrtHookCallback callback) {
    const keyboard::CExclusiveLock lock(s_lock);
    if (callback == nullptr || installed()) {
        return FALSE;
    }
    try {
        auto hook = std::make_shared<prtscreen::CPrintScreenHook>(callback);
        if (FAILED(hook->start())) {
            return FALSE;
        }
        installed() = std::move(hook);
        return TRUE;
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}

extern "C" __declspec(dllexport) BOOL WINAPI RemoveHook() {
    const keyboard::CExclusiveLock lock(s_lock);
    if (!installed() || installed()->isCallingBack()) {
        return FALSE;
    }
    const bool bEnded = installed()->stop();
    installed().reset();
    return bEnded;
}
