// The exports of PrtHook.dll.
#include <windows.h>

#include <memory>

#include "PrintScreenHook.h"
#include "common/NeverDestroyed.h"
#include "include/PrtHook.h"
#include "keyboard/Lock.h"

namespace {

SRWLOCK s_lock = SRWLOCK_INIT;

// Never destroyed: the hook usually runs until the process ends, and then its threads may be anywhere.
std::shared_ptr<prtscreen::CPrintScreenHook>& installed() noexcept {
    static common::NeverDestroyed<std::shared_ptr<prtscreen::CPrintScreenHook>> hook;
    return hook.get();
}

}  // namespace

extern "C" __declspec(dllexport) BOOL WINAPI InstallHook(PrtHookCallback callback) noexcept {
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
    } catch (...) {
        return FALSE;
    }
}

extern "C" __declspec(dllexport) BOOL WINAPI RemoveHook() noexcept {
    const keyboard::CExclusiveLock lock(s_lock);
    if (!installed() || installed()->isCallingBack()) {
        return FALSE;
    }
    const bool bEnded = installed()->stop();
    installed().reset();
    return bEnded;
}
