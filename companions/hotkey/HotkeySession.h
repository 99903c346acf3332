// One run of the hotkey library, from Start to Stop.
#pragma once

#include <windows.h>

#include <memory>

#include "Delivery.h"
#include "KeyWatcher.h"
#include "NotificationQueue.h"
#include "keyboard/HookThread.h"
#include "keyboard/LibraryThread.h"

namespace hotkey {

// Its threads hold references to it, so that it outlives a Stop that had to give up waiting for a callback.
class CHotkeySession : public std::enable_shared_from_this<CHotkeySession> {
 public:
    CHotkeySession(ZelHotkeyCallback hotkeyCallback, ZelConfigCallback configCallback);

    // Once. After a failure nothing keeps running. Throws std::bad_alloc.
    [[nodiscard]] HRESULT start();
    void enable() noexcept {
        m_watcher.enable();
        m_hook.wake();
    }
    // HRESULT_FROM_WIN32(ERROR_TIMEOUT) if a thread still runs after a second.
    [[nodiscard]] HRESULT stop() noexcept;
    // True on the thread that calls back.
    [[nodiscard]] bool isDelivering() const noexcept { return m_deliveryThread.isCurrent(); }

 private:
    void _readSettings();

    CNotificationQueue m_queue;
    CKeyWatcher m_watcher;
    keyboard::CHookThread m_hook;
    CDelivery m_delivery;
    keyboard::CLibraryThread m_deliveryThread;
};

}  // namespace hotkey
