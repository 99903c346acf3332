// The hook's side of the hotkey library: feeds the tracker and keeps it consistent with the keyboard.
#pragma once

#include <windows.h>

#include <atomic>
#include <optional>

#include "Alarm.h"
#include "HookWatchdog.h"
#include "KeyTracker.h"
#include "LostKeyRhythm.h"
#include "NewsWindow.h"
#include "SecondRoad.h"
#include "StickyWindow.h"
#include "keyboard/HookThread.h"

namespace hotkey {

class CKeyWatcher : public keyboard::IHookClient, private IKeyPresser, private INewsListener {
 public:
    explicit CKeyWatcher(INotificationSink& sink);

    // Takes effect with the next key, in full when the hook's thread is woken. Thread: any.
    void enable() noexcept { m_bEnabled = true; }
    // Takes effect when the hook's thread is woken. Thread: any.
    void setSettings(const TrackerSettings& settings) noexcept;

    void handleCall() noexcept override;
    [[nodiscard]] bool handleKey(const keyboard::KeyEvent& event) noexcept override;
    void handleStart() noexcept override;
    void handleWake() noexcept override;
    void handleTick() noexcept override;
    [[nodiscard]] DWORD timeToTick() const noexcept override;
    [[nodiscard]] bool wantsNewHook() noexcept override;
    void handleNewHook() noexcept override;
    void handleEnd() noexcept override;

 private:
    void tap(DWORD virtualKey) noexcept override;
    void keyboardUsed() noexcept override;
    void registeredKeyPressed(DWORD id) noexcept override;
    void keyboardChangedHands() noexcept override;
    // Whether the press of a key can be more than typing.
    [[nodiscard]] bool _mayAct(const keyboard::KeyEvent& event) const noexcept;
    void _takePending() noexcept;
    void _takeSettings(const TrackerSettings& settings) noexcept;
    // `before`: what the tracker said of keys without the modifier before the change.
    void _setAlarms(CKeyTracker::Alone before) noexcept;
    void _lookForLostKeys() noexcept;

    std::atomic<bool> m_bEnabled{false};
    SRWLOCK m_lock = SRWLOCK_INIT;
    std::optional<TrackerSettings> m_pending;  // under m_lock
    INotificationSink& m_sink;
    CKeyTracker m_tracker;
    CLostKeyRhythm m_rhythm;
    std::size_t m_nLastSlot = 0;  // of the last key that was pressed; 0: none
    DWORD m_nModifier = TrackerSettings().modifierKey;
    DWORD m_nReleaseDelay = 0;  // ms
    keyboard::KeySet m_alone;   // keys that act without the modifier
    CAlarm m_look;              // for keys whose release was not seen
    CAlarm m_aloneEnd;          // the keys without the modifier are over
    CStickyWindow m_stickyWindow;
    CNewsWindow m_newsWindow;
    CSecondRoad m_secondRoad;
    CHookWatchdog m_watchdog;
    DWORD m_nWhyNewHook = 0;  // 0: no new hook is wanted
};

}  // namespace hotkey
