// The precision touchpad.
#pragma once

#include <memory>
#include <optional>

namespace win {

// One thread.
class ITouchpad {
 public:
    virtual ~ITouchpad() = default;

    [[nodiscard]] virtual bool present() = 0;
    // Nothing: the system does not tell.
    [[nodiscard]] virtual std::optional<bool> enabled() = 0;
    // Asks the system to switch to the other state, which happens a moment later, if at all.
    virtual void toggle() = 0;
};

[[nodiscard]] std::shared_ptr<ITouchpad> makeWindowsTouchpad();

}  // namespace win
