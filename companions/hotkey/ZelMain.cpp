// The exports of ZelMain.dll.
#include <windows.h>

#include <memory>

#include "HotkeySession.h"
#include "common/Caught.h"
#include "common/NeverDestroyed.h"
#include "include/ZelHotkey.h"
#include "keyboard/Lock.h"

namespace {

SRWLOCK s_lock = SRWLOCK_INIT;

// Never destroyed: when the process ends while the library runs, its threads may be anywhere.
std::shared_ptr<hotkey::CHotkeySession>& session() noexcept {
    static common::NeverDestroyed<std::shared_ptr<hotkey::CHotkeySession>> session;
    return session.get();
}

}  // namespace

extern "C" __declspec(dllexport) LONG WINAPI
    Start(ZelHotkeyCallback hotkeyCallback, ZelConfigCallback configCallback) noexcept {
    if (hotkeyCallback == nullptr || configCallback == nullptr) {
        return E_POINTER;
    }
    const keyboard::CExclusiveLock lock(s_lock);
    if (session()) {
        return E_UNEXPECTED;
    }
    try {
        auto started = std::make_shared<hotkey::CHotkeySession>(hotkeyCallback, configCallback);
        const HRESULT status = started->start();
        if (SUCCEEDED(status)) {
            session() = std::move(started);
        }
        return status;
    } catch (...) {
        return common::caughtStatus();
    }
}

extern "C" __declspec(dllexport) LONG WINAPI EnableHotkey() noexcept {
    const keyboard::CExclusiveLock lock(s_lock);
    if (!session()) {
        return E_UNEXPECTED;
    }
    session()->enable();
    return S_OK;
}

extern "C" __declspec(dllexport) LONG WINAPI Stop() noexcept {
    const keyboard::CExclusiveLock lock(s_lock);
    if (!session()) {
        return S_FALSE;
    }
    if (session()->isDelivering()) {
        return HRESULT_FROM_WIN32(ERROR_POSSIBLE_DEADLOCK);
    }
    const HRESULT status = session()->stop();
    session().reset();
    return status;
}
