// The callbacks' side of the hotkey library.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <functional>

#include "NotificationQueue.h"
#include "QuietPeriod.h"
#include "RegistryWatch.h"
#include "common/Handle.h"
#include "include/ZelHotkey.h"

namespace hotkey {

// All callbacks run on the one thread that executes run().
class CDelivery {
 public:
    struct Targets {
        ZelHotkeyCallback hotkey = nullptr;
        ZelConfigCallback config = nullptr;
        // Called before `config` is notified of a change.
        std::function<void()> configurationChanged;
    };

    // `digest` is that of the configuration when the current settings were read.
    CDelivery(CNotificationQueue& queue, Targets targets, std::uint64_t digest);

    // False if the system refused a required event.
    [[nodiscard]] bool ready() const noexcept;

    // Until requestStop(); before it returns, it delivers everything queued by then.
    void run() noexcept;
    // Thread: any.
    void requestStop() noexcept { ::SetEvent(m_hStop.get()); }
    // No further callback: Stop has given up waiting. Thread: any.
    void abandon() noexcept { m_bAbandoned = true; }

 private:
    void _deliverKeys() noexcept;
    void _armWatch() noexcept;
    void _reportChange() noexcept;
    void _sendEnd(ULONGLONG now) noexcept;
    void _sendConfig(DWORD code) noexcept;
    [[nodiscard]] DWORD _timeout(ULONGLONG now) const noexcept;

    CNotificationQueue& m_queue;
    Targets m_targets;
    std::uint64_t m_nDigest;
    common::UniqueHandle m_hStop;
    common::UniqueHandle m_hEnd;  // may be missing: then nobody can end the program this way
    CRegistryWatch m_watch;
    CQuietPeriod m_quiet;
    ULONGLONG m_nNextEnd = 0;  // when to check m_hEnd again; 0 = it is waited for
    std::atomic<bool> m_bAbandoned{false};
};

}  // namespace hotkey
