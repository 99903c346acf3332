// The brightness of the built-in screen.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <vector>

namespace win {

struct Backlight {
    std::vector<BYTE> levels;  // percentages that the screen supports, in any order
    BYTE nPercent = 0;         // the current one
};

// One thread, which may wait: the answers come from another process and can take long.
class IBacklight {
 public:
    virtual ~IBacklight() = default;

    // Nothing: the machine has no screen whose brightness the system can set.
    [[nodiscard]] virtual std::optional<Backlight> read() = 0;
    // A percentage of `levels`.
    virtual void set(BYTE nPercent) = 0;
};

// By the management service of the system.
[[nodiscard]] std::shared_ptr<IBacklight> makeWindowsBacklight();

}  // namespace win
