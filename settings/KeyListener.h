// Hears every key while a page asks for one or lets keys be tried out, and hides them from the rest of the system.
#pragma once

#include <windows.h>

#include <memory>

#include "companions/hotkey/KeyTracker.h"

namespace settings {

// To the window that listens. Both are posted: whatever is done with a key is not done inside the keyboard hook.
inline constexpr UINT kMsgKeyHeard = WM_APP + 10;  // wParam: heardKey(); lParam: 1 down, 0 up
inline constexpr UINT kMsgKeyTried = WM_APP + 11;  // wParam: the hotkey code; lParam: a Tried

enum class Tried : int { Make, Break, Latched, Unlatched };

struct HeardKey {
    DWORD virtualKey;
    std::size_t slot;  // keyboard/KeyEvent.h; 0: no key, as of characters that a program sends
};
[[nodiscard]] constexpr HeardKey heardKey(WPARAM wParam) noexcept {
    return {static_cast<DWORD>(wParam & 0xFFFF), static_cast<std::size_t>(wParam >> 16)};
}

// While it listens, ZEL_KEY_TRIAL_EVENT keeps a running Fenwyn quiet, and nothing stays behind if the process is killed.
class CKeyListener {
 public:
    CKeyListener() = default;
    ~CKeyListener() { stop(); }
    CKeyListener(const CKeyListener&) = delete;
    CKeyListener& operator=(const CKeyListener&) = delete;

    // Every key is told with kMsgKeyHeard, and nobody else hears of it, but for keys that are down already: they are
    // not told, and go up for everybody. False: the system gives no hook.
    bool hear(HWND hTold);
    // Keys are treated as the hotkey library treats them with these settings, by its own code; what it would report is
    // told with kMsgKeyTried. Other keys work as always.
    bool tryOut(HWND hTold, const hotkey::TrackerSettings& settings);
    void stop() noexcept;
    [[nodiscard]] bool isListening() const noexcept { return m_pSession != nullptr; }

 private:
    class CSession;
    bool _start(std::shared_ptr<CSession> session);

    std::shared_ptr<CSession> m_pSession;
};

}  // namespace settings
