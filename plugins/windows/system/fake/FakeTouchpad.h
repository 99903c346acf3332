// A touchpad for tests.
#pragma once

#include <windows.h>

#include <atomic>

#include "system/Touchpad.h"

namespace win {

class CFakeTouchpad final : public ITouchpad {
 public:
    bool present() override { return bPresent; }
    std::optional<bool> enabled() override {
        ::Sleep(dwReadMs);
        if (nDelayedReads > 0 && --nDelayedReads == 0) {
            bEnabled = !bEnabled;
        }
        return bTells ? std::optional<bool>(bEnabled) : std::nullopt;
    }
    void toggle() override {
        ++nToggles;
        if (!bDeaf) {
            nDelayedReads = 3;  // the system takes its time
        }
    }

    std::atomic<bool> bPresent = true;
    std::atomic<bool> bTells = true;
    std::atomic<bool> bDeaf = false;
    std::atomic<bool> bEnabled = true;
    std::atomic<DWORD> dwReadMs = 0;  // how long an answer takes
    std::atomic<int> nToggles = 0;
    std::atomic<int> nDelayedReads = 0;
};

}  // namespace win
