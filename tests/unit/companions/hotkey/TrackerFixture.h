// Feeds key events to a tracker and stores its reports.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "KeyTracker.h"

namespace companions {

inline constexpr std::size_t kF1 = 0x3B;
inline constexpr std::size_t kF2 = 0x3C;
inline constexpr std::size_t kF3 = 0x3D;
inline constexpr std::size_t kA = 0x1E;
inline constexpr std::size_t kLeftArrow = 0x14B;
inline constexpr DWORD kModifier = VK_RCONTROL;

// "0" = make of the modifier, "/0" = its break, "3b" and "/3b" likewise.
class CReport : public hotkey::INotificationSink {
 public:
    [[nodiscard]] bool make(DWORD code) noexcept override {
        if (full) {
            return false;
        }
        _add("", code);
        return true;
    }
    [[nodiscard]] bool promiseBreak() noexcept override { return !full; }
    void breakOf(DWORD code) noexcept override { _add("/", code); }
    void latchChanged(bool bLatched) noexcept override { latches.push_back(bLatched); }
    void hookRenewed(DWORD /*why*/) noexcept override {}

    // The reports since the last call.
    [[nodiscard]] std::string take() { return std::exchange(text, {}); }

    bool full = false;
    std::string text;
    std::vector<bool> latches;

 private:
    void _add(const char* mark, DWORD code) {
        char buffer[16];
        std::snprintf(buffer, sizeof(buffer), "%s%s%x", text.empty() ? "" : " ", mark, static_cast<unsigned>(code));
        text += buffer;
    }
};

// The keys that the tracker itself sends.
class CPresses : public hotkey::IKeyPresser {
 public:
    void tap(DWORD virtualKey) noexcept override { keys.push_back(virtualKey); }

    std::vector<DWORD> keys;
};

// F1, F2 and the left arrow are listed; F3 and A are not.
class TrackerTest : public testing::Test {
 protected:
    TrackerTest() {
        m_settings.listed.set(kF1).set(kF2).set(kLeftArrow);
        m_tracker.setSettings(m_settings);
        m_tracker.enable();
    }

    // Each event comes 10 ms after the one before. True if it was swallowed.
    bool down(std::size_t slot) { return _key(virtualKey(slot), slot, true); }
    bool up(std::size_t slot) { return _key(virtualKey(slot), slot, false); }
    bool modifierDown() { return _key(m_settings.modifierKey, 0x11D, true); }
    bool modifierUp() { return _key(m_settings.modifierKey, 0x11D, false); }

    static DWORD virtualKey(std::size_t slot) { return static_cast<DWORD>(slot & 0xFF) + 0x30; }

    void setModifier(DWORD virtualKey) {
        m_settings.modifierKey = virtualKey;
        m_tracker.setSettings(m_settings);
    }
    void setSticky(bool sticky) {
        m_settings.sticky = sticky;
        m_tracker.setSettings(m_settings);
    }

    hotkey::TrackerSettings m_settings;
    CReport m_report;
    CPresses m_presses;
    hotkey::CKeyTracker m_tracker{m_report, m_presses};
    DWORD m_nTime = 1000;

 private:
    bool _key(DWORD vk, std::size_t slot, bool bDown) {
        m_nTime += 10;
        return m_tracker.handle({vk, slot, bDown, m_nTime});
    }
};

}  // namespace companions
