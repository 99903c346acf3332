// The hook's side of the hotkey library: feeds the tracker and keeps it consistent with the keyboard.
#pragma once

#include <windows.h>

#include <atomic>
#include <optional>

#include "KeyTracker.h"
#include "LostKeyRhythm.h"
#include "StickyWindow.h"
#include "keyboard/HookThread.h"

namespace hotkey {

class CKeyWatcher : public keyboard::IHookClient, private IKeyPresser {
 public:
    explicit CKeyWatcher(INotificationSink& sink);

    // Takes effect with the next key. Thread: any.
    void enable() noexcept { m_bEnabled = true; }
    // Takes effect when the hook's thread is woken. Thread: any.
    void setSettings(const TrackerSettings& settings) noexcept;

    [[nodiscard]] bool handleKey(const keyboard::KeyEvent& event) noexcept override;
    void handleWake() noexcept override;
    void handleTick() noexcept override;
    [[nodiscard]] DWORD tickInterval() const noexcept override;
    void handleEnd() noexcept override;

 private:
    void tap(DWORD virtualKey) noexcept override;

    std::atomic<bool> m_bEnabled{false};
    SRWLOCK m_lock = SRWLOCK_INIT;
    std::optional<TrackerSettings> m_pending;  // under m_lock
    CKeyTracker m_tracker;
    CLostKeyRhythm m_rhythm;
    std::size_t m_nLastSlot = 0;  // of the last key that was pressed; 0: none
    CStickyWindow m_stickyWindow;
};

}  // namespace hotkey
