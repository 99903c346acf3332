// A screen whose brightness can be set, for tests.
#pragma once

#include <windows.h>

#include <atomic>

#include "system/Backlight.h"

namespace win {

class CFakeBacklight final : public IBacklight {
 public:
    std::optional<Backlight> read() override {
        ++nReads;
        ::Sleep(dwReadMs);
        return bThere ? std::optional<Backlight>({levels, nPercent}) : std::nullopt;
    }
    void set(BYTE nNewPercent) override {
        ++nSets;
        if (!bRefuses) {
            nPercent = nNewPercent;
        }
    }

    std::vector<BYTE> levels;  // set before the function under test gets it
    std::atomic<BYTE> nPercent = 50;
    std::atomic<bool> bThere = true;
    std::atomic<bool> bRefuses = false;
    std::atomic<DWORD> dwReadMs = 0;  // how long an answer takes
    std::atomic<int> nReads = 0;
    std::atomic<int> nSets = 0;
};

}  // namespace win
