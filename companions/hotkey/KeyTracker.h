// Decides what becomes of each key event: reported or not, swallowed or not. Knows nothing of the system, so that whole
// histories of events can be played to it.
#pragma once

#include <windows.h>

#include <array>
#include <bitset>
#include <cstddef>

namespace hotkey {

// A key is known by its slot: its set-1 scan code, plus 0x100 for an extended key. Slot 0 is "no such key".
inline constexpr std::size_t kKeySlots = 0x200;
using KeySet = std::bitset<kKeySlots>;

// The number under which a key is reported and listed: 0x3B for slot 0x3B, 0xE04B for slot 0x14B.
[[nodiscard]] constexpr DWORD codeOfSlot(std::size_t slot) noexcept {
    return slot < 0x100 ? static_cast<DWORD>(slot) : 0xE000u | static_cast<DWORD>(slot & 0xFF);
}
// 0 for numbers that no key has.
[[nodiscard]] constexpr std::size_t slotOfCode(DWORD code) noexcept {
    if (code <= 0xFF) {
        return code;
    }
    return (code & 0xFFFFFF00u) == 0xE000u && code != 0xE000u ? 0x100u | (code & 0xFF) : 0;
}

struct KeyEvent {
    DWORD virtualKey = 0;
    std::size_t slot = 0;
    bool down = false;
    DWORD time = 0;  // ms, wraps around
};

struct TrackerSettings {
    DWORD modifierKey = VK_RCONTROL;
    bool sticky = false;
    KeySet listed;  // slots that the function list names
};

class INotificationSink {
 public:
    virtual ~INotificationSink() = default;
    // False when there is no room: the press is then not reported, and no break must follow.
    [[nodiscard]] virtual bool make(DWORD code) noexcept = 0;
    // Always has room for the break of a make that was taken.
    virtual void breakOf(DWORD code) noexcept = 0;
    virtual void latchChanged(bool bLatched) noexcept = 0;
};

// Not thread-safe; lives on the hook's thread.
class CKeyTracker {
 public:
    // A press that comes this long after a key's last event is a new one, even when no release was seen: the slowest
    // keyboards begin to repeat after two seconds. In ms.
    static constexpr DWORD kRepeatGap = 2500;

    explicit CKeyTracker(INotificationSink& sink) noexcept : m_sink(sink) {}

    // Until then nothing is reported and nothing swallowed.
    void enable() noexcept { m_bEnabled = true; }
    // A new modifier, or the end of stickiness while latched, reports the breaks of what is held.
    void setSettings(const TrackerSettings& settings) noexcept;

    // True when the event must not reach any other program.
    [[nodiscard]] bool handle(const KeyEvent& event) noexcept;

    // To be called now and then while anythingDown(). `isDown` maps a virtual-key code to its state now; a key found up
    // at two calls in a row lost its release. Swallowed keys are not asked about: the system never saw them.
    template <typename Predicate>
    void checkLostKeys(Predicate isDown) noexcept;

    // Another program takes the latch back.
    void cancelLatch() noexcept;
    // Reports every break that is due and forgets what is down: the keyboard has gone elsewhere.
    void releaseAll() noexcept;

    [[nodiscard]] bool anythingDown() const noexcept { return m_bModifierDown || m_bActive || m_nDown != 0; }
    [[nodiscard]] bool latched() const noexcept { return m_bLatched; }

 private:
    enum class State : unsigned char {
        Up,
        Alone,      // down, passes, not reported
        Reported,   // down, passes, its break is due
        Swallowed,  // down, hidden from others, its break is due
        Muted       // down, hidden from others, its break has been reported
    };
    struct Key {
        State state = State::Up;
        bool missing = false;  // found up at the last check
        DWORD virtualKey = 0;
        DWORD lastEvent = 0;
        unsigned order = 0;  // counts presses, so that breaks can follow in the order of the makes
    };

    void _modifierDown(DWORD time) noexcept;
    void _modifierUp() noexcept;
    void _press(Key& key, const KeyEvent& event) noexcept;
    void _release(std::size_t slot) noexcept;
    void _deactivate() noexcept;
    void _setLatched(bool bLatched) noexcept;
    [[nodiscard]] std::size_t _oldestDue() const noexcept;
    // True when `key` was missed twice in a row.
    static bool _missedTwice(bool& missing, bool isDown) noexcept;

    INotificationSink& m_sink;
    TrackerSettings m_settings;
    std::array<Key, kKeySlots> m_keys{};
    unsigned m_nDown = 0;  // keys that are not Up
    unsigned m_nPresses = 0;
    DWORD m_nModifierTime = 0;
    bool m_bEnabled = false;
    bool m_bModifierDown = false;
    bool m_bModifierMissing = false;
    bool m_bActive = false;    // the modifier's make was reported, its break is due
    bool m_bLatched = false;   // active without being held
    bool m_bTapAlone = false;  // nothing else happened since the modifier went down
};

template <typename Predicate>
void CKeyTracker::checkLostKeys(Predicate isDown) noexcept {
    if (m_bModifierDown && _missedTwice(m_bModifierMissing, isDown(m_settings.modifierKey))) {
        m_bTapAlone = false;  // a lost modifier latches nothing
        _modifierUp();
    }
    for (std::size_t slot = 1; m_nDown != 0 && slot < kKeySlots; ++slot) {
        Key& key = m_keys[slot];
        const bool bAskable = key.state == State::Alone || key.state == State::Reported;
        if (bAskable && _missedTwice(key.missing, isDown(key.virtualKey))) {
            _release(slot);
        }
    }
}

}  // namespace hotkey
