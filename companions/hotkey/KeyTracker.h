// Decides for each key event whether it is reported and whether it is swallowed. Independent of the system, so that
// tests can feed it whole histories of events.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

#include "keyboard/KeyEvent.h"

namespace hotkey {

struct TrackerSettings {
    DWORD modifierKey = VK_RCONTROL;
    bool sticky = false;
    keyboard::KeySet listed;    // slots that the function list names for use with the modifier
    keyboard::KeySet alone;     // those that it names for use without
    DWORD releaseDelay = 1000;  // ms from the last release of a key without the modifier to the modifier's break
};

class INotificationSink {
 public:
    virtual ~INotificationSink() = default;
    // False if there is no space: the press is then not reported, and no break may follow.
    [[nodiscard]] virtual bool make(DWORD code) noexcept = 0;
    // Keeps room for a break that no make announces. False when there is none: the break must not follow.
    [[nodiscard]] virtual bool promiseBreak() noexcept = 0;
    // Always has room for the break of a make that was taken, and for one that was promised.
    virtual void breakOf(DWORD code) noexcept = 0;
    virtual void latchChanged(bool bLatched) noexcept = 0;
    // The hook was installed anew. `why`: ZEL_CONFIG_HOOK_LOST or ZEL_CONFIG_HOOK_RENEWED.
    virtual void hookRenewed(DWORD why) noexcept = 0;
};

class IKeyPresser {
 public:
    virtual ~IKeyPresser() = default;
    // Presses and releases a key, before the one that is being handled. The tracker does not see it.
    virtual void tap(DWORD virtualKey) noexcept = 0;
};

// Not thread-safe; lives on the hook's thread.
class CKeyTracker {
 public:
    // The longest hold of the modifier alone, in ms, that counts as a tap. A longer hold was for looking at the cards.
    static constexpr DWORD kLongestTap = 500;

    CKeyTracker(INotificationSink& sink, IKeyPresser& presser) noexcept : m_sink(sink), m_presser(presser) {}

    // Until then nothing is reported and nothing swallowed.
    void enable() noexcept { m_bEnabled = true; }
    // A new modifier, or the end of stickiness while latched, reports the breaks of all held keys.
    void setSettings(const TrackerSettings& settings) noexcept;

    // True if the event must not reach any other program.
    [[nodiscard]] bool handle(const keyboard::KeyEvent& event) noexcept;

    // A press that the hook was not called for, of a key that acts without the modifier. The system knows of it, so
    // that its release is noticed by checkLostKeys(), if no hook is called for that either.
    void handleUnhooked(const keyboard::KeyEvent& event) noexcept;

    // To be called now and then while anythingDown(). `isDown` maps a virtual-key code to its state now; a key found up
    // at two calls in a row lost its release. Swallowed keys and a withheld modifier are not asked about: the system
    // never saw them.
    template <typename Predicate>
    void checkLostKeys(Predicate isDown) noexcept;

    // Another program releases the latch.
    void cancelLatch() noexcept;
    // The hook was not called for some time: a key that is hidden from the system may have been released unnoticed.
    void releaseHidden() noexcept;
    // Reports every break that is due and forgets what is down: the keyboard has gone elsewhere.
    void releaseAll() noexcept;

    // Keys without the modifier. From the first press of one on, the modifier's break is due: its place is taken by
    // endAlone(), to be called TrackerSettings::releaseDelay after the last of them was released.
    enum class Alone { None, Held, Released };
    [[nodiscard]] Alone alone() const noexcept;
    // Nothing happens unless alone() says Released.
    void endAlone() noexcept;

    [[nodiscard]] bool anythingDown() const noexcept { return m_bModifierDown || m_bActive || m_nDown != 0; }
    [[nodiscard]] bool latched() const noexcept { return m_bLatched; }

 private:
    enum class State : unsigned char {
        Up,
        Alone,      // down, passes, not reported
        Reported,   // down, passes, its break is outstanding
        Swallowed,  // down, hidden from others, its break is outstanding
        Muted       // down, hidden from others, its break has been reported
    };
    struct Key {
        State state = State::Up;
        bool missing = false;  // found up at the last check
        DWORD virtualKey = 0;
        DWORD lastEvent = 0;
        unsigned order = 0;  // counts presses, so that breaks can follow in the order of the makes
        DWORD code = 0;      // as it was reported
    };

    // True if the event must not reach any other program.
    [[nodiscard]] bool _modifier(const keyboard::KeyEvent& event) noexcept;
    void _modifierDown(DWORD time) noexcept;
    void _modifierUp() noexcept;
    void _giveTapItsMeaning(DWORD time) noexcept;
    void _mask() noexcept;
    // The slot under which the function list names the key: its own, or that of its virtual key. Else its own.
    [[nodiscard]] std::size_t _namedSlot(const keyboard::KeyEvent& event) const noexcept;
    void _press(Key& key, const keyboard::KeyEvent& event) noexcept;
    void _pressAlone(Key& key) noexcept;
    void _release(std::size_t slot) noexcept;
    // The breaks of all keys that are due, and the modifier's, if that is due.
    void _deactivate() noexcept;
    void _setLatched(bool bLatched) noexcept;
    [[nodiscard]] std::size_t _oldestDue() const noexcept;
    // True if `key` was missed twice in a row.
    static bool _missedTwice(bool& missing, bool isDown) noexcept;

    INotificationSink& m_sink;
    IKeyPresser& m_presser;
    TrackerSettings m_settings;
    std::array<Key, keyboard::kKeySlots> m_keys{};
    unsigned m_nDown = 0;  // keys that are not Up
    unsigned m_nPresses = 0;
    DWORD m_nModifierTime = 0;   // of its last event
    DWORD m_nModifierPress = 0;  // when it went down
    DWORD m_nWithheld = 0;       // a modifier whose press was swallowed, and whose release will be; 0 = none
    bool m_bEnabled = false;
    bool m_bModifierDown = false;
    bool m_bModifierMissing = false;
    bool m_bActive = false;    // the modifier's make was reported, its break is outstanding
    bool m_bAlone = false;     // its break is outstanding without a make, because of a key that needs no modifier
    bool m_bLatched = false;   // active without being held
    bool m_bTapAlone = false;  // nothing else happened since the modifier went down
    bool m_bMasked = false;    // the system has been shown a key since then
};

template <typename Predicate>
void CKeyTracker::checkLostKeys(Predicate isDown) noexcept {
    if (m_bModifierDown && m_nWithheld != m_settings.modifierKey &&
        _missedTwice(m_bModifierMissing, isDown(m_settings.modifierKey))) {
        m_bTapAlone = false;  // a lost modifier latches nothing
        _modifierUp();
    }
    for (std::size_t slot = 1; m_nDown != 0 && slot < keyboard::kKeySlots; ++slot) {
        Key& key = m_keys[slot];
        const bool bAskable = key.state == State::Alone || key.state == State::Reported;
        if (bAskable && _missedTwice(key.missing, isDown(key.virtualKey))) {
            _release(slot);
        }
    }
}

}  // namespace hotkey
