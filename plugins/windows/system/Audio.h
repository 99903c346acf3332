// The system's current sound output.
#pragma once

#include <memory>
#include <optional>

namespace win {

// Any thread.
class IAudio {
 public:
    virtual ~IAudio() = default;

    // Asks the system each time, so that another device, or another program's change, is noticed. Nothing: no device.
    [[nodiscard]] virtual std::optional<bool> muted() = 0;
    [[nodiscard]] virtual bool setMuted(bool bMuted) = 0;
};

// The default endpoint for rendering.
[[nodiscard]] std::unique_ptr<IAudio> makeWindowsAudio();

}  // namespace win
